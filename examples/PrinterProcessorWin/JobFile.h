#pragma once

#include <optional>
#include <string>

/// JobFile: what became of the file that a job record names.
struct JobFile {
    /// Where the file is now; empty when it was not taken.
    std::wstring path;
    /// Its size; nothing when it was not taken.
    std::optional<unsigned long long> bytes;
    /// Whether the job ends as a PostScript document does. A job that was cancelled, or broke off, is
    /// announced like a whole one.
    bool isComplete = false;
    /// One line on what went wrong or is doubtful; empty when nothing is. Holds text from outside.
    std::wstring problem;
    /// What the document's own comments tell; from outside. Empty, or nothing, when they do not.
    std::wstring title;
    std::optional<long> pages;

    /// Takes over the file: waits until the monitor has closed it, five seconds at most, and gives it a
    /// name of its own in its folder. Under its old name the next job of the same title would
    /// overwrite it. A file that may be read but not renamed keeps its name; `problem` tells.
    ///
    /// Opens nothing that JobPathRules refuses, and, where `folder` is not empty, nothing that does not
    /// lie below it.
    static JobFile Take(const std::wstring& path, const std::wstring& folder);
};
