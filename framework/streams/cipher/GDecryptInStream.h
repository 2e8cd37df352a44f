#pragma once

#include <memory>

#include "framework/streams/GFilterInStream.h"
#include "framework/streams/cipher/PCipher.h"

/// GDecryptInStream: reads what GEncryptOutStream has written: AES (FIPS 197) with 128 or 256 bits in cipher
/// block chaining (NIST SP 800-38A), a random block in front, padded by as many bytes of that value as fill
/// the last block (RFC 5652, 6.3).
///
/// Data that is not whole blocks is an unexpected end behind the blocks that are whole. Wrong padding,
/// as a wrong key makes it, is wrong data, and nothing of its block is delivered. This keeps a secret,
/// but does not tell whether somebody has changed the data.
class QUILLON_EXPORT GDecryptInStream : public GFilterInStream {
public:
    /// `key`: 16 or 32 bytes; anything else throws GExceptionID::cWrongKeyLength.
    GDecryptInStream(GHeldStream<GInStream> source, const GBuffer& key);
    GDecryptInStream(const GDecryptInStream& other);  ///< clones the source and goes on from the same place
    GDecryptInStream& operator=(const GDecryptInStream&) = delete;
    ~GDecryptInStream() override;

    GDecryptInStream* CreateClone() const override;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;
    bool TakeStart(GFilterWindow& window);
    void TakeBlocks(GFilterWindow& window, long count);
    GFilterStep TakeLastBlock(GFilterWindow& window);

    GBuffer mKey;
    PCipher::Block mPrevious = {};  // the block before the next one, as it is in the source
    bool mStarted = false;
    std::unique_ptr<PCipher> mCipher;  // null until it is needed
};
