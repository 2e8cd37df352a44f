#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "receiver/Job.h"

/// JobIntake: takes over the files of jobs, of those that are announced and of those that lie there from
/// before. No job is given out twice, and of several receivers one gets it.
class JobIntake {
public:
    /// Gets a line about a job that is left where it is.
    using Reporter = std::function<void(const std::wstring&)>;

    /// The folder of all jobs, with a backslash at its end. `anywhere`: announced ones may lie elsewhere,
    /// too.
    JobIntake(std::wstring folder, bool anywhere, Reporter report);

    /// The job that a record announces, perhaps with a file that could not be taken. Nothing when
    /// TakePending() has given it out already.
    std::optional<Job> TakeAnnounced(const GPPJobRecord& record);

    /// The oldest job that lies there and may be taken over (see PendingJobs); nothing, at the end of this
    /// look at the folder, when there is none. The first look belongs before the program listens; further
    /// ones are due afterwards, until no file is met that the monitor still has open: such a job may be
    /// announced soon, or may have been before the program listened.
    std::optional<Job> TakePending();
    bool IsLookDue() const;

private:
    std::optional<Job> TakeFound();
    void EndLook();

    std::wstring mFolder;
    bool mAnywhere;
    Reporter mReport;
    bool mIsLooking = false;
    std::vector<std::wstring> mFound;     // of this look, the oldest last
    std::vector<std::wstring> mGivenOut;  // their records may be on their way
    std::vector<std::wstring> mLeft;      // cannot be given a name of their own, and are not looked at again
    int mLooks = 0;
    bool mHasMetOpen = false;
    unsigned long long mNextLook = 0;
    unsigned long long mPause;
};
