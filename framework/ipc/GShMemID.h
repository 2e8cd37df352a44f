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
    explicit GShMemID(const GBuffer& text);  ///< of that text, which is copied
    /// Zero-terminated and copied; null is an empty text.
    explicit GShMemID(const char* text);
    /// Throws GExceptionID::cInvalidShMemID as well when a character lies outside ASCII.
    explicit GShMemID(const GString& text);

    bool IsEmpty() const { return mText.IsEmpty(); }             ///< whether it is the empty identifier
    const GBuffer& GetBuffer() const noexcept { return mText; }  ///< the text in ASCII
    operator const GBuffer&() const noexcept { return mText; }   ///< as GetBuffer()

    /// The left identifier, the joining separator (which is empty) and the right one.
    friend QUILLON_EXPORT GShMemID operator+(const GShMemID& left, const GShMemID& right);
    GShMemID& operator+=(const GShMemID& right);                                   ///< as operator+
    bool operator==(const GShMemID& other) const { return mText == other.mText; }  ///< same text; case counts

    /// @name The identifiers that all processes agree on.
    /// @{
    static constexpr long cProcess = 1;         ///< "P": before a process ID in the name of a queue
    static constexpr long cGlobal = 2;          ///< "G"
    static constexpr long cMessageQueue = 101;  ///< "MQ": before a registration ID in the name of a queue
    static constexpr long cRegistry = 201;      ///< "GIPC": the registries
    static constexpr long cTestRegistry = 202;  ///< "GIPCTest": the registries for tests

    /// The well-known identifier of that number; an empty one for every other number, and for all
    /// outside the time between Initialize and Finalize. The reference stays valid until Finalize.
    static const GShMemID& GetSpecialID(long number);
    /// Called by the framework's start-up and shut-down, on one thread.
    static void Initialize();
    static void Finalize();  ///< GetSpecialID() gives empty ones then
    /// @}

private:
    void CheckAndInitialize(const GBuffer& text);

    GBuffer mText;
};
