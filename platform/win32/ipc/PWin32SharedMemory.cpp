#include "platform/win32/ipc/PWin32SharedMemory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32LastErrorKeeper.h"
#include "platform/win32/ipc/PWin32IPMutexImp.h"
#include "platform/win32/ipc/PWin32KernelObject.h"

#include <psapi.h>

namespace {

constexpr long cSizeWord = 4;
constexpr long cLargestView = 0x7FFFFFFF;
constexpr DWORD cAllAccess = 0xF001F;

// True when the system says that no file is behind a view. Reading a file's view fails when its disk or
// server does, or its owner cuts it short, and that failure is no error code but the end of the process. So
// every other answer counts as a file.
bool IsOfThePagingFile(void* view) {
    wchar_t name[MAX_PATH];
    return ::GetMappedFileNameW(::GetCurrentProcess(), view, name, MAX_PATH) == 0 &&
           ::GetLastError() == ERROR_FILE_INVALID;
}

// The bytes from the view's beginning that can be read and written. A mapping may have been made with
// its pages only reserved, and touching one of those ends the process.
long GetTouchableSize(void* view) {
    MEMORY_BASIC_INFORMATION region = {};
    if (::VirtualQuery(view, &region, sizeof region) == 0) PWin32KernelObject::ThrowLastError();
    const bool isWritable = region.Protect == PAGE_READWRITE || region.Protect == PAGE_EXECUTE_READWRITE;
    if (region.State != MEM_COMMIT || region.Type != MEM_MAPPED || !isWritable || !IsOfThePagingFile(view))
        return 0;
    return region.RegionSize > cLargestView ? cLargestView : static_cast<long>(region.RegionSize);
}

}  // namespace

PWin32SharedMemory::PWin32SharedMemory(const GBuffer& path, const GBuffer& identifier) {
    Open(path + identifier);
}

PWin32SharedMemory::PWin32SharedMemory(const GBuffer& path, const GBuffer& identifier, long size,
                                       bool& created) {
    OpenOrCreate(path + identifier, size, created);
}

PWin32SharedMemory::~PWin32SharedMemory() = default;

void PWin32SharedMemory::Unmap::operator()(unsigned char* view) const noexcept {
    const PWin32LastErrorKeeper keeper;
    ::UnmapViewOfFile(view);
}

void PWin32SharedMemory::Open(const GBuffer& name) {
    mMapping.Reset(::OpenFileMappingA(cAllAccess, FALSE, name.GetPtr()));
    if (!mMapping) PWin32KernelObject::ThrowLastError();
    MapView();
}

void PWin32SharedMemory::OpenOrCreate(const GBuffer& name, long size, bool& created) {
    created = false;
    mMapping.Reset(::OpenFileMappingA(cAllAccess, FALSE, name.GetPtr()));
    if (!mMapping) {
        PWin32KernelObject::OpenToEverybody security;
        mMapping.Reset(::CreateFileMappingA(
            INVALID_HANDLE_VALUE, static_cast<SECURITY_ATTRIBUTES*>(security.GetAttributes()), PAGE_READWRITE,
            0, static_cast<DWORD>(size + cSizeWord), name.GetPtr()));
        const DWORD error = ::GetLastError();
        if (!mMapping) PWin32KernelObject::ThrowError(error);
        // Whoever does not hold the mutex can still have been faster.
        created = error != ERROR_ALREADY_EXISTS;
    }
    MapView();
    if (created) {
        SetLength(size);
    } else if (mViewSize < size + cSizeWord ||
               ReadSizeWord() != static_cast<std::uint32_t>(size + cSizeWord)) {
        throw GSimpleException(GExceptionID::cSharedMemorySizeDiffers);
    }
}

void PWin32SharedMemory::MapView() {
    mView.reset(static_cast<unsigned char*>(::MapViewOfFile(mMapping.Get(), cAllAccess, 0, 0, 0)));
    if (mView == nullptr) PWin32KernelObject::ThrowLastError();
    mViewSize = GetTouchableSize(mView.get());
}

bool PWin32SharedMemory::Exists(const GBuffer& path, const GBuffer& identifier) {
    const PWin32ScopedHandle<PWin32KernelHandle> mapping(
        ::OpenFileMappingA(cAllAccess, FALSE, (path + identifier).GetPtr()));
    return static_cast<bool>(mapping);
}

long PWin32SharedMemory::GetMaxIDSize() {
    return PWin32KernelObject::cMaxNameSize;
}

GString PWin32SharedMemory::GetError() {
    return PWin32KernelObject::GetError(::GetLastError());
}

// Through a volatile pointer, so that the word that is checked is the word that is used.
std::uint32_t PWin32SharedMemory::ReadSizeWord() const noexcept {
    return *reinterpret_cast<const volatile std::uint32_t*>(mView.get());
}

long PWin32SharedMemory::GetLength() const {
    if (mViewSize < cSizeWord) throw GSimpleException(GExceptionID::cSharedMemoryReadFailed);
    const std::uint32_t size = ReadSizeWord();
    if (size < cSizeWord || size > static_cast<std::uint32_t>(mViewSize))
        throw GSimpleException(GExceptionID::cSharedMemoryReadFailed);
    return static_cast<long>(size) - cSizeWord;
}

void PWin32SharedMemory::SetLength(long size) {
    if (size < 0 || mViewSize < cSizeWord) throw GSimpleException(GExceptionID::cSharedMemoryReadFailed);
    *reinterpret_cast<volatile std::uint32_t*>(mView.get()) =
        static_cast<std::uint32_t>(std::min(size + cSizeWord, mViewSize));
}

void PWin32SharedMemory::Read(long offset, void* destination, long count) const noexcept {
    if (count > 0)
        std::memcpy(destination, mView.get() + cSizeWord + offset, static_cast<std::size_t>(count));
}

void PWin32SharedMemory::Write(long offset, const void* source, long count) noexcept {
    if (count > 0) std::memcpy(mView.get() + cSizeWord + offset, source, static_cast<std::size_t>(count));
}

bool PWin32SharedMemory::Equals(long offset, const void* bytes, long count) const noexcept {
    return count <= 0 ||
           std::memcmp(mView.get() + cSizeWord + offset, bytes, static_cast<std::size_t>(count)) == 0;
}

void PWin32SharedMemory::Close() {
    const bool unmapped = mView == nullptr || ::UnmapViewOfFile(mView.release());
    const DWORD error = ::GetLastError();
    if (!::CloseHandle(mMapping.Release())) PWin32KernelObject::ThrowLastError();
    if (!unmapped) PWin32KernelObject::ThrowError(error);
}
