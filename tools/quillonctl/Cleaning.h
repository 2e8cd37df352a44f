#pragma once

#include <string>
#include <vector>

/// Cleaning: removes old job files.
///
/// It looks where the monitor puts them, <job folder>\<user>\<printer>\<document>.ps, for the printers named
/// alone, since others keep files in a temporary folder, too. Folders are entered as the monitor does: one at
/// a time, each held open, and no link is followed; whom they belong to does not matter. What the monitor has
/// set aside is left alone. A file goes only when it is one, has one name, is old enough at that moment and
/// nobody has it open for writing: its age, its kind and its end are all those of the one opened file.
struct Cleaning {
    /// A file that is old enough, or a folder that could not be entered, and what has become of it.
    struct File {
        std::wstring path;
        unsigned long long bytes = 0;
        std::wstring obstacle;  // why it stays; empty: it is removed, or would be
        bool isInUse = false;   // which is such a reason, and no failure
    };
    std::vector<File> files;
    long closedFolders = 0;  // that could not be looked into, and may hold anything
    bool isDryRun = false;

    /// Cleans below `folder`, which has its trailing backslash. A dry run removes nothing and does all else.
    /// Throws a Failure when the folder cannot be looked into.
    static Cleaning Run(const std::wstring& folder, const std::vector<std::wstring>& printers,
                        long long seconds, bool isDryRun);

    /// Whether nothing stays but what is in use.
    bool IsDone() const;
    /// A line for each file and one with the sum, ending in a line end.
    std::wstring Format() const;
};
