#pragma once

#include "framework/core/memory/GSharedObject.h"
#include "framework/files/GFile.h"
#include "framework/streams/GOutStream.h"

/// GFileOutStream: writes a file from its start, every block straight to the system: nothing is held
/// back, and a count returned by Write has been taken by the system.
///
/// The file is closed when its last stream goes.
class QUILLON_EXPORT GFileOutStream : public GOutStream {
public:
    /// Opens the file for writing and makes it, and missing folders of its path, when it is not
    /// there. `startEmpty` true drops what the file held before; false keeps it, so that it is
    /// overwritten from the start as far as is written. Others may read the file meanwhile, but not
    /// write it. Throws when it cannot be opened.
    GFileOutStream(const GPathName& path, bool startEmpty);
    /// Writes an open file, which it shares; not null.
    explicit GFileOutStream(const GSharedObject<GFile>& file);

    /// The whole block in one write. A full disk is a count below the block's length (what the
    /// system took, 0 included); every other failure throws. The position advances by the count.
    long Write(const GBuffer& data) override;
    /// Moves the position, past the end too (a later write fills the gap with zero bytes); negative
    /// counts go back, at most to the start. Returns the distance moved.
    long long Skip(long long count) override;
    /// Returns when the system has put the file on the disk.
    void Flush() override;
    void Reset() override;

    /// The length of the whole file in bytes.
    long long GetLength() const;
    long long GetPosition() const { return mPosition; }            ///< in bytes from the start of the file
    const GSharedObject<GFile>& GetFile() const { return mFile; }  ///< for other streams over the same file

private:
    GSharedObject<GFile> mFile;
    long long mPosition = 0;
};
