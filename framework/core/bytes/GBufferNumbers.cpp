#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/bytes/GRealFormat.h"
#include "framework/core/bytes/GWhiteSpace.h"

// GBuffer's numbers as text and texts as numbers. The C locale has no part in either.

namespace {

// The longest text of a formatter with its sign.
constexpr long cMaxNumberText = GRealFormat::cMaxText;

template <class Integer>
void SetDecimal(GBuffer& buffer, Integer value) {
    char text[24];
    const char* const end = std::to_chars(text, text + sizeof text, value).ptr;
    buffer.Set(reinterpret_cast<const unsigned char*>(text), static_cast<long>(end - text));
}

void SetStripped(GBuffer& buffer, const char* text, std::size_t length) {
    const std::size_t kept = GRealFormat::StripZeros(text, length);
    buffer.Set(reinterpret_cast<const unsigned char*>(text), static_cast<long>(kept));
}

bool IsDigit(unsigned char byte) {
    return byte >= '0' && byte <= '9';
}

// Walks through the bytes of a buffer; past the end it sees zeros.
class Scanner {
public:
    Scanner(const unsigned char* bytes, long length) : mNext(bytes), mEnd(bytes + length) {}
    unsigned char Peek() const { return mNext == mEnd ? static_cast<unsigned char>(0) : *mNext; }
    void Skip() { ++mNext; }
    bool SkipIf(unsigned char byte) {
        if (mNext == mEnd || *mNext != byte) return false;
        ++mNext;
        return true;
    }
    /// The number of digits.
    long SkipDigits() {
        const unsigned char* const start = mNext;
        while (mNext != mEnd && IsDigit(*mNext)) ++mNext;
        return static_cast<long>(mNext - start);
    }
    /// True for '-'.
    bool SkipSign() {
        if (SkipIf('-')) return true;
        SkipIf('+');
        return false;
    }
    const unsigned char* GetPlace() const { return mNext; }
    void SetPlace(const unsigned char* place) { mNext = place; }

private:
    const unsigned char* mNext;
    const unsigned char* mEnd;
};

// The white space of strtol.
bool IsStandardWhiteSpace(unsigned char byte) {
    return byte == ' ' || (byte >= 9 && byte <= 13);
}

void SkipFrameworkWhiteSpace(Scanner& scanner) {
    while (GWhiteSpace::Has(scanner.Peek())) scanner.Skip();
}

// Moves over [digits][.digits][exponent]. False when there is no number.
bool SkipReal(Scanner& scanner) {
    const long whole = scanner.SkipDigits();
    const unsigned char* const beforePoint = scanner.GetPlace();
    if (scanner.SkipIf('.')) {
        const long fraction = scanner.SkipDigits();
        if (whole + fraction == 0) {
            scanner.SetPlace(beforePoint);
            return false;
        }
    } else if (whole == 0) {
        return false;
    }
    const unsigned char* const beforeExponent = scanner.GetPlace();
    if (!scanner.SkipIf('e') && !scanner.SkipIf('E')) return true;
    scanner.SkipSign();
    if (scanner.SkipDigits() == 0) scanner.SetPlace(beforeExponent);
    return true;
}

// For a number outside the range of a double: whether it is too large, and not too small. It is when its
// first digit other than zero stands before the decimal point, once the exponent has moved that.
bool IsTooLarge(const char* text, const char* end) {
    const char* const mantissaEnd = std::find_if(text, end, [](char c) { return c == 'e' || c == 'E'; });
    const char* const point = std::find(text, mantissaEnd, '.');
    const char* const first = std::find_if(text, mantissaEnd, [](char c) { return c >= '1' && c <= '9'; });
    long long exponent = 0;
    if (mantissaEnd != end) {
        const char* const digits = mantissaEnd + (mantissaEnd + 1 != end && mantissaEnd[1] == '+' ? 2 : 1);
        if (std::from_chars(digits, end, exponent).ec != std::errc()) return *digits != '-';
    }
    // Far beyond any text's length, and far from where the sum would wrap.
    constexpr long long cFar = 1LL << 60;
    return static_cast<long long>(point - first) + std::clamp(exponent, -cFar, cFar) > 0;
}

}  // namespace

// --- To text -----------------------------------------------------------------------------------

GBuffer::GBuffer(int value) {
    Set(value);
}
GBuffer::GBuffer(long value) {
    Set(value);
}
GBuffer::GBuffer(unsigned int value) {
    Set(value);
}
GBuffer::GBuffer(unsigned long value) {
    Set(value);
}
GBuffer::GBuffer(long long value) {
    Set(value);
}
GBuffer::GBuffer(unsigned long long value) {
    Set(value);
}
GBuffer::GBuffer(double value) {
    Set(value);
}
GBuffer::GBuffer(double value, const GBuffer& format) {
    Set(value, format);
}

void GBuffer::Set(int value) {
    SetDecimal(*this, value);
}
void GBuffer::Set(long value) {
    SetDecimal(*this, value);
}
void GBuffer::Set(unsigned int value) {
    SetDecimal(*this, value);
}
void GBuffer::Set(unsigned long value) {
    SetDecimal(*this, value);
}
void GBuffer::Set(long long value) {
    SetDecimal(*this, value);
}
void GBuffer::Set(unsigned long long value) {
    SetDecimal(*this, static_cast<long long>(value));
}

void GBuffer::Set(long value, long minDigits) {
    char digits[24];
    // The most negative number has no positive twin, but it has an unsigned one.
    const unsigned long magnitude =
        value < 0 ? 0UL - static_cast<unsigned long>(value) : static_cast<unsigned long>(value);
    const char* const end = std::to_chars(digits, digits + sizeof digits, magnitude).ptr;
    // As printf has it: zero with a precision of zero has no digit at all, and a negative precision
    // counts as none given.
    const long count = value == 0 && minDigits == 0 ? 0 : static_cast<long>(end - digits);
    const long zeros = std::clamp(minDigits, count, cMaxNumberText - 1) - count;
    GBuffer text;
    text.Allocate(1 + zeros + count);
    if (value < 0) text += '-';
    for (long i = 0; i < zeros; ++i) text += '0';
    text.AppendByteArray(reinterpret_cast<const unsigned char*>(digits), count);
    Swap(text);
}

void GBuffer::Set(double value) {
    SetWithPrecision(value, 6);
}

void GBuffer::Set(double value, const GBuffer& format) {
    GRealFormat realFormat;
    // What Parse() refuses leaves "%f".
    realFormat.Parse(reinterpret_cast<const char*>(format.mData), static_cast<std::size_t>(format.mLength));
    char text[GRealFormat::cMaxText];
    const std::size_t length = realFormat.Write(GRealFormat::Clamp(value), text);
    SetStripped(*this, text, length);
}

void GBuffer::SetWithPrecision(double value, long digits) {
    constexpr long cMaxDigits = 16;
    const int precision = static_cast<int>(digits < 0 ? cMaxDigits : std::min(digits, cMaxDigits));
    char text[352];  // the largest double has 309 digits before the point
    const char* const end = std::to_chars(text, text + sizeof text, GRealFormat::Clamp(value),
                                          std::chars_format::fixed, precision)
                                .ptr;
    SetStripped(*this, text, static_cast<std::size_t>(end - text));
}

void GBuffer::SetWithHighPrecision(double value) {
    SetWithPrecision(value, 15);
}

// --- From text ---------------------------------------------------------------------------------

long GBuffer::GetInt32() const noexcept {
    Scanner scanner(mData, mLength);
    while (IsStandardWhiteSpace(scanner.Peek())) scanner.Skip();
    const bool negative = scanner.SkipSign();
    constexpr long long cBeyond = 0x100000000LL;
    long long value = 0;
    for (; IsDigit(scanner.Peek()); scanner.Skip())
        value = std::min(value * 10 + (scanner.Peek() - '0'), cBeyond);
    if (negative) value = -value;
    return static_cast<long>(std::clamp<long long>(value, INT32_MIN, INT32_MAX));
}

unsigned long GBuffer::GetUInt32() const noexcept {
    return static_cast<std::uint32_t>(GetInt64());
}

long long GBuffer::GetInt64() const noexcept {
    Scanner scanner(mData, mLength);
    SkipFrameworkWhiteSpace(scanner);
    const bool negative = scanner.SkipSign();
    unsigned long long value = 0;
    for (; IsDigit(scanner.Peek()); scanner.Skip()) value = value * 10 + (scanner.Peek() - '0');
    return static_cast<long long>(negative ? 0 - value : value);
}

double GBuffer::GetReal() const noexcept {
    Scanner scanner(mData, mLength);
    SkipFrameworkWhiteSpace(scanner);
    const bool negative = scanner.SkipSign();
    const char* const start = reinterpret_cast<const char*>(scanner.GetPlace());
    if (!SkipReal(scanner)) return 0.0;
    const char* const end = reinterpret_cast<const char*>(scanner.GetPlace());
    double value = 0.0;
    if (std::from_chars(start, end, value).ec == std::errc::result_out_of_range) {
        value = IsTooLarge(start, end) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return negative ? -value : value;
}
