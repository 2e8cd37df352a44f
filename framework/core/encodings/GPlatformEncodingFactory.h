#pragma once

#include "framework/core/GExport.h"

class GPlatformEncoding;
class GShiftJISEncoding;

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
    virtual GShiftJISEncoding* CreateShiftJISEncoding() const;
};
