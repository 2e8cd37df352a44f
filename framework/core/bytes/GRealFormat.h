#pragma once

#include <cstddef>
#include <cstdint>

/// GRealFormat: one conversion of a real in a printf format, with the text around it.
///
/// Formats by the rules of printf in the C locale, whatever the locale of the process, and never reads
/// an argument that is not there: a format with no conversion, with more than one, or with one of
/// another type is refused.
class GRealFormat {
public:
    /// What Write() may put out.
    static constexpr std::size_t cMaxText = 1023;

    /// "%f".
    GRealFormat() noexcept = default;
    /// False, with nothing changed, for a format that is refused. The text must outlive this object.
    bool Parse(const char* format, std::size_t length) noexcept;
    /// Writes `value` in fixed or whichever notation, cut to cMaxText characters, not terminated. The
    /// number of characters.
    std::size_t Write(double value, char (&text)[cMaxText]) const noexcept;

    /// Takes the zeros off the end of a text that holds a point, then a point left at the end. The
    /// length that remains.
    static std::size_t StripZeros(const char* text, std::size_t length) noexcept;
    /// The nearest finite value; what is no number stays.
    static double Clamp(double value) noexcept;

private:
    struct Conversion {
        bool leftAligned = false;
        bool plus = false;
        bool blank = false;
        bool alternate = false;
        bool zeroPadded = false;
        std::int32_t width = 0;
        std::int32_t precision = -1;  // none given
        char letter = 'f';
    };
    class Number;
    class Sink;

    static std::size_t ParseConversion(const char* text, std::size_t length, Conversion& conversion) noexcept;
    static void PutText(const char* text, std::size_t length, Sink& sink) noexcept;
    void PutNumber(double value, Sink& sink) const noexcept;

    const char* mBefore = "";
    std::size_t mBeforeLength = 0;
    const char* mBehind = "";
    std::size_t mBehindLength = 0;
    Conversion mConversion;
};
