#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/text/GString.h"

/// GShMemID: an identifier of which the names of shared segments and their mutexes are formed.
///
/// Letters, digits and underscores in ASCII, or nothing. Above all no backslash, so that an identifier cannot
/// leave the name space that it is put into. Anything else throws GExceptionID::cInvalidShMemID. A value.
class QUILLON_EXPORT GShMemID {
public:
    GShMemID() = default;
    explicit GShMemID(const GBuffer& text);
    /// Zero-terminated and copied; null is an empty text.
    explicit GShMemID(const char* text);
    /// Throws GExceptionID::cInvalidShMemID as well when a character lies outside ASCII.
    explicit GShMemID(const GString& text);

    bool IsEmpty() const { return mText.IsEmpty(); }
    const GBuffer& GetBuffer() const noexcept { return mText; }
    operator const GBuffer&() const noexcept { return mText; }

    /// The left identifier, the joining separator (which is empty) and the right one.
    friend QUILLON_EXPORT GShMemID operator+(const GShMemID& left, const GShMemID& right);
    GShMemID& operator+=(const GShMemID& right);
    bool operator==(const GShMemID& other) const { return mText == other.mText; }

    /// @name The identifiers that all processes agree on.
    /// @{
    static constexpr long cProcess = 1;
    static constexpr long cGlobal = 2;
    static constexpr long cMessageQueue = 101;
    static constexpr long cRegistry = 201;
    static constexpr long cTestRegistry = 202;

    /// The well-known identifier of that number; an empty one for every other number, and for all
    /// outside the time between Initialize and Finalize. The reference stays valid until Finalize.
    static const GShMemID& GetSpecialID(long number);
    /// Called by the framework's start-up and shut-down, on one thread.
    static void Initialize();
    static void Finalize();
    /// @}

private:
    void CheckAndInitialize(const GBuffer& text);

    GBuffer mText;
};
