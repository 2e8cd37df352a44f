#pragma once

#include <string>

/// PageTrial: prints the test page and waits until its job file is there.
struct PageTrial {
    /// What has become of a page.
    enum class Outcome { cArrived, cIncomplete, cMissing };

    /// Tells what came, or why nothing may have come. The page is known by its title, which no other document
    /// has. A page that has arrived is remembered (PageRecord). Throws a Failure when it cannot be printed.
    /// With no seconds to wait the page counts as arrived, and that is told, too.
    static bool Run(const std::wstring& printer, long seconds);

    /// Waits until a file is in the folder (with its trailing backslash) whose name begins with `stem` and
    /// ends in ".ps", and which ends as a document does. `path` is then its full path, or that of an
    /// incomplete one. A processing application may rename it meanwhile, and so its name may go on behind the
    /// stem.
    static Outcome WaitForFile(const std::wstring& folder, const std::wstring& stem, long seconds,
                               std::wstring& path);
};
