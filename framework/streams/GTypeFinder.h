#pragma once

#include <string_view>

#include "framework/files/GTypeEnums.h"

/// GTypeFinder: recognises data by its first bytes.
struct GTypeFinder {
    static constexpr long cProbe = 4096;  ///< bytes that suffice to decide

    /// The kind of data that begins with those bytes; nothing is of no kind.
    static GTypeEnums::Types FindType(std::string_view data);
};
