#include "framework/core/text/GString.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GCodeUnits.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/memory/GAllocator.h"

// Constant-initialised: usable before and after all other statics.
constinit const GString GString::cEmptyString;

namespace {

bool IsUnicode(const GEncoding* encoding) {
    return encoding == GUnicodeEncoding::GetInstance();
}

// Units in bytes. What no buffer can hold counts as want of memory.
long CountBytes(long units) {
    if (units > GBuffer::cMaxLength / 2) GAllocator::ThrowOutOfMemory();
    return 2 * std::max(units, 0L);
}

// A position within a text of `length` units, or its end.
long Clamp(long position, long length) {
    return std::clamp(position, 0L, length);
}

}  // namespace

// --- Construction and assignment ---------------------------------------------------------------

GString::GString(const char* text) {
    Set(text);
}

GString::GString(const char* text, const GEncoding* encoding, bool keepEncoding) {
    Set(text, encoding, keepEncoding);
}

GString::GString(const unsigned char* bytes, long length, const GEncoding* encoding, bool keepEncoding) {
    Set(bytes, length, encoding, keepEncoding);
}

GString::GString(const GBuffer& bytes, const GEncoding* encoding, bool keepEncoding) {
    Set(bytes, encoding, keepEncoding);
}

GString::GString(GBuffer&& bytes, const GEncoding* encoding, bool keepEncoding)
    : mBuffer(std::move(bytes)), mEncoding(encoding) {
    Normalize(keepEncoding);
}

GString::GString(int value) {
    Set(value);
}

GString::GString(unsigned int value) {
    Set(value);
}

GString::GString(long value) {
    Set(value);
}

GString::GString(unsigned long value) {
    Set(value);
}

GString::GString(long long value) {
    Set(value);
}

GString::GString(unsigned long long value) {
    Set(value);
}

GString::GString(double value) {
    Set(value);
}

GString::GString(double value, const GBuffer& format) {
    Set(value, format);
}

GString::GString(double value, long precision) {
    Set(value, precision);
}

GString GString::FromUTF16(const unsigned short* units, long length) {
    const long bytes = units == nullptr ? 0 : CountBytes(length);
    return GString(reinterpret_cast<const unsigned char*>(units), bytes, GUnicodeEncoding::GetInstance());
}

GString GString::FromUTF8(const char* text) {
    return GString(text, GUTF8Encoding::GetInstance());
}

void GString::SetASCII() {
    mEncoding = GASCIIEncoding::GetInstance();
}

void GString::Set(const GString& other) {
    *this = other;
}

void GString::Set(const char* text) {
    mBuffer.Set(text);
    SetASCII();
}

void GString::Set(const char* text, const GEncoding* encoding, bool keepEncoding) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    Set(bytes, encoding == nullptr ? 0 : encoding->GetLength(bytes), encoding, keepEncoding);
}

void GString::Set(const unsigned char* bytes, long length, const GEncoding* encoding, bool keepEncoding) {
    GBuffer copy(bytes, length);
    SetOwn(copy, encoding, keepEncoding);
}

// Takes the bytes over. They are put into form apart, so that want of memory leaves the old text.
void GString::SetOwn(GBuffer& bytes, const GEncoding* encoding, bool keepEncoding) {
    GString text;
    text.mBuffer.Swap(bytes);
    text.mEncoding = encoding;
    text.Normalize(keepEncoding);
    Swap(text);
}

void GString::Set(const GBuffer& bytes, const GEncoding* encoding, bool keepEncoding) {
    GBuffer copy(bytes);
    SetOwn(copy, encoding, keepEncoding);
}

void GString::Set(int value) {
    mBuffer.Set(value);
    SetASCII();
}

void GString::Set(unsigned int value) {
    mBuffer.Set(value);
    SetASCII();
}

void GString::Set(long value) {
    Set(static_cast<int>(static_cast<std::int32_t>(value)));
}

void GString::Set(unsigned long value) {
    Set(static_cast<unsigned int>(static_cast<std::uint32_t>(value)));
}

void GString::Set(long long value) {
    mBuffer.Set(value);
    SetASCII();
}

void GString::Set(unsigned long long value) {
    mBuffer.Set(value);
    SetASCII();
}

void GString::Set(double value) {
    GBuffer format;
    format.SetFromStatic("%f");
    Set(value, format);
}

void GString::Set(double value, const GBuffer& format) {
    mBuffer.Set(value, format);
    SetASCII();
}

void GString::Set(double value, long precision) {
    mBuffer.SetWithPrecision(value, precision);
    SetASCII();
}

void GString::SetInt(long value, long minDigits) {
    mBuffer.Set(static_cast<int>(static_cast<std::int32_t>(value)), minDigits);
    SetASCII();
}

void GString::SetWithHighPrecision(double value) {
    mBuffer.SetWithHighPrecision(value);
    SetASCII();
}

void GString::Swap(GString& other) noexcept {
    mBuffer.Swap(other.mBuffer);
    mEncoding.Swap(other.mEncoding);
}

// --- The character form ------------------------------------------------------------------------

void GString::EnsureUnicode() const {
    // The shared constant stays as it is: threads may read it at once.
    if (this == &cEmptyString) return;
    const GUnicodeEncoding* unicode = GUnicodeEncoding::GetInstance();
    if (mEncoding && mEncoding.Get() != unicode) {
        GBuffer utf16;
        mEncoding->ConvertTo(mBuffer, unicode, utf16);
        unicode->EnsureComposedUnicode(utf16);
        mBuffer.Swap(utf16);
    }
    if (mEncoding.Get() != unicode) mEncoding = unicode;
    if (mBuffer.GetLength() % 2 != 0) mBuffer.SetLength(mBuffer.GetLength() - 1);
}

void GString::Normalize(bool keepEncoding) {
    if (!keepEncoding)
        EnsureUnicode();
    else if (mEncoding)
        mEncoding->Normalize(mBuffer);
}

const unsigned char* GString::GetUnits() const {
    EnsureUnicode();
    return mBuffer.GetRawData();
}

const unsigned short* GString::GetUTF16Ptr() const {
    static constexpr unsigned short cNoUnits[1] = {0};
    EnsureUnicode();
    // An owned block is aligned and has room for a zero unit; borrowed bytes may lack both.
    const unsigned char* units = mBuffer.GetWritePtr();
    return units == nullptr ? cNoUnits : reinterpret_cast<const unsigned short*>(units);
}

long GString::GetLength() const {
    EnsureUnicode();
    return mBuffer.GetLength() / 2;
}

unsigned short GString::operator[](long position) const {
    const long length = GetLength();
    if (position < 0 || position >= length) return 0;
    return GCodeUnits::Load(mBuffer.GetRawData(), static_cast<std::size_t>(position));
}

void GString::SetChar(long position, unsigned short unit) {
    if (position < 0 || position >= GetLength()) return;
    GCodeUnits::Store(mBuffer.GetWritePtr(), static_cast<std::size_t>(position), unit);
}

void GString::SetLength(long length) {
    const long old = 2 * GetLength();
    const long bytes = CountBytes(length);
    // Borrowed bytes move while the length is still the old one: that may want memory.
    if (bytes > old) mBuffer.GetWritePtr();
    mBuffer.SetLength(bytes);
    if (bytes > old) std::memset(mBuffer.GetWritePtr() + old, 0, static_cast<std::size_t>(bytes - old));
}

void GString::Insert(long position, const GString& text) {
    const long start = Clamp(position, GetLength());
    text.EnsureUnicode();
    mBuffer.ReplaceByteArray(2 * start, 0, text.mBuffer.GetRawData(), text.mBuffer.GetLength());
}

void GString::Insert(long position, unsigned short unit) {
    const long start = Clamp(position, GetLength());
    mBuffer.ReplaceByteArray(2 * start, 0, reinterpret_cast<const unsigned char*>(&unit), 2);
}

void GString::Remove(long start, long count) {
    const long length = GetLength();
    if (start < 0 || start >= length || count <= 0) return;
    mBuffer.Remove(2 * start, 2 * std::min(count, length - start));
}

bool GString::Replace(long start, const GString& find, const GString& with) {
    const unsigned char* units = GetUnits();
    const long pattern = find.GetLength();
    long found = pattern == 0 ? -1 : Find(find, start);
    if (found < 0) return false;
    GBuffer result;
    long copied = 0;
    with.EnsureUnicode();
    for (; found >= 0; found = Find(find, copied)) {
        result.AppendByteArray(units + 2 * copied, 2 * (found - copied));
        result += with.mBuffer;
        copied = found + pattern;
    }
    result.AppendByteArray(units + 2 * copied, mBuffer.GetLength() - 2 * copied);
    mBuffer.Swap(result);
    return true;
}

bool GString::Replace(long start, unsigned short find, unsigned short with) {
    long found = FindFirst(find, start);
    if (found < 0) return false;
    unsigned char* units = mBuffer.GetWritePtr();
    for (; found >= 0; found = FindFirst(find, found + 1))
        GCodeUnits::Store(units, static_cast<std::size_t>(found), with);
    return true;
}

GString& GString::operator+=(const GString& text) {
    EnsureUnicode();
    text.EnsureUnicode();
    mBuffer += text.mBuffer;
    return *this;
}

GString& GString::operator+=(unsigned short unit) {
    EnsureUnicode();
    mBuffer += unit;
    return *this;
}

GString GString::GetSubstring(long start, long count) const {
    GString result;
    GetSubstring(start, count, result);
    return result;
}

void GString::GetSubstring(long start, long count, GString& out) const {
    const long length = GetLength();
    const long from = Clamp(start, length);
    const long units = count < 0 ? length - from : std::min(count, length - from);
    GBuffer part = mBuffer.GetSubBuffer(2 * from, 2 * units);
    out.mBuffer = std::move(part);
    out.mEncoding = mEncoding;
}

void GString::Clear() {
    mBuffer.Clear();
}

// --- Searching ---------------------------------------------------------------------------------

long GString::Find(const GString& text, long start) const {
    EnsureUnicode();
    text.EnsureUnicode();
    if (text.IsEmpty()) return 0;
    return mBuffer.FindSubBuffer(text.mBuffer, std::max(start, 0L), true);
}

long GString::FindFirst(unsigned short unit, long start) const {
    EnsureUnicode();
    return mBuffer.FindFirstOccurrence(unit, start);
}

long GString::FindFirst(const unsigned short* set, long setLength, long start) const {
    EnsureUnicode();
    return mBuffer.FindFirstOccurrence(set, setLength, start);
}

long GString::FindFirstNot(unsigned short unit, long start) const {
    return FindFirstNot(&unit, 1, start);
}

long GString::FindFirstNot(const unsigned short* set, long setLength, long start) const {
    EnsureUnicode();
    return mBuffer.FindFirstNonOccurrence(set, setLength, start);
}

long GString::FindLast(unsigned short unit, long upTo) const {
    EnsureUnicode();
    return mBuffer.FindLastOccurrence(unit, upTo);
}

// --- Conversion out ----------------------------------------------------------------------------

GBuffer GString::GetBuffer(const GEncoding* target) const {
    GBuffer out;
    GetBuffer(out, target);
    return out;
}

long GString::GetBuffer(GBuffer& out, const GEncoding* target) const {
    if (!mEncoding || target == nullptr) {
        out.Clear();
        return GEncoding::cConverted;
    }
    if (target == mEncoding.Get()) {
        out = mBuffer;
        return GEncoding::cConverted;
    }
    const long result = target->ConvertFrom(mBuffer, mEncoding.Get(), out);
    if (IsUnicode(target)) GUnicodeEncoding::GetInstance()->EnsureComposedUnicode(out);
    return result;
}

const GBuffer& GString::GetEncodingName() const {
    static const GBuffer cNone = [] {
        GBuffer none;
        none.SetFromStatic("NULL");
        return none;
    }();
    return mEncoding ? mEncoding->GetASCIIDescription() : cNone;
}

bool GString::AreCompatible(const GBuffer& bytes, const GEncoding* encoding) {
    static constexpr const char* cTested[] = {"ASCIIEncoding", "MacRomanEncoding", "PDFDocEncoding",
                                              "UTF-8Encoding", "UnicodeEncoding",  "WinAnsiEncoding"};
    if (encoding == nullptr) return true;
    const GBuffer& name = encoding->GetASCIIDescription();
    if (std::ranges::none_of(cTested, [&name](const char* tested) { return name == tested; })) return true;
    GBuffer utf16;
    return encoding->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), utf16) == GEncoding::cConverted;
}

std::int32_t GString::GetInt32() const {
    return static_cast<std::int32_t>(GetBuffer(GASCIIEncoding::GetInstance()).GetInt32());
}

std::uint32_t GString::GetUInt32() const {
    return static_cast<std::uint32_t>(GetBuffer(GASCIIEncoding::GetInstance()).GetUInt32());
}

long long GString::GetInt64() const {
    return GetBuffer(GASCIIEncoding::GetInstance()).GetInt64();
}

double GString::GetReal() const {
    return GetBuffer(GASCIIEncoding::GetInstance()).GetReal();
}

GString operator+(const GString& a, const GString& b) {
    GString result(a);
    result += b;
    return result;
}
