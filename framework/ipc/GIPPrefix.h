#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"

/// GIPPrefix: the letters in a kernel object's name that tell what kind of object it is.
struct QUILLON_EXPORT GIPPrefix {
    static constexpr long cDefault = 0;           ///< none of the others
    static constexpr long cMutex = 1;             ///< a mutex that stands alone
    static constexpr long cSharedMemory = 2;      ///< the data of a shared segment
    static constexpr long cSharedMemoryLock = 3;  ///< the mutex that guards such a segment

    /// Six ASCII characters, zero-terminated; null for any other number.
    static const char* GetPrefix(long id) noexcept;
    /// The prefix and the identifier behind it; throws GExceptionID::cInvalidShMemID when there is no such
    /// prefix.
    static GBuffer AddPrefix(long id, const GBuffer& identifier);
};
