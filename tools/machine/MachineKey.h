#pragma once

#include <optional>
#include <string>

#include "framework/system/PRegistryKey.h"

/// MachineKey: keys of the registry below HKEY_LOCAL_MACHINE. Whatever the system refuses is thrown as a
/// Failure.
struct MachineKey {
    /// For reading; closed when the key does not exist.
    static PRegistryKey Open(const GString& path);
    /// For writing, made with its parents when missing.
    static PRegistryKey Make(const GString& path);
    /// Removes the key. A key that is missing or has anything in it stays as it is: false.
    static bool RemoveIfEmpty(const GString& path);
    /// Whether the last call on it has failed because there is no such key or value.
    static bool IsMissing(const PRegistryKey& key) noexcept;
    /// Nothing when the key has no such text. Environment variables in it are replaced.
    static std::optional<std::wstring> GetText(const PRegistryKey& key, const char* name);
};
