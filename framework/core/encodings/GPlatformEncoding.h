#pragma once

#include <atomic>
#include <cstdint>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GCustomEncoding.h"
#include "framework/core/memory/GSharedObject.h"

/// GPlatformEncoding: a code page of the operating system, converted by the system's own functions.
///
/// The encoding's modifier is the number of the code page (932, 1250, 65001, ...); 0 is the system's
/// default. A byte sequence without a character becomes the default character's unit, a character
/// without a sequence the default character, both with the result cReplaced. A code page that the
/// system does not know gives an empty output and the result cInvalid.
class QUILLON_EXPORT GPlatformEncoding : public GCustomEncoding {
public:
    /// Of a code page by its number; 0 is the system's default. Not looked up before the first conversion.
    explicit GPlatformEncoding(long codePage = 0) noexcept;

    /// The shared instance, made on first use by the GPlatformEncodingFactory for the default code
    /// page; valid until SetInstance or the framework's end.
    static GPlatformEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GPlatformEncoding* instance);

    /// The number of the code page; 0: the system's default.
    long GetModifier() const noexcept { return mCodePage.load(std::memory_order_relaxed); }
    /// Changes the code page for all strings that use this encoding and are not converted yet.
    void SetModifier(long codePage) noexcept;

    using GEncoding::ConvertTo;
    long ConvertTo(const GBuffer& bytes, const GUnicodeEncoding* target, GBuffer& out) const override;
    long ConvertFromUnicode(const GBuffer& utf16, GBuffer& out) const override;
    /// Codes are the bytes of one character in the code page.
    bool GetGlyphName(const GCharCode& code, GBuffer& name) const override;
    bool GetCharCode(const GBuffer& glyphName, GCharCode& code) const override;
    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< "WinPlatformEncoding_CodePage"

private:
    std::atomic<std::int32_t> mCodePage;
};

/// GShiftJISEncoding: Japanese Shift-JIS as the system converts it (code page 932).
class QUILLON_EXPORT GShiftJISEncoding : public GPlatformEncoding {
public:
    GShiftJISEncoding() noexcept;

    /// The shared instance, made on first use by the GPlatformEncodingFactory; valid until
    /// SetInstance or the framework's end.
    static GShiftJISEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GShiftJISEncoding* instance);

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< "ShiftJISEncoding"
};

/// GPlatformEncodingFactory: makes the encodings that are code pages of the operating system.
///
/// Derive from it and set an instance to have other classes made for them; encodings that were made
/// before stay. Safe from any thread, but replace it only while no other thread makes an encoding.
class QUILLON_EXPORT GPlatformEncodingFactory {
public:
    GPlatformEncodingFactory() = default;
    GPlatformEncodingFactory(const GPlatformEncodingFactory&) = delete;
    GPlatformEncodingFactory& operator=(const GPlatformEncodingFactory&) = delete;
    virtual ~GPlatformEncodingFactory();

    /// The shared factory, made on first use.
    static GPlatformEncodingFactory* GetInstance();
    /// Takes ownership of a replacement and deletes the old one; null: back to the built-in one.
    static void SetInstance(GPlatformEncodingFactory* instance);

    /// A new encoding with no reference yet: the caller owns it. `codePage` 0 is the system's.
    virtual GPlatformEncoding* CreatePlatformEncoding(long codePage) const;
    /// A new encoding for code page 932, which the caller owns.
    virtual GShiftJISEncoding* CreateShiftJISEncoding() const;
};

/// GPlatformEncodingModifier: a scope in which the shared platform encoding works with another code
/// page. The old one returns at the end of the scope, to the same encoding object. Process-wide: not
/// for two threads at once.
class QUILLON_EXPORT GPlatformEncodingModifier {
public:
    /// Sets the code page of the shared platform encoding.
    explicit GPlatformEncodingModifier(long codePage);
    ~GPlatformEncodingModifier();
    GPlatformEncodingModifier(const GPlatformEncodingModifier&) = delete;
    GPlatformEncodingModifier& operator=(const GPlatformEncodingModifier&) = delete;

private:
    GSharedObject<GPlatformEncoding> mEncoding;
    long mOldCodePage;
};
