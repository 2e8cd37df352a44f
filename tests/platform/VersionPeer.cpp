// What the framework makes of the version of Windows that this program is told: the code, the name space
// where the system finds a mutex of the framework, and the name space of session 2.
#include <cstdio>
#include <string>

#include "framework/GFrameworkScope.h"
#include "framework/ipc/GIPMutex.h"
#include "framework/system/GSessionInfo.h"
#include "framework/system/PSystem.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

namespace {

bool Finds(const std::string& name) {
    return static_cast<bool>(
        PWin32ScopedHandle<PWin32KernelHandle>(::OpenMutexA(SYNCHRONIZE, FALSE, name.c_str())));
}

}  // namespace

int main() {
    const GFrameworkScope framework;
    const GShMemID identifier("VersionPeer");
    const GIPMutex mutex(identifier);
    const std::string name = GIPPrefix::AddPrefix(GIPPrefix::cMutex, identifier).GetPtr();
    GBuffer path;
    GSessionInfo::GetInstance()->GetSessionPath(path, 2);
    std::printf("%ld %s%s '%s'\n", PSystem::GetOSCode(), Finds("Global\\" + name) ? "global" : "",
                Finds(name) ? "local" : "", path.GetPtr());
    return 0;
}
