#pragma once

#include "framework/core/paths/GPathName.h"

/// The name of a file that belongs to another one and lies beside it: "Q.tra" and "old" are "Q (old).tra".
inline GPathName MakeSideName(const GPathName& path, const GString& suffix) {
    GPathName result(path);
    result.ReplaceLeafWithoutExtension(path.GetLeafWithoutExtension() + GString(" (") + suffix +
                                       GString(")"));
    return result;
}
