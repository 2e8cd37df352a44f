#include "framework/streams/text/GBin2TextStream.h"

#include <algorithm>
#include <utility>

#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/text/GBufferSupport.h"
#include "framework/core/text/GStringSupport.h"

namespace {

// What is read beyond a line is given back and read again, so it begins with what most lines need.
constexpr long cFirstChunk = 128;
constexpr long cChunk = 4096;
constexpr unsigned short cLineFeed = 10;
constexpr unsigned short cCarriageReturn = 13;
constexpr unsigned short cQuote = '"';
constexpr unsigned short cBackslash = '\\';
constexpr unsigned short cByteOrderMark = 0xFEFF;

bool IsLineEnd(unsigned short unit) {
    return unit == cLineFeed || unit == cCarriageReturn;
}

// A line of bytes is scanned in the encoding's own units: in UTF-16 a byte 10 may be half of U+0A0D.
// In every other encoding the bytes 10 and 13 are never part of another character.
class RawLine {
public:
    RawLine(const GBuffer& bytes, bool wide) : mBytes(bytes), mWidth(wide ? 2 : 1) {}

    // The offset behind the first line end at or after `start`, or -1. A CR at the very end is not
    // decided yet: `pending` becomes its offset.
    long FindEnd(long start, long& pending) const {
        pending = std::max(start, mBytes.GetLength() / mWidth * mWidth);
        for (long offset = start; offset + mWidth <= mBytes.GetLength(); offset += mWidth) {
            const unsigned short unit = UnitAt(offset);
            const long next = offset + mWidth;
            if (unit == cLineFeed) return next;
            if (unit != cCarriageReturn) continue;
            if (next + mWidth <= mBytes.GetLength()) return UnitAt(next) == cLineFeed ? next + mWidth : next;
            pending = offset;
        }
        return -1;
    }

private:
    unsigned short UnitAt(long offset) const {
        return mWidth == 2 ? mBytes.GetWordAt(offset / 2) : mBytes.GetRawData()[offset];
    }

    const GBuffer& mBytes;
    long mWidth;
};

const GEncoding* Require(const GEncoding* encoding) {
    if (encoding == nullptr) throw GSimpleException(GExceptionID::cInvalidParameter);
    return encoding;
}

}  // namespace

GBin2TextStream::GBin2TextStream(GHeldStream<GBufferedInStream> source, const GEncoding* encoding)
    : mSource(std::move(source)), mEncoding(Require(encoding)) {}

GBin2TextStream::GBin2TextStream(const GBin2TextStream& other)
    : GInStream(other),
      mSource(other.mSource.Clone()),
      mEncoding(other.mEncoding),
      mLine(other.mLine),
      mUnitCount(other.mUnitCount),
      mPosition(other.mPosition),
      mAtStart(other.mAtStart),
      mHalfTaken(other.mHalfTaken),
      mEnded(other.mEnded) {}

GBin2TextStream::~GBin2TextStream() = default;

bool GBin2TextStream::FetchRawLine(GBuffer& line) {
    const bool wide = mEncoding->IsOfType(GUnicodeEncoding::sDescription);
    GBuffer chunk;
    long scanned = 0;
    for (long wanted = cFirstChunk; mSource->Read(chunk, wanted) > 0; wanted = std::min(2 * wanted, cChunk)) {
        line.AppendByteArray(chunk.GetRawData(), chunk.GetLength());
        const long end = RawLine(line, wide).FindEnd(scanned, scanned);
        if (end < 0) continue;
        const long rest = line.GetLength() - end;
        if (mSource->Unread(rest) != rest) throw GSimpleException(GExceptionID::cGeneral);
        line.SetLength(end);
        return true;
    }
    return !line.IsEmpty();
}

bool GBin2TextStream::FetchLine() {
    GBuffer raw;
    mPosition = 0;
    mUnitCount = 0;
    if (mEnded || !FetchRawLine(raw)) {
        mEnded = true;
        return false;
    }
    // What follows invalid bytes cannot be told from what was meant; the text ends before them.
    if (mEncoding->ConvertTo(raw, GUnicodeEncoding::GetInstance(), mLine) == GEncoding::cInvalid)
        mEnded = true;
    mUnitCount = static_cast<std::int32_t>(mLine.GetLength() / 2);
    if (mAtStart && mUnitCount > 0 && GetUnit(0) == cByteOrderMark) mPosition = 1;
    mAtStart = false;
    return mPosition < mUnitCount;
}

bool GBin2TextStream::HasUnit() {
    while (mPosition >= mUnitCount) {
        if (!FetchLine() && mEnded) return false;
    }
    return true;
}

void GBin2TextStream::DropHalfUnit() {
    if (mHalfTaken) ++mPosition;
    mHalfTaken = false;
}

GBuffer GBin2TextStream::GetUnits(long start, long end) const {
    return mLine.GetSubBuffer(start * 2, (end - start) * 2);
}

bool GBin2TextStream::ReadToken(GString& token) {
    SkipWhiteSpace();
    token.Clear();
    const long start = mPosition;
    while (mPosition < mUnitCount && !GStringSupport::IsWhiteSpace(GetUnit(mPosition))) ++mPosition;
    if (mPosition == start) return false;
    token.Set(GetUnits(start, mPosition), GUnicodeEncoding::GetInstance());
    return true;
}

long GBin2TextStream::FindClosingQuote() const {
    long position = mPosition + 1;
    while (position < mUnitCount) {
        const unsigned short unit = GetUnit(position);
        if (unit == cQuote) return position;
        if (IsLineEnd(unit)) return -1;
        // What an introducer escapes cannot close the string; a line end cannot be escaped.
        const bool escapes =
            unit == cBackslash && position + 1 < mUnitCount && !IsLineEnd(GetUnit(position + 1));
        position += escapes ? 2 : 1;
    }
    return -1;
}

bool GBin2TextStream::ReadQuotedString(GString& text) {
    DropHalfUnit();
    text.Clear();
    if (!HasUnit() || GetUnit(mPosition) != cQuote) return false;
    const long end = FindClosingQuote();
    if (end < 0) return false;
    GBuffer units = GetUnits(mPosition + 1, end);
    GBufferSupport::UniReplaceBackslashEscapes(units);
    text.Set(units, GUnicodeEncoding::GetInstance());
    mPosition = static_cast<std::int32_t>(end + 1);
    return true;
}

bool GBin2TextStream::ReadLine(GString& line) {
    DropHalfUnit();
    line.Clear();
    if (!HasUnit()) return false;
    long end = mPosition;
    while (end < mUnitCount && !IsLineEnd(GetUnit(end))) ++end;
    line.Set(GetUnits(mPosition, end), GUnicodeEncoding::GetInstance());
    mPosition = mUnitCount;
    return true;
}

void GBin2TextStream::SkipWhiteSpace() {
    DropHalfUnit();
    if (!HasUnit()) return;
    while (mPosition < mUnitCount) {
        const unsigned short unit = GetUnit(mPosition);
        if (IsLineEnd(unit) || !GStringSupport::IsWhiteSpace(unit)) return;
        ++mPosition;
    }
}

void GBin2TextStream::SkipWhiteSpaceAndLineEnds() {
    DropHalfUnit();
    while (HasUnit() && GStringSupport::IsWhiteSpace(GetUnit(mPosition))) ++mPosition;
}

bool GBin2TextStream::IsAtEnd() {
    DropHalfUnit();
    return !HasUnit();
}

GBin2TextStream* GBin2TextStream::CreateClone() const {
    return new GBin2TextStream(*this);
}

long GBin2TextStream::Read(GBuffer& out, long maxBytes) {
    out.Clear();
    if (maxBytes < 1 || !HasUnit()) return -1;
    const long start = mPosition * 2L + (mHalfTaken ? 1 : 0);
    const long count = std::min(maxBytes, mUnitCount * 2L - start);
    out.CopyByteArray(mLine.GetRawData() + start, count, count);
    mPosition = static_cast<std::int32_t>((start + count) / 2);
    mHalfTaken = (start + count) % 2 != 0;
    return count;
}

void GBin2TextStream::Reset() {
    mSource->Reset();
    mUnitCount = 0;
    mPosition = 0;
    mAtStart = true;
    mHalfTaken = false;
    mEnded = false;
}
