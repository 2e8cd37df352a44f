#pragma once

#include "framework/core/GExport.h"

/// GOSVersion: what an operating system says of itself, and the OS code that follows from it.
struct QUILLON_EXPORT GOSVersion {
    static constexpr long cPlatformNT = 2;

    long platformID = 0;
    long major = 0;
    long minor = 0;
    bool isServer = false;
    bool isExactly62 = false;  ///< the exact version tests; they matter only when 6.2 is reported
    bool isExactly63 = false;

    /// 0 when the platform is not NT; otherwise 3003 (5.0) to 3016 (6.3), odd for workstations and
    /// even for servers, and 3000 for every other version.
    long GetOSCode() const;
};
