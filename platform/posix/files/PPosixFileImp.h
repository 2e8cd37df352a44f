#pragma once

#include "framework/core/paths/GPathName.h"

/// PPosixFileImp: one file descriptor, opened by a mode of GFileOpenMode.
///
/// Every failure throws GCustomException GExceptionID::cUNIXSystemError with the system's text and the
/// path as location. The sharing bits have no effect: UNIX lets everybody open a file.
class PPosixFileImp {
public:
    explicit PPosixFileImp(const GPathName& path) : mPath(path) {}
    /// A file that has been opened elsewhere; the descriptor is this object's from now on.
    PPosixFileImp(const GPathName& path, int opened) : mPath(path), mDescriptor(opened) {}
    PPosixFileImp(const PPosixFileImp&) = delete;
    PPosixFileImp& operator=(const PPosixFileImp&) = delete;
    ~PPosixFileImp() { Close(); }

    const GPathName& GetPathName() const { return mPath; }
    void Open(long mode);
    void Close() noexcept;
    bool IsOpen() const noexcept { return mDescriptor >= 0; }

    /// Up to `count` bytes; 0 at the end of the file.
    long Read(long long position, unsigned char* bytes, long count) const;
    /// What the system took; a full disk is a short count, 0 included.
    long Write(long long position, const unsigned char* bytes, long count);

    long long GetLength() const;
    void SetLength(long long length);
    void Flush();

private:
    GPathName mPath;
    int mDescriptor = -1;
};
