#include "receiver/library/JobReceiver.h"

#include <new>
#include <stdexcept>
#include <utility>

#include "framework/GFrameworkScope.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/system/GProcessInfo.h"
#include "monitor/handoff/GPPJobNotification.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"
#include "receiver/Job.h"
#include "receiver/JobIntake.h"
#include "receiver/JobListener.h"
#include "receiver/RunReporting.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SpoolerHost.h"

namespace {

constexpr DWORD cTickMilliseconds = 100;
constexpr std::size_t cMaxProblems = 100;

PWin32ScopedHandle<PWin32KernelHandle> MakeEvent() {
    PWin32ScopedHandle<PWin32KernelHandle> event(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!event) throw std::runtime_error("no event");
    return event;
}

// Whoever gets this handle cannot set or reset the event.
PWin32ScopedHandle<PWin32KernelHandle> MakeHandleToWaitFor(void* event) {
    HANDLE copy = nullptr;
    const HANDLE process = ::GetCurrentProcess();
    if (!::DuplicateHandle(process, event, process, &copy, SYNCHRONIZE, FALSE, 0))
        throw std::runtime_error("no handle");
    return PWin32ScopedHandle<PWin32KernelHandle>(copy);
}

// By the same look at the system as the monitor's.
bool HasRightName() {
    GProcessInfo& processes = *GProcessInfo::GetInstance();
    GTable<std::int32_t> ids;
    processes.GetProcessIDs(GString(GPPJobNotification::cListenerName), ids, false);
    return ids.Find(static_cast<std::int32_t>(processes.GetCurrentProcessID())) >= 0;
}

ReceivedJob AsValues(Job job) {
    const GPPJobRecord& record = job.record;
    ReceivedJob values;
    values.announcedPath = AsStandard(record.GetJobPath());
    values.user = AsStandard(record.GetUserName());
    values.printer = AsStandard(record.GetPrinterName());
    values.port = AsStandard(record.GetPortName());
    values.copies = record.GetCopyCount();
    values.file = std::move(job.file);
    return values;
}

}  // namespace

JobReceiver::JobReceiver(const Options& options)
    : mOptions(options),
      mHasJobs(MakeEvent()),
      mStop(MakeEvent()),
      mEventForCallers(MakeHandleToWaitFor(mHasJobs.Get())) {
    mThread = std::thread([this] { Run(); });
}

JobReceiver::~JobReceiver() {
    Stop();
}

JobReceiver::Start JobReceiver::WaitForStart() {
    return mStart.get_future().get();
}

void JobReceiver::Stop() noexcept {
    mIsStopped = true;
    ::SetEvent(mStop.Get());
    if (mThread.joinable()) mThread.join();
    const std::lock_guard lock(mLock);
    mJobs.clear();
    ::ResetEvent(mHasJobs.Get());
}

// Everything that fails does so before the start is told; Listen() throws nothing afterwards.
void JobReceiver::Run() noexcept {
    try {
        const GFrameworkScope framework;
        if (!HasRightName()) return mStart.set_value(Start::cWrongName);
        const bool needsFolder = mOptions.pending || !mOptions.anywhere;
        JobIntake intake(needsFolder ? SpoolerHost::GetJobFolder() : std::wstring(), mOptions.anywhere,
                         [this](const std::wstring& line) { Report(line); });
        if (mOptions.pending) TakePending(intake);
        Listen(intake);
    } catch (const Failure&) {
        mStart.set_value(Start::cNoJobFolder);
    } catch (const std::bad_alloc&) {
        mStart.set_value(Start::cNoMemory);
    } catch (...) {
        mStart.set_value(Start::cFailed);
    }
}

void JobReceiver::Listen(JobIntake& intake) {
    JobListener listener(
        [&](const GPPJobRecord& record) {
            if (std::optional<Job> job = intake.TakeAnnounced(record)) Add(std::move(*job));
        },
        [this](const std::wstring& line) { Report(line); });
    listener.Tick();
    mIsListening = listener.IsListening();
    mStart.set_value(Start::cDone);
    while (!mIsStopped) {
        try {
            TakeTurn(listener, intake);
        } catch (const std::bad_alloc&) {
            ::Sleep(cTickMilliseconds);
        }
    }
    mIsListening = false;
}

void JobReceiver::TakeTurn(JobListener& listener, JobIntake& intake) {
    if (mOptions.pending && listener.IsListening() && intake.IsLookDue()) TakePending(intake);
    listener.Wait(cTickMilliseconds, {mStop.Get()});
    listener.Tick();
    mIsListening = listener.IsListening();
}

void JobReceiver::TakePending(JobIntake& intake) {
    RunReporting([this](const std::wstring& line) { Report(line); },
                 [&] {
                     while (!mIsStopped) {
                         std::optional<Job> job = intake.TakePending();
                         if (!job) return;
                         Add(std::move(*job));
                     }
                 });
}

void JobReceiver::Add(Job job) {
    if (!job.file.problem.empty()) Report(job.file.problem);
    if (!job.file.bytes) return;
    ReceivedJob values = AsValues(std::move(job));
    const std::lock_guard lock(mLock);
    mJobs.push_back(std::move(values));
    ::SetEvent(mHasJobs.Get());
}

std::optional<ReceivedJob> JobReceiver::Pop() {
    const std::lock_guard lock(mLock);
    if (mJobs.empty()) return std::nullopt;
    ReceivedJob job = std::move(mJobs.front());
    mJobs.pop_front();
    if (mJobs.empty()) ::ResetEvent(mHasJobs.Get());
    return job;
}

std::optional<ReceivedJob> JobReceiver::Wait(unsigned long milliseconds) {
    const HANDLE handles[] = {mStop.Get(), mHasJobs.Get()};
    const ULONGLONG start = ::GetTickCount64();
    for (;;) {
        while (std::optional<ReceivedJob> job = Pop()) {
            if (job->file.HandOut()) return job;
            Report(job->file.problem);
        }
        const ULONGLONG passed = ::GetTickCount64() - start;
        if (mIsStopped || (milliseconds != INFINITE && passed >= milliseconds)) return std::nullopt;
        const DWORD left = milliseconds == INFINITE ? INFINITE : milliseconds - static_cast<DWORD>(passed);
        ::WaitForMultipleObjects(static_cast<DWORD>(std::size(handles)), handles, FALSE, left);
    }
}

bool JobReceiver::TakeProblem(const std::function<bool(const std::wstring&)>& take) {
    const std::lock_guard lock(mLock);
    if (mProblems.empty()) return false;
    if (take(mProblems.front())) mProblems.pop_front();
    return true;
}

// A line that there is no memory for is left out.
void JobReceiver::Report(const std::wstring& line) noexcept {
    RunQuietly([&] {
        const std::lock_guard lock(mLock);
        if (!mRepeats.IsNew(line)) return;
        mProblems.push_back(line);
        if (mProblems.size() > cMaxProblems) mProblems.pop_front();
    });
}
