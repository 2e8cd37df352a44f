#pragma once

#include <string>
#include <vector>

#include "monitor/handoff/GPPJobRecord.h"

/// PendingJobs: the job files that lie in the job folder because nobody has been handed them.
///
/// The monitor announces a job once. What was printed while nobody listened lies at
/// <job folder>\<user>\<printer>\<document>.ps, as does what a receiver had taken over and not handed out
/// when it ended ("... (waiting 4711-1).ps"). A printer of another server has a folder for the server, too.
/// Files of no bytes are left by jobs that were refused, and do not count; neither do files that somebody
/// has been handed, or that the monitor has set aside, or what lies behind a link.
struct PendingJobs {
    /// Their full paths, oldest first. Where the folder may not be listed, as C:\Windows\Temp for ordinary
    /// users, only what `user` has printed is found.
    static std::vector<std::wstring> Find(const std::wstring& folder, const std::wstring& user);
    /// The record that the monitor would have sent, as far as such a path tells: of the names of user and
    /// printer, what made no name of a folder has been replaced.
    static GPPJobRecord MakeRecord(const std::wstring& path, const std::wstring& folder);
};
