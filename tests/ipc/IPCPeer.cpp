// Another process for the tests of what processes share. Its first argument says what it does.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "framework/GFrameworkScope.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GLockFile.h"
#include "framework/ipc/GIPCMessageQueue.h"
#include "framework/ipc/GIPMutex.h"
#include "framework/services/GPrefFileModule.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/GSessionInfo.h"
#include "framework/system/PSystem.h"
#include "monitor/handoff/GPPHandOffScope.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

namespace {

/// Ends while it holds the mutex of an identifier.
void DieHolding(const char* identifier) {
    GIPMutex mutex(GShMemID(identifier), GIPPrefix::cSharedMemoryLock);
    mutex.Lock();
    ::TerminateProcess(::GetCurrentProcess(), 7);
}

/// Appends `count` numbered messages of all sizes to a queue of the global name space.
void Write(long processID, long registrationID, long count) {
    GIPCMessageQueue queue(-1, processID, registrationID);
    for (long number = 0; number < count; ++number) {
        const std::string text = std::to_string(number) + ":" + std::string(number % 977, '.');
        while (!queue.TryToAddRawMessage(145, text.c_str())) ::Sleep(1);
    }
}

/// Takes a lock file, waiting for it, makes the file `made` and keeps the lock until it is ended.
void Lock(const char* lockFile, bool reads, const char* made) {
    const GLockByFile lock(GPathName(lockFile), reads ? GLockFile::cReadLock : GLockFile::cWriteLock, true);
    GFileSystem::CreateFile(GPathName(made), GTypeEnums::cNone, true);
    PSystem::Sleep(60);
}

/// Sets two values of a group of shared preferences to the same long text and writes the file, `count` times.
void WritePreferences(const char* file, const char* group, long count) {
    GPrefSharedFileModule module(GPathName(file), GUnicodeEncoding::GetInstance());
    for (long number = 1; number <= count; ++number) {
        const std::string text = std::to_string(number) + std::string(5000, '.');
        for (const char* const key : {"first", "second"}) module.Set(group, key, text.c_str());
        module.FlushPrefs();
    }
}

bool Finds(const std::string& name) {
    return static_cast<bool>(
        PWin32ScopedHandle<PWin32KernelHandle>(::OpenMutexA(SYNCHRONIZE, FALSE, name.c_str())));
}

struct Counter : GIPCReceiver {
    using GIPCReceiver::GIPCReceiver;
    void HandleIPCMessage(const GIPCMessage&) override { ++mCount; }

    int mCount = 0;
};

/// Says what the framework makes of the version of Windows that this program is told: the code, the name
/// space where the system finds a mutex of the framework, the name space of session 2, whether a processing
/// application is found to listen, and how many of two messages it gets.
void PrintVersion() {
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
}

}  // namespace

int main(int argc, char** argv) {
    const auto number = [&](int index) { return index < argc ? std::atol(argv[index]) : 0; };
    const std::string what = argc > 1 ? argv[1] : "";
    const GFrameworkScope framework;
    try {
        if (what == "die-holding") DieHolding(argv[2]);
        if (what == "write") Write(number(2), number(3), number(4));
        if (what == "read-lock" || what == "write-lock") Lock(argv[2], what == "read-lock", argv[3]);
        if (what == "preferences") WritePreferences(argv[2], argv[3], number(4));
        if (what == "version") PrintVersion();
    } catch (const GException& exception) {
        return static_cast<int>(exception.GetExceptionID());
    }
    return 0;
}
