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

    // OS codes: odd for workstations, even for servers. The highest one is 3016, the server 6.3.
    static constexpr long cUnknownNTCode = 3000;
    static constexpr long cWorkstation50 = 3003;
    static constexpr long cWorkstation52 = 3007;
    static constexpr long cServer52 = 3008;
    static constexpr long cWorkstation60 = 3009;

    /// 0 when the platform is not NT; otherwise the code of the version, which is cUnknownNTCode for
    /// versions before 5.0 and after 6.3.
    long GetOSCode() const;

    // Codes that are not in the list count as those of newer systems. The two bounds differ by the
    // server 5.2. It has sessions, so segments lie in their name spaces, but the names of its mutexes have no
    // "Global\" in front. Programs that share these objects all name them so, and would miss each other
    // otherwise.

    /// Whether a system of that code has sessions, each with a name space: not before the server 5.2.
    static constexpr bool HasSessions(long code) { return code < cWorkstation50 || code > cWorkstation52; }
    /// Whether names of mutexes begin with "Global\" there: not before 6.0.
    static constexpr bool HasGlobalMutexes(long code) { return code < cWorkstation50 || code > cServer52; }
};
