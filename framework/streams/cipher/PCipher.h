#pragma once

#include <array>
#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"

/// PCipher: AES in cipher block chaining, by the library of the system. Implemented once a platform.
///
/// One thread at a time; different objects are independent.
class QUILLON_EXPORT PCipher {
public:
    static constexpr long cBlock = 16;                ///< bytes
    using Block = std::array<unsigned char, cBlock>;  ///< one block of the cipher

    /// What Process() does.
    enum class Direction { cEncrypt, cDecrypt };

    /// `key` has 16 or 32 bytes (else GExceptionID::cWrongKeyLength), `start` is the block before the
    /// first one. Throws GExceptionID::cGeneral when the library refuses.
    PCipher(Direction direction, const GBuffer& key, const Block& start);
    PCipher(const PCipher&) = delete;
    PCipher& operator=(const PCipher&) = delete;
    ~PCipher();

    /// Converts `count` bytes, whole blocks, into as many; the two places may be the same. Each call goes
    /// on behind the one before. Throws GExceptionID::cGeneral when the library fails.
    void Process(const unsigned char* in, unsigned char* out, long count);

    /// Throws GExceptionID::cWrongKeyLength for any other length than 16 and 32 bytes.
    static void CheckKey(const GBuffer& key);
    /// Fills the block with random bytes fit for a cipher.
    static Block GetRandomBlock();

private:
    struct Implementation;

    std::unique_ptr<Implementation> mImplementation;
};
