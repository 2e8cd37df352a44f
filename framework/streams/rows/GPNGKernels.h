#pragma once

#include "framework/streams/rows/GPNGRow.h"

/// GPNGKernels: the filters of PNG rows over `count` bytes.
///
/// In front of `row` and `above` stand at least `pixelLength` bytes of the same row. Parts of a row need
/// not end with a pixel.
struct GPNGKernels {
    static void Encode(GPNGTag tag, const unsigned char* row, const unsigned char* above,
                       std::int32_t pixelLength, std::int32_t count, unsigned char* out);
    static void Decode(GPNGTag tag, const unsigned char* in, unsigned char* row, const unsigned char* above,
                       std::int32_t pixelLength, std::int32_t count);
};
