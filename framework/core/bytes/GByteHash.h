#pragma once

#include <cstdint>

#include "framework/core/GExport.h"

/// GByteHash: the hash of a byte string, on which dictionaries and shared names rely.
///
/// It starts from the length and turns by four bits a byte, so equal bytes have equal hashes wherever they
/// lie. Any thread may call.
class QUILLON_EXPORT GByteHash {
public:
    /// The hash of `length` bytes; GBuffer::GetHash() tells the formula.
    static std::uint32_t Of(const unsigned char* bytes, long length) noexcept;
};
