#include "tools/quillonctl/TraceSwitch.h"

#include <memory>

#include "framework/files/GFile.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GTrustedFolder.h"
#include "framework/services/GTraceSettings.h"
#include "framework/streams/GFileInStream.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SpoolerHost.h"

#include <aclapi.h>

namespace {

constexpr const char* cText =
    "#BEGINPREFS\r\n"
    "\"Defaults\"\r\n"
    "#BEGINDICT\r\n"
    "\"Log\" \"1\"\r\n"
    "#ENDDICT\r\n"
    "#ENDPREFS\r\n";

GPathName PathOf(const std::wstring& native) {
    return GPathName::FromNative(NameFromWide(native));
}

// What an administrator makes is often his own, and the monitor does not trust single users.
void GiveToAdministrators(std::wstring path) {
    BYTE administrators[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof administrators;
    if (!::CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size))
        throw SystemFailure(L"Naming the administrators");
    const DWORD error = ::SetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION,
                                                administrators, nullptr, nullptr, nullptr);
    if (error != ERROR_SUCCESS) throw SystemFailure(L"Giving " + path + L" to the administrators", error);
}

bool LogsJobs(const GTrustedFolder& folder) {
    GFileInStream stream(
        GSharedObject<GFile>(folder.OpenToRead(NameFromWide(TraceSwitch::cConfiguration)).release()));
    GTraceSettings settings;
    settings.Read(stream);
    return settings.GetNeedsLogging("Job");
}

}  // namespace

std::wstring TraceSwitch::GetFolder() {
    return SpoolerHost::GetJobFolder() + L"QuillonDebug";
}

bool TraceSwitch::On(const std::wstring& folder) {
    const GTrustedFolder trusted(PathOf(folder), true);
    const std::wstring path = folder + L'\\' + cConfiguration;
    const bool isOn = GFileSystem::TryFileExists(PathOf(path)) && LogsJobs(trusted);
    if (!isOn) trusted.OpenEmpty(NameFromWide(cConfiguration))->Write(cText);
    GiveToAdministrators(folder);
    GiveToAdministrators(path);
    return !isOn;
}

bool TraceSwitch::Off(const std::wstring& folder) {
    const std::wstring path = folder + L'\\' + cConfiguration;
    if (!GFileSystem::TryFileExists(PathOf(path))) return false;
    {
        // Held open, so that nothing else takes its place meanwhile.
        const GTrustedFolder trusted(PathOf(folder), false);
        if (!::DeleteFileW(path.c_str())) throw SystemFailure(L"Removing " + path);
    }
    // Not while the log lies in it.
    ::RemoveDirectoryW(folder.c_str());
    return true;
}
