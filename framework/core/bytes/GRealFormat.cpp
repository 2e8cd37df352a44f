#include "framework/core/bytes/GRealFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

// Widths and precisions beyond what may be put out have no effect that could be seen.
constexpr std::int32_t cMaxDigits = GRealFormat::cMaxText;
// The digits of the largest double, the point, and the fraction.
constexpr std::size_t cMaxNumber = 320 + cMaxDigits;

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

// Reads digits; returns how many.
std::size_t ParseDigits(const char* text, std::size_t length, std::int32_t& value) {
    std::size_t i = 0;
    for (value = 0; i < length && IsDigit(text[i]); ++i)
        value = std::min(value * 10 + (text[i] - '0'), cMaxDigits);
    return i;
}

bool IsUpper(char letter) {
    return letter >= 'A' && letter <= 'Z';
}

char ToLowerLetter(char letter) {
    return IsUpper(letter) ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::chars_format NotationOf(char letter) {
    switch (ToLowerLetter(letter)) {
        case 'e':
            return std::chars_format::scientific;
        case 'g':
            return std::chars_format::general;
        case 'a':
            return std::chars_format::hex;
        default:
            return std::chars_format::fixed;
    }
}

}  // namespace

// What is put out, cut at its end.
class GRealFormat::Sink {
public:
    explicit Sink(char (&text)[cMaxText]) noexcept : mText(text) {}
    void Put(char character) noexcept {
        if (mLength < cMaxText) mText[mLength++] = character;
    }
    void Put(const char* text, std::size_t length) noexcept {
        for (std::size_t i = 0; i < length; ++i) Put(text[i]);
    }
    void Fill(char character, std::size_t count) noexcept {
        for (std::size_t i = 0; i < count; ++i) Put(character);
    }
    std::size_t GetLength() const noexcept { return mLength; }

private:
    char (&mText)[cMaxText];
    std::size_t mLength = 0;
};

// The digits of a number without its sign.
class GRealFormat::Number {
public:
    Number(double magnitude, const Conversion& conversion) noexcept {
        const std::chars_format notation = NotationOf(conversion.letter);
        const bool shortestHex = notation == std::chars_format::hex && conversion.precision < 0;
        const int precision = conversion.precision < 0 ? 6 : conversion.precision;
        char* const end = mText + sizeof mText;
        const auto result = shortestHex ? std::to_chars(mText, end, magnitude, notation)
                                        : std::to_chars(mText, end, magnitude, notation, precision);
        mLength = static_cast<std::size_t>(result.ptr - mText);
        if (conversion.alternate && std::isfinite(magnitude)) KeepPoint(notation, precision);
        if (IsUpper(conversion.letter)) RaiseLetters();
    }
    const char* GetText() const noexcept { return mText; }
    std::size_t GetLength() const noexcept { return mLength; }

private:
    // '#': a point even without a fraction, and for %g also the zeros behind it.
    void KeepPoint(std::chars_format notation, int precision) noexcept {
        const char exponentMark = notation == std::chars_format::hex ? 'p' : 'e';
        char* const mantissaEnd = std::find(mText, mText + mLength, exponentMark);
        std::size_t zeros = 0;
        if (notation == std::chars_format::general) {
            const char* firstDigit = mText;
            while (firstDigit != mantissaEnd && (*firstDigit == '0' || *firstDigit == '.')) ++firstDigit;
            const bool isZero = firstDigit == mantissaEnd;
            const auto digits =
                isZero ? 1 : std::count_if(firstDigit, static_cast<const char*>(mantissaEnd), IsDigit);
            zeros = static_cast<std::size_t>(std::max<std::ptrdiff_t>(std::max(precision, 1) - digits, 0));
        }
        const bool hasPoint = std::find(mText, mantissaEnd, '.') != mantissaEnd;
        const std::size_t added = zeros + (hasPoint ? 0 : 1);
        const auto exponentLength = static_cast<std::size_t>(mText + mLength - mantissaEnd);
        if (mLength + added > sizeof mText) return;
        std::memmove(mantissaEnd + added, mantissaEnd, exponentLength);
        if (!hasPoint) *mantissaEnd = '.';
        std::memset(mantissaEnd + (hasPoint ? 0 : 1), '0', zeros);
        mLength += added;
    }
    void RaiseLetters() noexcept {
        for (std::size_t i = 0; i < mLength; ++i) {
            if (mText[i] >= 'a' && mText[i] <= 'z') mText[i] = static_cast<char>(mText[i] - 'a' + 'A');
        }
    }

    char mText[cMaxNumber];
    std::size_t mLength = 0;
};

bool GRealFormat::Parse(const char* format, std::size_t length) noexcept {
    GRealFormat parsed;
    bool found = false;
    for (std::size_t i = 0; i < length; ++i) {
        if (format[i] != '%') continue;
        if (i + 1 < length && format[i + 1] == '%') {
            ++i;
            continue;
        }
        const std::size_t used = ParseConversion(format + i + 1, length - i - 1, parsed.mConversion);
        if (found || used == 0) return false;
        found = true;
        parsed.mBefore = format;
        parsed.mBeforeLength = i;
        i += used;
        parsed.mBehind = format + i + 1;
        parsed.mBehindLength = length - i - 1;
    }
    if (found) *this = parsed;
    return found;
}

// What follows a '%'. The number of characters it takes; 0 when it is no conversion of a real.
std::size_t GRealFormat::ParseConversion(const char* text, std::size_t length,
                                         Conversion& conversion) noexcept {
    std::size_t i = 0;
    for (; i < length; ++i) {
        if (text[i] == '-')
            conversion.leftAligned = true;
        else if (text[i] == '+')
            conversion.plus = true;
        else if (text[i] == ' ')
            conversion.blank = true;
        else if (text[i] == '#')
            conversion.alternate = true;
        else if (text[i] == '0')
            conversion.zeroPadded = true;
        else
            break;
    }
    i += ParseDigits(text + i, length - i, conversion.width);
    if (i < length && text[i] == '.') {
        ++i;
        i += ParseDigits(text + i, length - i, conversion.precision);
    }
    if (i < length && text[i] == 'l') ++i;  // says nothing about a double
    constexpr char cLetters[] = "fFeEgGaA";
    if (i >= length || text[i] == 0 || std::strchr(cLetters, text[i]) == nullptr) return 0;
    conversion.letter = text[i];
    return i + 1;
}

std::size_t GRealFormat::Write(double value, char (&text)[cMaxText]) const noexcept {
    Sink sink(text);
    PutText(mBefore, mBeforeLength, sink);
    PutNumber(value, sink);
    PutText(mBehind, mBehindLength, sink);
    return sink.GetLength();
}

// Text around a conversion, in which "%%" stands for '%'.
void GRealFormat::PutText(const char* text, std::size_t length, Sink& sink) noexcept {
    for (std::size_t i = 0; i < length; ++i) {
        sink.Put(text[i]);
        if (text[i] == '%') ++i;
    }
}

void GRealFormat::PutNumber(double value, Sink& sink) const noexcept {
    const Number number(std::fabs(value), mConversion);
    char sign[3];
    std::size_t signLength = 0;
    if (std::signbit(value))
        sign[signLength++] = '-';
    else if (mConversion.plus)
        sign[signLength++] = '+';
    else if (mConversion.blank)
        sign[signLength++] = ' ';
    if (ToLowerLetter(mConversion.letter) == 'a' && std::isfinite(value)) {
        sign[signLength++] = '0';
        sign[signLength++] = IsUpper(mConversion.letter) ? 'X' : 'x';
    }
    const std::size_t width = static_cast<std::size_t>(mConversion.width);
    const std::size_t length = signLength + number.GetLength();
    const std::size_t padding = width > length ? width - length : 0;
    const bool zeroPadded = mConversion.zeroPadded && !mConversion.leftAligned && std::isfinite(value);
    if (!zeroPadded && !mConversion.leftAligned) sink.Fill(' ', padding);
    sink.Put(sign, signLength);
    if (zeroPadded) sink.Fill('0', padding);
    sink.Put(number.GetText(), number.GetLength());
    if (mConversion.leftAligned) sink.Fill(' ', padding);
}

std::size_t GRealFormat::StripZeros(const char* text, std::size_t length) noexcept {
    if (std::find(text, text + length, '.') == text + length) return length;
    while (length > 0 && text[length - 1] == '0') --length;
    return length > 0 && text[length - 1] == '.' ? length - 1 : length;
}

double GRealFormat::Clamp(double value) noexcept {
    if (std::isnan(value)) return value;
    constexpr double cMax = std::numeric_limits<double>::max();
    return std::clamp(value, -cMax, cMax);
}
