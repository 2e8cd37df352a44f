#include "framework/streams/GStreamSupport.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string_view>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/streams/GFileInStream.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GOutStream.h"
#include "framework/streams/GProgress.h"

using namespace std::string_view_literals;

namespace {

constexpr long cTypeProbe = 1024;  // bytes that decide the type

struct SourceSize {
    long long length = GProgress::cUnknownTotal;
    long long position = 0;
};

SourceSize FindSize(const GInStream& source) {
    if (const auto* memory = dynamic_cast<const GMemoryInStream*>(&source)) {
        return {memory->GetLength(), memory->GetPosition()};
    }
    if (const auto* file = dynamic_cast<const GFileInStream*>(&source)) {
        return {file->GetLength(), file->GetPosition()};
    }
    return {};
}

long long FindRest(const GInStream& source) {
    const SourceSize size = FindSize(source);
    return size.length < 0 ? size.length : std::max(size.length - size.position, 0LL);
}

struct Signature {
    GTypeEnums::Types type;
    std::string_view bytes;
};

// Looked through in order: the longer of two that begin alike stands first.
constexpr Signature cSignatures[] = {
    {GTypeEnums::cPDF, "%PDF-"sv},
    {GTypeEnums::cEPS, "\xC5\xD0\xD3\xC6"sv},
    {GTypeEnums::cPNG, "\x89PNG\r\n\x1A\n"sv},
    {GTypeEnums::cJPEG, "\xFF\xD8\xFF"sv},
    {GTypeEnums::cGIF, "GIF87a"sv},
    {GTypeEnums::cGIF, "GIF89a"sv},
    {GTypeEnums::cTIFF, "II*\0"sv},
    {GTypeEnums::cTIFF, "MM\0*"sv},
    {GTypeEnums::cZip, "PK\x03\x04"sv},
    {GTypeEnums::cGZip, "\x1F\x8B\x08"sv},
    {GTypeEnums::cDictionary, "#BEGINDICT"sv},
    {GTypeEnums::cPreferences, "#BEGINPREFS"sv},
    {GTypeEnums::cText, "\xEF\xBB\xBF"sv},
    {GTypeEnums::cText, "\xFF\xFE"sv},
    {GTypeEnums::cText, "\xFE\xFF"sv},
};

std::string_view FirstLine(std::string_view text) {
    return text.substr(0, text.find_first_of("\r\n"sv));
}

GTypeEnums::Types FindPostScriptType(std::string_view data) {
    return FirstLine(data).find(" EPSF-"sv) != std::string_view::npos ? GTypeEnums::cEPS
                                                                      : GTypeEnums::cPostScript;
}

// A job may begin with commands for the printer; the language they lead to follows the ENTER line.
GTypeEnums::Types FindPrinterJobType(std::string_view data) {
    const std::size_t document = data.find("%!PS"sv);
    return document == std::string_view::npos ? GTypeEnums::cPrinterJob
                                              : FindPostScriptType(data.substr(document));
}

// "BM" alone begins many a text; the header's reserved words and its size field settle it.
bool IsBitmap(std::string_view data) {
    constexpr std::size_t cReserved = 6;
    constexpr std::size_t cHeaderSize = 14;
    if (data.size() < cHeaderSize + 4 || !data.starts_with("BM"sv)) return false;
    if (data.substr(cReserved, 4) != "\0\0\0\0"sv) return false;
    const unsigned char size = static_cast<unsigned char>(data[cHeaderSize]);
    return size == 12 || size == 40 || size == 108 || size == 124;
}

}  // namespace

long long GStreamSupport::CopyStream(GInStream& source, GOutStream& target) {
    GProgress progress(FindRest(source));
    GBuffer chunk;
    long long total = 0;
    while (true) {
        const long count = source.Read(chunk, cCopyChunk);
        if (count < 1) return total;
        if (target.Write(chunk) != count) throw GSimpleException(GExceptionID::cCouldNotWriteFile);
        total += count;
        progress.Advance(count);
    }
}

long GStreamSupport::GetContent(GInStream& source, GBuffer& content, long limit) {
    GBuffer collected;
    const long long rest = FindRest(source);
    if (rest > limit) throw GSimpleException(GExceptionID::cNotEnoughSpace);
    if (rest > 0) collected.Allocate(static_cast<long>(rest));
    GBuffer chunk;
    for (long count = source.Read(chunk, cCopyChunk); count > 0; count = source.Read(chunk, cCopyChunk)) {
        if (count > limit - collected.GetLength()) throw GSimpleException(GExceptionID::cNotEnoughSpace);
        collected.AppendByteArray(chunk.GetRawData(), count);
    }
    content.Swap(collected);
    return content.GetLength();
}

unsigned long long GStreamSupport::GetStreamLength(const GInStream& source) {
    const SourceSize size = FindSize(source);
    if (size.length >= 0) return static_cast<unsigned long long>(size.length);
    const std::unique_ptr<GInStream> clone(source.CreateClone());
    clone->Reset();
    return static_cast<unsigned long long>(clone->Skip(std::numeric_limits<long long>::max()));
}

GTypeEnums::Types GStreamSupport::GetStreamType(const GInStream& source) {
    const std::unique_ptr<GInStream> clone(source.CreateClone());
    clone->Reset();
    GBuffer start;
    GBuffer chunk;
    while (start.GetLength() < cTypeProbe) {
        const long count = clone->Read(chunk, cTypeProbe - start.GetLength());
        if (count < 1) break;
        start.AppendByteArray(chunk.GetRawData(), count);
    }
    return GetBufferType(start);
}

GTypeEnums::Types GStreamSupport::GetBufferType(const GBuffer& data) {
    if (data.IsEmpty()) return GTypeEnums::cNone;
    const std::string_view bytes(reinterpret_cast<const char*>(data.GetRawData()),
                                 static_cast<std::size_t>(std::min<long>(data.GetLength(), cTypeProbe)));
    if (bytes.starts_with("%!PS"sv)) return FindPostScriptType(bytes);
    if (bytes.starts_with("\x1B%-12345X"sv) || bytes.starts_with("@PJL"sv)) return FindPrinterJobType(bytes);
    if (bytes.starts_with("%!"sv)) return GTypeEnums::cPostScript;
    if (IsBitmap(bytes)) return GTypeEnums::cBMP;
    for (const Signature& signature : cSignatures) {
        if (bytes.starts_with(signature.bytes)) return signature.type;
    }
    return GTypeEnums::cNone;
}
