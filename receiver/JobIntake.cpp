#include "receiver/JobIntake.h"

#include <algorithm>
#include <utility>

#include "framework/system/PSystem.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"
#include "receiver/JobFileName.h"
#include "receiver/PendingJobs.h"

namespace {

constexpr unsigned long long cFirstPause = 1000;  // milliseconds
constexpr unsigned long long cLongestPause = 60000;

bool IsSame(const std::wstring& one, const std::wstring& other) {
    return ::CompareStringOrdinal(one.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL;
}

auto Find(std::vector<std::wstring>& paths, const std::wstring& path) {
    return std::ranges::find_if(paths, [&](const std::wstring& other) { return IsSame(path, other); });
}

std::wstring GetUser() {
    GString name;
    PSystem::GetLogonName(name);
    return AsWide(name);
}

}  // namespace

JobIntake::JobIntake(std::wstring folder, bool anywhere, Reporter report)
    : mFolder(std::move(folder)), mAnywhere(anywhere), mReport(std::move(report)), mPause(cFirstPause) {}

std::optional<Job> JobIntake::TakeAnnounced(const GPPJobRecord& record) {
    const std::wstring path = AsWide(record.GetJobPath());
    Job job{record, JobFile::Take(path, mAnywhere ? std::wstring() : mFolder)};
    const auto known = Find(mGivenOut, path);
    if (known == mGivenOut.end() || job.file.bytes) return job;
    mGivenOut.erase(known);
    return std::nullopt;
}

std::optional<Job> JobIntake::TakePending() {
    if (!mIsLooking) {
        mIsLooking = true;
        mHasMetOpen = false;
        mFound = PendingJobs::Find(mFolder, GetUser());
        std::ranges::reverse(mFound);
    }
    while (!mFound.empty()) {
        std::optional<Job> job = TakeFound();
        if (job) return job;
    }
    EndLook();
    return std::nullopt;
}

std::optional<Job> JobIntake::TakeFound() {
    constexpr unsigned long cNoWait = 0;
    const std::wstring path = std::move(mFound.back());
    mFound.pop_back();
    if (Find(mLeft, path) != mLeft.end()) return std::nullopt;
    Job job{PendingJobs::MakeRecord(path, mFolder), JobFile::Take(path, mFolder, cNoWait)};
    // What waits belongs to another receiver as long as that has it open.
    if (job.file.isInUse && !JobFileName::IsWaiting(path)) mHasMetOpen = true;
    if (!job.file.bytes) return std::nullopt;
    if (!job.file.hold) {
        mLeft.push_back(path);
        mReport(path + L" waits, and is left: it cannot be renamed.");
        return std::nullopt;
    }
    // Nobody could be told of a job while this program did not listen.
    if (mLooks > 0) mGivenOut.push_back(path);
    return job;
}

void JobIntake::EndLook() {
    mIsLooking = false;
    ++mLooks;
    if (mLooks == 1) return;
    mNextLook = ::GetTickCount64() + mPause;
    mPause = std::min(2 * mPause, cLongestPause);
}

bool JobIntake::IsLookDue() const {
    return mLooks < 2 || (mHasMetOpen && ::GetTickCount64() >= mNextLook);
}
