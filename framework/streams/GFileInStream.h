#pragma once

#include "framework/core/memory/GSharedObject.h"
#include "framework/files/GFile.h"
#include "framework/streams/GInStream.h"

/// GFileInStream: reads a file from its start.
///
/// The stream keeps its own position, so that clones and other streams over one shared file do not
/// disturb each other. The file is closed when its last stream goes.
class QUILLON_EXPORT GFileInStream : public GInStream {
public:
    /// Opens the file for reading and keeps nobody from reading or writing it meanwhile: a job file
    /// is read while its writer still has it open. Throws when it cannot be opened.
    explicit GFileInStream(const GPathName& path);
    /// Reads an open file, which it shares; not null.
    explicit GFileInStream(const GSharedObject<GFile>& file);

    GFileInStream* CreateClone() const override;
    long Read(GBuffer& out, long maxBytes) override;
    /// A negative count steps back, at most to the start; the result is negative then.
    long long Skip(long long count) override;
    void Reset() override;

    /// The length of the whole file in bytes.
    long long GetLength() const;
    long long GetPosition() const { return mPosition; }            ///< in bytes from the start of the file
    const GSharedObject<GFile>& GetFile() const { return mFile; }  ///< for other streams over the same file

private:
    GSharedObject<GFile> mFile;
    long long mPosition = 0;
};
