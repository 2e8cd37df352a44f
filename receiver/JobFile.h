#pragma once

#include <optional>
#include <string>

#include "platform/win32/base/PWin32ScopedHandle.h"

/// JobFile: what became of the file that a job record names.
///
/// A job's file is taken over as soon as the job is known, and handed out when the job's turn has come; its
/// name tells which of the two has happened (JobFileName). An object belongs to one thread at a time.
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
    /// It was not taken because somebody had it open.
    bool isInUse = false;
    /// Counts what this process has taken over.
    unsigned long number = 0;
    /// Held open from the taking over to the handing out, so that nobody else takes the file.
    PWin32ScopedHandle<PWin32FileHandle> hold{};

    /// Takes over the file: waits until the monitor has closed it, and gives it a name of its own in its
    /// folder. Under its old name the next job of the same title would overwrite it. A file that may be
    /// read but not renamed keeps its name, and is not held; `problem` tells.
    ///
    /// Opens nothing that JobPathRules refuses, and, where `folder` is not empty, nothing that does not
    /// lie below it.
    static JobFile Take(const std::wstring& path, const std::wstring& folder,
                        unsigned long waitMilliseconds = 5000);
    /// Gives the file the name of one that is handed out, and lets go of it. False when that fails: then
    /// it must not be handed out, or it would be once more; `problem` tells.
    bool HandOut();
};
