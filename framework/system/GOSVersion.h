#pragma once

#include "framework/core/GExport.h"

/// GOSVersion: what an operating system says of itself, and the OS code that follows from it.
struct QUILLON_EXPORT GOSVersion {
    static constexpr long cPlatformNT = 2;  ///< the platform ID of the systems from NT on

    long platformID = 0;       ///< the system's own number for its family; cPlatformNT counts
    long major = 0;            ///< of the version, as the system tells it to this program
    long minor = 0;            ///< of the version, as the system tells it to this program
    bool isServer = false;     ///< no workstation: a server or domain controller
    bool isExactly62 = false;  ///< the exact version tests; they matter only when 6.2 is reported
    bool isExactly63 = false;  ///< likewise

    // OS codes: odd for workstations, even for servers. The highest one is 3016, the server 6.3.
    static constexpr long cUnknownNTCode = 3000;  ///< an NT system that the list does not have
    static constexpr long cWorkstation50 = 3003;  ///< 5.0; the server's is one higher, as for all versions
    static constexpr long cWorkstation52 = 3007;  ///< 5.2
    static constexpr long cServer52 = 3008;       ///< 5.2, the server
    static constexpr long cWorkstation60 = 3009;  ///< 6.0

    /// 0 when the platform is not NT; otherwise the code of the version, which is cUnknownNTCode for
    /// versions before 5.0 and after 6.3.
    long GetOSCode() const;

    // Codes that are not in the list count as those of newer systems. The two bounds differ by the
    // server 5.2. It has sessions, so segments lie in their name spaces, but the names of its mutexes have no
    // "Global\" in front. Programs that share these objects all name them so, and would miss each other
    // otherwise.

    /// Whether a system of that code has sessions, each with a name space: not before the server 5.2.
    static constexpr bool HasSessions(long code) { return code < cWorkstation50 || code > cWorkstation52; }
    /// Whether names of mutexes begin with `Global\` there: not before 6.0.
    static constexpr bool HasGlobalMutexes(long code) { return code < cWorkstation50 || code > cServer52; }
};
