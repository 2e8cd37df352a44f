#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/win32/base/PWin32ScopedHandle.h"

/// RegistryKey: an open key below HKEY_LOCAL_MACHINE, with text values only.
///
/// Paths have backslashes and no root. Whatever the system refuses is thrown as a Failure, except
/// where the description says otherwise.
class RegistryKey {
public:
    static bool Exists(const std::wstring& path);
    /// For reading; nothing when the key does not exist.
    static std::optional<RegistryKey> Open(const std::wstring& path);
    /// For writing, made with its parents when missing.
    static RegistryKey Create(const std::wstring& path);
    /// Removes the key. A key that is missing or has keys below it stays as it is: false.
    static bool RemoveIfEmpty(const std::wstring& path);

    /// Name and text of every text value, in no particular order.
    std::vector<std::pair<std::wstring, std::wstring>> GetValues() const;
    /// Nothing when there is no such text value. Environment variables in it are replaced.
    std::optional<std::wstring> GetValue(const std::wstring& name) const;
    void SetValue(const std::wstring& name, const std::wstring& text);
    /// No value of this name is fine.
    void RemoveValue(const std::wstring& name);

private:
    explicit RegistryKey(void* key) noexcept : mKey(key) {}

    PWin32ScopedHandle<PWin32RegistryHandle> mKey;
};
