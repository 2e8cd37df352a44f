#include "framework/files/GFile.h"

#include <algorithm>
#include <utility>

#include "PPlatformFiles.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/files/GFileOpenMode.h"
#include "framework/files/GFileSystem.h"

namespace {

// A file that grows while it is read, and a device, are read in pieces of this size.
constexpr long long cUnknownRest = 4096;

// The bytes are written behind the buffer's back, so its block must be its own.
unsigned char* PrepareBlock(GBuffer& out, long count) {
    if (!out.GetAllocated()) GBuffer().Swap(out);
    out.Clear();
    out.Allocate(count);
    out.SetLength(count);
    return out.GetWritePtr();
}

}  // namespace

GFile::GFile(const GPathName& path) : mImp(std::make_unique<PFileImp>(path)) {}

GFile::GFile(std::unique_ptr<PFileImp> opened) : mImp(std::move(opened)) {}

GFile::GFile(const GPathName& path, long mode) : GFile(path) {
    Open(mode);
}

GFile::~GFile() = default;

void GFile::Open(long mode) {
    Close();
    if ((mode & GFileOpenMode::cCreate) != 0) GFileSystem::CreateParentFolder(GetPathName());
    mImp->Open(mode);
}

void GFile::Close() {
    mImp->Close();
    mPosition = 0;
}

bool GFile::IsOpen() const {
    return mImp->IsOpen();
}

const GPathName& GFile::GetPathName() const {
    return mImp->GetPathName();
}

void GFile::RequireOpen() const {
    if (!mImp->IsOpen()) Throw(GExceptionID::cFileNotOpen);
}

void GFile::RequirePosition(long long position) const {
    if (position < 0) Throw(GExceptionID::cPositionBeforeStart);
}

void GFile::Throw(long id) const {
    const GExceptionLocation location(GetPathName());
    throw GSimpleException(id);
}

long GFile::Read(GBuffer& out, long maxBytes) {
    const long count = ReadAt(mPosition, out, maxBytes);
    if (count > 0) mPosition += count;
    return count;
}

long GFile::ReadAt(long long position, GBuffer& out, long maxBytes) const {
    RequireOpen();
    RequirePosition(position);
    out.Clear();
    if (maxBytes < 1) return -1;
    // The block is no larger than what can come: a caller may ask for "everything" in one number.
    const long long rest = std::max(mImp->GetLength() - position, cUnknownRest);
    const long wanted = static_cast<long>(std::min<long long>({maxBytes, rest, GBuffer::cMaxLength}));
    unsigned char* const block = PrepareBlock(out, wanted);
    out.Clear();
    const long count = mImp->Read(position, block, wanted);
    if (count < 1) return -1;
    out.SetLength(count);
    return count;
}

long GFile::Write(const GBuffer& data) {
    const long count = WriteAt(mPosition, data);
    mPosition += count;
    return count;
}

long GFile::WriteAt(long long position, const GBuffer& data) {
    RequireOpen();
    RequirePosition(position);
    if (data.IsEmpty()) return 0;
    return mImp->Write(position, data.GetRawData(), data.GetLength());
}

void GFile::Seek(long long position) {
    RequirePosition(position);
    mPosition = position;
}

long long GFile::GetLength() const {
    RequireOpen();
    return mImp->GetLength();
}

void GFile::SetLength(long long length) {
    RequireOpen();
    mImp->SetLength(length);
}

void GFile::Flush() {
    RequireOpen();
    mImp->Flush();
}
