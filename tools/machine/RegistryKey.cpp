#include "tools/machine/RegistryKey.h"

#include "platform/win32/base/PWin32Api.h"
#include "tools/machine/Failure.h"

namespace {

// The longest name that the registry takes, with the terminator.
constexpr DWORD cMaxValueNameUnits = 16384;

HKEY AsKey(const PWin32ScopedHandle<PWin32RegistryHandle>& key) {
    return static_cast<HKEY>(key.Get());
}

void Check(LSTATUS status, const std::wstring& action) {
    if (status != ERROR_SUCCESS) throw SystemFailure(action, static_cast<unsigned long>(status));
}

bool IsMissing(LSTATUS status) {
    return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
}

}  // namespace

bool RegistryKey::Exists(const std::wstring& path) {
    return Open(path).has_value();
}

std::optional<RegistryKey> RegistryKey::Open(const std::wstring& path) {
    HKEY key = nullptr;
    const LSTATUS status = ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key);
    if (IsMissing(status)) return std::nullopt;
    Check(status, L"Opening the registry key " + path);
    return RegistryKey(key);
}

RegistryKey RegistryKey::Create(const std::wstring& path) {
    HKEY key = nullptr;
    const LSTATUS status = ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0,
                                             KEY_READ | KEY_WRITE, nullptr, &key, nullptr);
    Check(status, L"Creating the registry key " + path);
    return RegistryKey(key);
}

bool RegistryKey::RemoveIfEmpty(const std::wstring& path) {
    {
        const auto key = Open(path);
        if (!key) return false;
        DWORD keys = 0;
        DWORD values = 0;
        Check(::RegQueryInfoKeyW(AsKey(key->mKey), nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                                 &values, nullptr, nullptr, nullptr, nullptr),
              L"Reading the registry key " + path);
        if (keys != 0 || values != 0) return false;
    }
    Check(::RegDeleteKeyW(HKEY_LOCAL_MACHINE, path.c_str()), L"Removing the registry key " + path);
    return true;
}

std::vector<std::pair<std::wstring, std::wstring>> RegistryKey::GetValues() const {
    std::vector<std::pair<std::wstring, std::wstring>> values;
    std::wstring name(cMaxValueNameUnits, L'\0');
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = cMaxValueNameUnits;
        const LSTATUS status =
            ::RegEnumValueW(AsKey(mKey), index, name.data(), &nameLength, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) return values;
        Check(status, L"Listing registry values");
        const std::wstring valueName = name.substr(0, nameLength);
        if (auto text = GetValue(valueName)) values.emplace_back(valueName, *text);
    }
}

std::optional<std::wstring> RegistryKey::GetValue(const std::wstring& name) const {
    // The size told beforehand does not count what an expanded variable adds, so the buffer grows.
    std::wstring text(256, L'\0');
    for (;;) {
        auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status =
            ::RegGetValueW(AsKey(mKey), nullptr, name.c_str(), RRF_RT_REG_SZ, nullptr, text.data(), &bytes);
        if (status == ERROR_FILE_NOT_FOUND || status == ERROR_UNSUPPORTED_TYPE) return std::nullopt;
        if (status != ERROR_MORE_DATA) {
            Check(status, L"Reading the registry value " + name);
            return text.substr(0, text.find(L'\0'));
        }
        text.resize(text.size() * 2);
    }
}

void RegistryKey::SetValue(const std::wstring& name, const std::wstring& text) {
    const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    Check(::RegSetValueExW(AsKey(mKey), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                           bytes),
          L"Writing the registry value " + name);
}

void RegistryKey::RemoveValue(const std::wstring& name) {
    const LSTATUS status = ::RegDeleteValueW(AsKey(mKey), name.c_str());
    if (!IsMissing(status)) Check(status, L"Removing the registry value " + name);
}
