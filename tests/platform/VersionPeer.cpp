// What the framework makes of the version of Windows that this program is told: the code, the name space
// where the system finds a mutex of the framework, the name space of session 2, whether a processing
// application is found to listen, and how many of two messages it gets.
#include <cstdio>
#include <string>

#include "framework/ipc/GIPMutex.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/GSessionInfo.h"
#include "framework/system/PSystem.h"
#include "monitor/handoff/GPPHandOffScope.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

namespace {

bool Finds(const std::string& name) {
    return static_cast<bool>(
        PWin32ScopedHandle<PWin32KernelHandle>(::OpenMutexA(SYNCHRONIZE, FALSE, name.c_str())));
}

struct Counter : GIPCReceiver {
    using GIPCReceiver::GIPCReceiver;
    void HandleIPCMessage(const GIPCMessage&) override { ++mCount; }

    int mCount = 0;
};

}  // namespace

int main() {
    const GPPHandOffScope scope;
    const GShMemID identifier("VersionPeer");
    const GIPMutex mutex(identifier);
    const std::string name = GIPPrefix::AddPrefix(GIPPrefix::cMutex, identifier).GetPtr();
    GBuffer path;
    GSessionInfo::GetInstance()->GetSessionPath(path, 2);
    GPPIPCManager& manager = *GPPIPCManager::GetInstance();
    const long own = GProcessInfo::GetInstance()->GetCurrentProcessID();
    Counter receiver(&manager);
    receiver.Register(145);
    for (const char* const text : {"one", "two"}) manager.SendRaw(own, 145, text);
    manager.ForceProcessPendingMessages();
    std::printf("%ld %s%s '%s' %d %d\n", PSystem::GetOSCode(), Finds("Global\\" + name) ? "global" : "",
                Finds(name) ? "local" : "", path.GetPtr(), manager.GetListeningState(own), receiver.mCount);
    return 0;
}
