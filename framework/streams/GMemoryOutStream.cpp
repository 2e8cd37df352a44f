#include "framework/streams/GMemoryOutStream.h"

#include "framework/core/bytes/GBuffer.h"

GMemoryOutStream::GMemoryOutStream(GBuffer& target) : mTarget(&target) {}

GMemoryOutStream::GMemoryOutStream(GBuffer* target) : mTarget(target) {}

long GMemoryOutStream::Write(const GBuffer& data) {
    const long count = data.GetLength();
    mTarget->AppendByteArray(data.GetRawData(), count);
    return count;
}
