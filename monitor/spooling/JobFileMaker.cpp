#include "monitor/spooling/JobFileMaker.h"

#include <chrono>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/files/GFileSystem.h"
#include "monitor/spooling/JobFileRules.h"
#include "monitor/spooling/ServiceRights.h"

namespace {

/// Who puts something in the way again and again, at just the right moment, gets this often. Where even what
/// the job has just made is not to be trusted, there is no second round: nothing would come of it but more
/// to set aside.
constexpr int cRounds = 8;

[[noreturn]] void ThrowGivenUp(const GString& name) {
    const GExceptionLocation location(name);
    throw GSimpleException(GExceptionID::cCouldNotOpenFile);
}

std::uint64_t GetSeed() {
    return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}

}  // namespace

JobFileMaker::JobFileMaker(MonitorPlatform& platform) : mPlatform(platform) {}

GSharedObject<GFile> JobFileMaker::Open(const JobPath& path) {
    const std::vector<GString> folders = path.GetFolders();
    Start(path.GetTempFolder());
    for (const GString& folder : folders) Enter(folder);
    return OpenFile(path);
}

void JobFileMaker::Start(const GPathName& folder) {
    GFileSystem::CreateFolder(folder);
    RunAsService(mPlatform, [&] {
        Opened start = mWalk.OpenStart(folder);
        mFinalPath = mPlatform.GetFacts(mWalk, start).mFinalPath;
        mWalk.Enter(std::move(start));
    });
}

void JobFileMaker::Enter(const GString& name) {
    for (int round = 0; round < cRounds; ++round) {
        const bool isNew = mWalk.MakeFolder(name);
        Opened folder = OpenAsService(name, Purpose::cEnter);
        const GFileFacts facts = mPlatform.GetFacts(mWalk, folder);
        const wchar_t* const fault = JobFileRules::FindFolderFault(facts, mFinalPath);
        if (fault == nullptr) {
            mFinalPath = facts.mFinalPath;
            return mWalk.Enter(std::move(folder));
        }
        if (isNew) break;
        folder.Close();
        SetAside(name, fault);
    }
    ThrowGivenUp(name);
}

GSharedObject<GFile> JobFileMaker::OpenFile(const JobPath& path) {
    const GString& name = path.GetFileName();
    for (int round = 0; round < cRounds; ++round) {
        Opened file = mWalk.Open(name, Purpose::cWrite);
        Opened seen;
        if (!file) seen = OpenAsService(name, Purpose::cLook);
        const wchar_t* const fault = FindFaultOf(file ? file : seen, name);
        // One that may be used and cannot be opened is kept open by somebody, or protected.
        if (!file && (fault == nullptr || seen.IsMissing())) mWalk.Throw(file, name);
        if (fault == nullptr) {
            auto opened =
                GSharedObject<GFile>(new GFile(PFolderWalk::TakeFile(std::move(file), path.GetPath())));
            opened->SetLength(0);
            return opened;
        }
        if (file.mIsNew) break;
        file.Close();
        seen.Close();
        SetAside(name, fault);
    }
    ThrowGivenUp(name);
}

JobFileMaker::Opened JobFileMaker::OpenAsService(const GString& name, Purpose purpose) {
    Opened opened;
    RunAsService(mPlatform, [&] { opened = mWalk.Open(name, purpose); });
    return opened;
}

const wchar_t* JobFileMaker::FindFaultOf(const Opened& file, const GString& name) {
    return JobFileRules::FindFileFault(mPlatform.GetFacts(mWalk, file), mFinalPath, name);
}

void JobFileMaker::SetAside(const GString& name, const wchar_t* fault) {
    const std::uint64_t seed = GetSeed();
    for (int attempt = 1; attempt <= JobFileRules::cAllAttempts; ++attempt) {
        const GString newName = JobFileRules::MakeSetAsideName(name, attempt, seed);
        const PFolderWalk::Renamed result = RenameAsService(name, newName);
        if (result == PFolderWalk::Renamed::cTaken) continue;
        if (result == PFolderWalk::Renamed::cMissing) return;
        mPlatform.Trace(fault);
        return mPlatform.TraceUnits(newName.GetUTF16Ptr());
    }
    ThrowGivenUp(name);
}

PFolderWalk::Renamed JobFileMaker::RenameAsService(const GString& name, const GString& newName) {
    PFolderWalk::Renamed result = PFolderWalk::Renamed::cTaken;
    RunAsService(mPlatform, [&] { result = mWalk.Rename(name, newName); });
    return result;
}
