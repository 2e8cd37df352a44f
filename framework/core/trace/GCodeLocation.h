#pragma once

#include <cstdint>

/// GCodeLocation: a place in the source. The texts are not owned and stay as long as the program; either
/// may be null. A value.
class GCodeLocation {
public:
    /// Keeps the pointers: the texts of the compiler's own macros and built-ins stay.
    GCodeLocation(const char* file, long line, const char* function) noexcept
        : mFile(file), mFunction(function), mLine(static_cast<std::int32_t>(line)) {}
    /// As a default argument: the place of the call.
    static GCodeLocation Here(const char* file = __builtin_FILE(), int line = __builtin_LINE(),
                              const char* function = __builtin_FUNCTION()) noexcept {
        return GCodeLocation(file, line, function);
    }

    /// The source's path as the compiler was given it; may be null.
    const char* GetFile() const noexcept { return mFile; }
    long GetLine() const noexcept { return mLine; }                 ///< from 1
    const char* GetFunction() const noexcept { return mFunction; }  ///< the name alone; may be null

private:
    const char* mFile;
    const char* mFunction;
    std::int32_t mLine;
};
