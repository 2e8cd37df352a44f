#include "framework/system/GOSVersion.h"

namespace {

// The code of the workstation; the server's is one higher. 0: none.
long FindWorkstationCode(const GOSVersion& version) {
    if (version.major == 5) {
        return version.minor >= 0 && version.minor <= 2 ? GOSVersion::cWorkstation50 + 2 * version.minor : 0;
    }
    if (version.major != 6) return 0;
    switch (version.minor) {
        case 0:
            return GOSVersion::cWorkstation60;
        case 1:
            return GOSVersion::cWorkstation60 + 2;
        case 2:
            // Programs that do not declare newer systems are told 6.2 by all of them.
            if (version.isExactly62) return GOSVersion::cWorkstation60 + 4;
            return version.isExactly63 ? GOSVersion::cWorkstation60 + 6 : 0;
        default:
            return 0;
    }
}

}  // namespace

long GOSVersion::GetOSCode() const {
    if (platformID != cPlatformNT) return 0;
    const long workstation = FindWorkstationCode(*this);
    if (workstation == 0) return cUnknownNTCode;
    return isServer ? workstation + 1 : workstation;
}
