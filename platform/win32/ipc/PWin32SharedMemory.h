#pragma once

#include <cstdint>
#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/text/GString.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

class PWin32IPMutexImp;

/// PWin32SharedMemory: a named file mapping of the paging file, and a view of all of it.
///
/// The view's first word holds its whole size in bytes; the usable bytes follow. Anybody can write that word,
/// and anybody can have made the mapping, so how much memory there really is was asked of the system when the
/// view was made. Refusals of the system throw GExceptionID::cGeneral with its text.
class QUILLON_EXPORT PWin32SharedMemory {
public:
    using MutexImp = PWin32IPMutexImp;

    /// Opens the mapping named path + identifier; it must exist.
    PWin32SharedMemory(const GBuffer& path, const GBuffer& identifier);
    /// Opens it, or creates it with `size` usable bytes, all zero. Throws
    /// GExceptionID::cSharedMemorySizeDiffers when it exists with another size.
    PWin32SharedMemory(const GBuffer& path, const GBuffer& identifier, long size, bool& created);
    PWin32SharedMemory(const PWin32SharedMemory&) = delete;
    PWin32SharedMemory& operator=(const PWin32SharedMemory&) = delete;
    /// Releases the view and the mapping and reports nothing; Close() does.
    ~PWin32SharedMemory();

    static bool Exists(const GBuffer& path, const GBuffer& identifier);
    static long GetMaxIDSize();
    /// The text for the calling thread's last error.
    static GString GetError();

    /// The usable bytes by the view's first word. Throws GExceptionID::cSharedMemoryReadFailed when that is
    /// not between 4 and the size of the view.
    long GetLength() const;
    /// Writes the first word: `size` usable bytes, or as many as the view has. Throws
    /// GExceptionID::cSharedMemoryReadFailed when that is none at all.
    void SetLength(long size);
    /// Plain copies; the caller has checked against GetLength().
    void Read(long offset, void* destination, long count) const noexcept;
    void Write(long offset, const void* source, long count) noexcept;
    [[nodiscard]] bool Equals(long offset, const void* bytes, long count) const noexcept;

    /// Releases the view, then the mapping; throws GExceptionID::cGeneral, having tried both, when one fails.
    void Close();

private:
    struct Unmap {
        void operator()(unsigned char* view) const noexcept;
    };

    void Open(const GBuffer& name);
    void OpenOrCreate(const GBuffer& name, long size, bool& created);
    void MapView();
    std::uint32_t ReadSizeWord() const noexcept;

    PWin32ScopedHandle<PWin32KernelHandle> mMapping;
    std::unique_ptr<unsigned char, Unmap> mView;
    long mViewSize = 0;  // the memory that can be touched, in bytes
};
