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
    /// Renames a file to a free name beside it, ".old1" and so on, which works also while it is loaded.
    /// Returns the full path of the new name.
    static std::wstring MoveAside(const std::wstring& path);
    /// Renames back; what stands at `target` by now goes, loaded or not.
    static void PutBack(const std::wstring& aside, const std::wstring& target,
                        unsigned long waitMilliseconds = cUnloading);
    /// Removes a file that was moved aside. One that stays loaded for that long goes with the next restart of
    /// the machine: false.
    static bool Discard(const std::wstring& aside, unsigned long waitMilliseconds);
    /// Moves the file aside and discards it.
    static bool Remove(const std::wstring& path, unsigned long waitMilliseconds = cUnloading);

    /// Milliseconds in which the spooler lets go of a library that it needs no more.
    static constexpr unsigned long cUnloading = 5000;
};
