#pragma once

#include <cstdint>

/// GCodeLocation: a place in the source. The texts are not owned and stay as long as the program; either
/// may be null. A value.
class GCodeLocation {
public:
    GCodeLocation(const char* file, long line, const char* function) noexcept
        : mFile(file), mFunction(function), mLine(static_cast<std::int32_t>(line)) {}
    /// As a default argument: the place of the call.
    static GCodeLocation Here(const char* file = __builtin_FILE(), int line = __builtin_LINE(),
                              const char* function = __builtin_FUNCTION()) noexcept {
        return GCodeLocation(file, line, function);
    }

    const char* GetFile() const noexcept { return mFile; }
    long GetLine() const noexcept { return mLine; }
    const char* GetFunction() const noexcept { return mFunction; }

private:
    const char* mFile;
    const char* mFunction;
    std::int32_t mLine;
};
