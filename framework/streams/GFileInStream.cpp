#include "framework/streams/GFileInStream.h"

#include <algorithm>

#include "framework/core/bytes/GBuffer.h"
#include "framework/files/GFileOpenMode.h"

namespace {

constexpr long cReadMode = GFileOpenMode::cRead | GFileOpenMode::cAllowWriters | GFileOpenMode::cAllowReaders;

}  // namespace

GFileInStream::GFileInStream(const GPathName& path) : mFile(new GFile(path, cReadMode)) {}

GFileInStream::GFileInStream(const GSharedObject<GFile>& file) : mFile(file) {}

GFileInStream* GFileInStream::CreateClone() const {
    return new GFileInStream(*this);
}

long GFileInStream::Read(GBuffer& out, long maxBytes) {
    const long count = mFile->ReadAt(mPosition, out, maxBytes);
    if (count > 0) mPosition += count;
    return count;
}

long long GFileInStream::Skip(long long count) {
    const long long moved = std::max(std::min(count, GetLength() - mPosition), -mPosition);
    mPosition += moved;
    return moved;
}

void GFileInStream::Reset() {
    mPosition = 0;
}

long long GFileInStream::GetLength() const {
    return mFile->GetLength();
}
