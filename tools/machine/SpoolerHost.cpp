#include "tools/machine/SpoolerHost.h"

#include "framework/core/paths/GPathName.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GSpecialPath.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"
#include "tools/machine/MachineKey.h"

namespace {

std::wstring WithTrailingBackslash(std::wstring folder) {
    if (!folder.empty() && folder.back() != L'\\') folder += L'\\';
    return folder;
}

// The spooler service runs under the system's account, whose temporary folder is the one of the
// machine's environment and not that of whoever asks.
std::wstring GetServiceTempFolder() {
    const PRegistryKey environment =
        MachineKey::Open("SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment");
    const auto folder = SpoolerHost::FindTempFolder(environment);
    if (!folder) throw Failure(L"The machine's environment names no temporary folder (TMP or TEMP).");
    return *folder;
}

}  // namespace

bool SpoolerHost::IsWine() {
    const HMODULE system = ::GetModuleHandleW(L"ntdll.dll");
    return system != nullptr && ::GetProcAddress(system, "wine_get_version") != nullptr;
}

std::optional<std::wstring> SpoolerHost::FindTempFolder(const PRegistryKey& environment) {
    for (const char* const name : {"TMP", "TEMP"}) {
        auto folder = MachineKey::GetText(environment, name);
        if (folder && !folder->empty()) return folder;
    }
    return std::nullopt;
}

std::wstring SpoolerHost::GetJobFolder() {
    if (!IsWine()) return WithTrailingBackslash(GetServiceTempFolder());
    const GPathName folder = GFileSystem::GetSpecialPath(GSpecialPath::cGlobalTemp);
    return WithTrailingBackslash(AsWide(folder.GetNativePathString()));
}
