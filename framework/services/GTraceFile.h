#pragma once

#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/paths/GPathName.h"
#include "framework/files/GTrustedFolder.h"
#include "framework/streams/GFileOutStream.h"

/// GTraceFile: the file of a trace log.
///
/// It is written through to the disk and others may read it meanwhile. A file that would grow above
/// cMaxLength is renamed to "NAME (old)", in the place of the one before, and begun anew. Its folder and
/// itself are used only as far as GTrustedFolder trusts them.
class QUILLON_EXPORT GTraceFile : public GOutStream {
public:
    static constexpr long long cMaxLength = 16 << 20;  ///< bytes

    /// `QuillonDebug\MODULE` with that extension, in the global temporary folder. Empty when the system
    /// does not tell where that is.
    static GPathName GetPath(const char* extension);

    /// Opens the file, and empties it when it is there and nobody has it open. While another process
    /// has it, where it must not be used, or with `alwaysNew`, a name "MODULE (0)" to "MODULE (10)" is
    /// taken. Throws what the last attempt threw.
    GTraceFile(const GPathName& path, bool alwaysNew);

    long Write(const GBuffer& data) override;
    void Flush() override { mStream->Flush(); }
    /// The file that is written now.
    const GPathName& GetPathName() const { return mStream->GetFile()->GetPathName(); }

private:
    void StartAnew();

    std::unique_ptr<GTrustedFolder> mFolder;
    std::unique_ptr<GFileOutStream> mStream;
};
