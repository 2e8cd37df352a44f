#pragma once

#include <string>

/// LoadedLibrary: what the print spooler has in its memory, compared with what lies on the disk.
///
/// The spooler keeps what it has loaded, under the same name, while another file takes its place on the disk.
struct LoadedLibrary {
    enum class State { cNone, cSame, cOther };

    /// The library of that file's name in the spooler's process. Throws a Failure when that process is not
    /// there or may not be looked into.
    static State FindInSpooler(const std::wstring& path);
    /// Whether a module of a process was loaded from a file like this one: their headers, which hold the sum
    /// over all of the file, are the same but for the address.
    static bool IsSame(void* process, const void* module, const std::wstring& path);
};
