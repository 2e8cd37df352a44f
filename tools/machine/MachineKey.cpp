#include "tools/machine/MachineKey.h"

#include <memory>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"

namespace {

void Require(bool done, const wchar_t* action, const GString& path, const PRegistryKey& key) {
    if (!done) throw SystemFailure(action + std::wstring(AsWide(path)), static_cast<DWORD>(key.GetStatus()));
}

bool IsEmpty(PRegistryKey& key) {
    PRegistryKey below;
    GString name;
    key.BeginEnumerateRegistryKey(KEY_READ);
    key.BeginEnumerateValue();
    return !key.NextRegistryKey(below) && std::unique_ptr<PRegistryData>(key.NextValue(name)) == nullptr;
}

std::wstring Expand(const GString& text) {
    std::wstring expanded(32768, L'\0');
    const DWORD length =
        ::ExpandEnvironmentStringsW(AsWide(text), expanded.data(), static_cast<DWORD>(expanded.size()));
    if (length == 0 || length > expanded.size()) throw SystemFailure(L"Replacing environment variables");
    expanded.resize(length - 1);
    return expanded;
}

}  // namespace

bool MachineKey::IsMissing(const PRegistryKey& key) noexcept {
    return key.GetStatus() == ERROR_FILE_NOT_FOUND || key.GetStatus() == ERROR_PATH_NOT_FOUND;
}

PRegistryKey MachineKey::Open(const GString& path) {
    PRegistryKey key(HKEY_LOCAL_MACHINE, path, KEY_READ);
    Require(key.Exists() || IsMissing(key), L"Opening the registry key ", path, key);
    return key;
}

PRegistryKey MachineKey::Make(const GString& path) {
    PRegistryKey key(HKEY_LOCAL_MACHINE, path, KEY_READ | KEY_WRITE);
    if (!key.Exists() && IsMissing(key)) key.Create("", 0, nullptr);
    Require(key.Exists(), L"Creating the registry key ", path, key);
    return key;
}

bool MachineKey::RemoveIfEmpty(const GString& path) {
    {
        PRegistryKey key = Open(path);
        if (!key.Exists() || !IsEmpty(key)) return false;
    }
    PRegistryKey machine(HKEY_LOCAL_MACHINE, "", KEY_READ);
    Require(machine.RemoveKey(path), L"Removing the registry key ", path, machine);
    return true;
}

std::optional<std::wstring> MachineKey::GetText(const PRegistryKey& key, const char* name) {
    const std::unique_ptr<PRegistryData> data(key.Query(name));
    const std::uint32_t type = data ? data->GetType() : 0;
    if (type == PRegistryData::cExpandableString) return Expand(data->GetString());
    if (type == PRegistryData::cString) return AsWide(data->GetString());
    return std::nullopt;
}
