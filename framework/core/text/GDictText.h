#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"

class GString;

/// GDictText: how the readers of dictionaries make a key or a value from bytes.
template <class T>
struct GDictText;

/// Bytes as they are.
template <>
struct GDictText<GBuffer> {
    static const GBuffer& From(const GBuffer& bytes) noexcept { return bytes; }  ///< the bytes themselves
};

/// Bytes as text.
template <>
struct QUILLON_EXPORT GDictText<GString> {
    /// The bytes as UTF-8.
    static GString From(const GBuffer& bytes);
};
