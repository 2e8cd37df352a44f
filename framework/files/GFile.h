#pragma once

#include <memory>

#include "PPlatformTypes.h"
#include "framework/core/GExport.h"
#include "framework/core/memory/GRefCount.h"
#include "framework/core/paths/GPathName.h"

class GBuffer;

/// GFile: a file that is opened by a mode (GFileOpenMode) and shared by streams.
///
/// Positions and lengths are in bytes. Read and Write use the file's own position; ReadAt and WriteAt
/// leave it alone and may be called from several threads at once, everything else from one thread at a
/// time. Failures throw PWin32SystemException (GCustomException GExceptionID::cUNIXSystemError in the
/// native build) with the path as location; calls on a closed file throw GExceptionID::cFileNotOpen,
/// negative positions GExceptionID::cPositionBeforeStart.
class QUILLON_EXPORT GFile : public GThreadSafeRefCount {
public:
    /// A closed file.
    explicit GFile(const GPathName& path);
    /// An open one.
    GFile(const GPathName& path, long mode);
    /// One that the platform has opened; not null.
    explicit GFile(std::unique_ptr<PFileImp> opened);
    GFile(const GFile&) = delete;
    GFile& operator=(const GFile&) = delete;
    ~GFile() override;

    /// Opens the file at position 0; an open one is closed first.
    void Open(long mode);
    /// Closing a closed file does nothing.
    void Close();
    bool IsOpen() const;                   ///< whether it holds a handle
    const GPathName& GetPathName() const;  ///< as it was given

    /// Replaces `out` with up to `maxBytes` bytes and returns how many; -1 with `out` empty at the
    /// end of the file and for a `maxBytes` below 1.
    long Read(GBuffer& out, long maxBytes);
    /// The same from `position`.
    long ReadAt(long long position, GBuffer& out, long maxBytes) const;
    /// Hands all of `data` to the system in one call and returns what the system took. A full disk
    /// is a count below the length; every other failure throws.
    long Write(const GBuffer& data);
    /// The same at `position`; behind the end, zero bytes fill the gap.
    long WriteAt(long long position, const GBuffer& data);

    /// Moves the file's own position, past the end too.
    void Seek(long long position);
    long long GetPosition() const { return mPosition; }  ///< in bytes; where the next Read or Write begins
    long long GetLength() const;                         ///< in bytes, asked of the system
    /// Cuts the file or extends it with zero bytes.
    void SetLength(long long length);
    /// Returns when the system has put the file on the disk.
    void Flush();

private:
    void RequireOpen() const;
    void RequirePosition(long long position) const;
    [[noreturn]] void Throw(long id) const;

    std::unique_ptr<PFileImp> mImp;
    long long mPosition = 0;
};
