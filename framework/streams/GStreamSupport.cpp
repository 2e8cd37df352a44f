#include "framework/streams/GStreamSupport.h"

#include <algorithm>
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
#include "framework/streams/GTypeFinder.h"

namespace {

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
    while (start.GetLength() < GTypeFinder::cProbe) {
        const long count = clone->Read(chunk, GTypeFinder::cProbe - start.GetLength());
        if (count < 1) break;
        start.AppendByteArray(chunk.GetRawData(), count);
    }
    return GetBufferType(start);
}

GTypeEnums::Types GStreamSupport::GetBufferType(const GBuffer& data) {
    if (data.IsEmpty()) return GTypeEnums::cNone;
    const auto* const bytes = reinterpret_cast<const char*>(data.GetRawData());
    const long count = std::min(data.GetLength(), GTypeFinder::cProbe);
    return GTypeFinder::FindType(std::string_view(bytes, static_cast<std::size_t>(count)));
}
