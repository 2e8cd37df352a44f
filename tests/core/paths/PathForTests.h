#pragma once

#include "framework/core/paths/GPathName.h"
#include "tests/core/TextForTests.h"

inline GPathName Path(std::u16string_view portable) {
    return GPathName(Text(portable));
}

inline std::u16string Plain(const GPathName& path) {
    return Plain(path.GetPortablePath());
}

inline std::u16string Repeated(char16_t unit, std::size_t count) {
    return std::u16string(count, unit);
}
