#pragma once

#include "framework/core/paths/GPathName.h"
#include "framework/core/paths/GPathText.h"
#include "tests/core/TextForTests.h"

/// Of exactly these units: a path need not be composed.
inline GPathName Path(std::u16string_view portable) {
    const auto* const units = reinterpret_cast<const unsigned short*>(portable.data());
    return GPathName(GPathText::MakeString({units, portable.size()}));
}

inline std::u16string Plain(const GPathName& path) {
    return Plain(path.GetPortablePath());
}

inline std::u16string Repeated(char16_t unit, std::size_t count) {
    return std::u16string(count, unit);
}
