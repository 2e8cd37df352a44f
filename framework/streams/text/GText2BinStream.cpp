#include "framework/streams/text/GText2BinStream.h"

#include <utility>

#include "framework/core/containers/GDictUtil.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/text/GString.h"
#include "framework/core/text/GStringSupport.h"

namespace {

const GEncoding* Require(const GEncoding* encoding) {
    if (encoding == nullptr) throw GSimpleException(GExceptionID::cInvalidParameter);
    return encoding;
}

void Put(GOutStream& target, const GBuffer& bytes) {
    if (bytes.IsEmpty()) return;
    if (target.Write(bytes) != bytes.GetLength()) throw GSimpleException(GExceptionID::cCouldNotWriteFile);
}

}  // namespace

GText2BinStream::GText2BinStream(GHeldStream<GOutStream> target, const GEncoding* encoding)
    : mTarget(std::move(target)), mEncoding(Require(encoding)) {}

GText2BinStream::~GText2BinStream() = default;

void GText2BinStream::WriteString(const GString& text) {
    GBuffer bytes;
    text.GetBuffer(bytes, mEncoding.Get());
    Put(*mTarget, bytes);
}

void GText2BinStream::WriteQuotedString(const GString& text) {
    GString quoted(text);
    GStringSupport::QuoteString(quoted);
    WriteString(quoted);
}

void GText2BinStream::WriteEOL() {
    WriteString(GDictUtil::GetEOLString());
}

long GText2BinStream::Write(const GBuffer& data) {
    GBuffer units;
    units.Swap(mHalfUnit);
    units.AppendByteArray(data.GetRawData(), data.GetLength());
    const long whole = units.GetLength() / 2 * 2;
    if (whole < units.GetLength()) mHalfUnit = units.GetSubBuffer(whole, 1);
    units.SetLength(whole);
    GBuffer bytes;
    mEncoding->ConvertFrom(units, GUnicodeEncoding::GetInstance(), bytes);
    Put(*mTarget, bytes);
    return data.GetLength();
}

void GText2BinStream::Flush() {
    mTarget->Flush();
}

void GText2BinStream::Reset() {
    mHalfUnit.Clear();
    mTarget->Reset();
}
