#include "framework/streams/GFileOutStream.h"

#include <algorithm>
#include <limits>

#include "framework/core/bytes/GBuffer.h"
#include "framework/files/GFileOpenMode.h"

namespace {

long WriteMode(bool startEmpty) {
    const long mode = GFileOpenMode::cWrite | GFileOpenMode::cCreate;
    return startEmpty ? mode | GFileOpenMode::cStartEmpty : mode;
}

}  // namespace

GFileOutStream::GFileOutStream(const GPathName& path, bool startEmpty)
    : mFile(new GFile(path, WriteMode(startEmpty))) {}

GFileOutStream::GFileOutStream(const GSharedObject<GFile>& file) : mFile(file) {}

long GFileOutStream::Write(const GBuffer& data) {
    const long count = mFile->WriteAt(mPosition, data);
    mPosition += count;
    return count;
}

long long GFileOutStream::Skip(long long count) {
    const long long room = std::numeric_limits<long long>::max() - mPosition;
    const long long moved = std::clamp(count, -mPosition, room);
    mPosition += moved;
    return moved;
}

void GFileOutStream::Flush() {
    mFile->Flush();
}

void GFileOutStream::Reset() {
    mPosition = 0;
}

long long GFileOutStream::GetLength() const {
    return mFile->GetLength();
}
