#pragma once

#include "framework/core/bytes/GBuffer.h"
#include "framework/streams/GHeldStream.h"
#include "framework/streams/GOutStream.h"
#include "framework/streams/cipher/PCipher.h"

/// GEncryptOutStream: writes into a target what GDecryptInStream reads.
///
/// Whole blocks are handed to the target by the Write that completes them. A target that takes fewer
/// bytes than it was given makes every operation throw GExceptionID::cCouldNotWriteFile.
class QUILLON_EXPORT GEncryptOutStream : public GOutStream {
public:
    /// From a reference the target is borrowed, from a pointer owned. `key`: 16 or 32 bytes; anything
    /// else throws GExceptionID::cWrongKeyLength.
    GEncryptOutStream(GHeldStream<GOutStream> target, const GBuffer& key);
    GEncryptOutStream(const GEncryptOutStream&) = delete;
    GEncryptOutStream& operator=(const GEncryptOutStream&) = delete;
    /// Finishes, unless that has been done; what is thrown then is lost.
    ~GEncryptOutStream() override;

    /// Returns the length of `data`. Behind Finish it throws GExceptionID::cInvalidParameter.
    long Write(const GBuffer& data) override;
    /// Flushes the target; a block that is not full waits.
    void Flush() override;
    /// Back to the start of the target, with a new random block.
    void Reset() override;
    /// Writes the padding, which ends the data. Once is enough.
    void Finish();

private:
    void Begin();
    void HandOver(GBuffer& blocks);

    GHeldStream<GOutStream> mTarget;
    GBuffer mKey;
    GBuffer mRest;                     // less than a block
    std::unique_ptr<PCipher> mCipher;  // null until the first block is written
    bool mFinished = false;
};
