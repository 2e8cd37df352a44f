#pragma once

#include <optional>
#include <string>

/// LibraryFile: the monitor's library as a file: the one beside this program, and the one in the
/// system folder, where the spooler loads it from. Paths are full native paths. Whatever the system
/// refuses is thrown as a Failure.
class LibraryFile {
public:
    /// The library beside this program.
    static std::wstring GetDeliveredPath();
    /// Where `fileName` stands, or would stand, in the system folder.
    static std::wstring GetInstalledPath(const std::wstring& fileName);

    static bool Exists(const std::wstring& path);
    /// False also when one of them cannot be read.
    static bool HaveSameContent(const std::wstring& onePath, const std::wstring& otherPath);
    /// Why the file cannot be the library, in words; nothing when it can. None of its code runs.
    static std::optional<std::wstring> FindFault(const std::wstring& path);
    /// The four numbers of the version resource, as in "1.2.0.0"; nothing when it has none.
    static std::optional<std::wstring> GetVersion(const std::wstring& path);

    /// Copies the file; the target must not exist.
    static void Copy(const std::wstring& source, const std::wstring& target);
    /// Renames a file to a free name beside it, which works also while it is loaded. Returns the
    /// full path of the new name.
    static std::wstring MoveAside(const std::wstring& path);
    /// Renames back; what stands at `target` by now is replaced.
    static void MoveBack(const std::wstring& aside, const std::wstring& target);
    /// Removes the file. One that is loaded gets another name and goes with the next restart of
    /// the machine: false.
    static bool Remove(const std::wstring& path);
};
