#pragma once

#include <optional>
#include <string>

class PRegistryKey;

/// SpoolerHost: which of the two spoolers this machine has.
///
/// Windows runs one spooler service for everybody, under the system's account. Wine runs its
/// spooler inside each program that prints, and finds the monitor of a port by a registry key.
class SpoolerHost {
public:
    static bool IsWine();
    /// The temporary folder of the account that the spooler runs under, with a trailing backslash:
    /// job files are made below it. Throws a Failure when it cannot be told.
    static std::wstring GetJobFolder();
    /// The temporary folder that a service finds in these environment variables; as GetTempPathW, it
    /// takes TMP before TEMP, and an empty one for none. Nothing when neither is there.
    static std::optional<std::wstring> FindTempFolder(const PRegistryKey& environment);
};
