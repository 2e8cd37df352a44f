#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/streams/documents/GPostScriptComments.h"

/// A job file. What it says of itself comes from outside.
struct JobEntry {
    std::wstring user;
    std::wstring printer;
    std::wstring fileName;
    unsigned long long bytes = 0;
    long long age = 0;                            // seconds since something was written into it
    std::optional<GPostScriptComments> comments;  // nothing: it cannot be read
};

/// JobList: the job files of this machine, `<user>\\<printer>\\<document>.ps` below a folder.
///
/// Links are not followed. Files are opened so that the spooler and processing applications are not kept
/// from writing, renaming or removing them.
struct JobList {
    std::wstring folder;  // with a trailing backslash
    std::vector<JobEntry> jobs;
    long closedFolders = 0;  // that could not be looked into

    /// All job files below `folder`, the newest first. Throws a Failure when it cannot be looked into.
    static JobList Gather(const std::wstring& folder);
    /// A table with a heading, ending in a line end. Control characters are replaced.
    std::wstring Format() const;
};
