#pragma once

#include "framework/core/GExport.h"
#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/memory/GSharedObject.h"

/// GPlatformEncodingModifier: a scope in which the shared platform encoding works with another code
/// page. The old one returns at the end of the scope, to the same encoding object. Process-wide: not
/// for two threads at once.
class QUILLON_EXPORT GPlatformEncodingModifier {
public:
    explicit GPlatformEncodingModifier(long codePage);
    ~GPlatformEncodingModifier();
    GPlatformEncodingModifier(const GPlatformEncodingModifier&) = delete;
    GPlatformEncodingModifier& operator=(const GPlatformEncodingModifier&) = delete;

private:
    GSharedObject<GPlatformEncoding> mEncoding;
    long mOldCodePage;
};
