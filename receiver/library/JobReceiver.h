#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "platform/win32/base/PWin32ScopedHandle.h"
#include "receiver/RepeatFilter.h"
#include "receiver/library/ReceivedJob.h"

class JobIntake;
class JobListener;
struct Job;

/// JobReceiver: hears of jobs and takes their files over, on a thread of its own, and keeps them until
/// somebody asks for them. The framework runs on that thread alone. One at a time; any thread may call.
class JobReceiver {
public:
    struct Options {
        bool pending = false;   // jobs from before come first
        bool anywhere = false;  // announced files may lie anywhere
    };
    /// How the start went. Any other than cDone: the receiver is of no use, and its thread has ended.
    enum class Start { cDone, cWrongName, cNoJobFolder, cNoMemory, cFailed };

    /// Throws a std::exception when the system refuses what is needed.
    explicit JobReceiver(const Options& options);
    JobReceiver(const JobReceiver&) = delete;
    JobReceiver& operator=(const JobReceiver&) = delete;
    ~JobReceiver();

    /// Called first, and once: returns when it listens, or has tried to.
    Start WaitForStart();
    /// Ends the thread, lets go of all files, and ends every wait. By one thread at a time.
    void Stop() noexcept;

    /// The next job, handed out; nothing when the time is over or the receiver has been stopped. ~0: no
    /// limit.
    std::optional<ReceivedJob> Wait(unsigned long milliseconds);
    bool IsStopped() const { return mIsStopped; }
    bool IsListening() const { return mIsListening; }
    /// The system's HANDLE of an event that is set as long as there is a job; it can only be waited for.
    void* GetEvent() const { return mEventForCallers.Get(); }
    /// Calls `take` with the oldest problem, which is dropped when that returns true. False when there is
    /// none.
    bool TakeProblem(const std::function<bool(const std::wstring&)>& take);

private:
    using Event = PWin32ScopedHandle<PWin32KernelHandle>;

    void Run() noexcept;
    void Listen(JobIntake& intake);
    void TakeTurn(JobListener& listener, JobIntake& intake);
    void TakePending(JobIntake& intake);
    void Add(Job job);
    std::optional<ReceivedJob> Pop();
    void Report(const std::wstring& line) noexcept;

    const Options mOptions;
    const Event mHasJobs;
    const Event mStop;
    const Event mEventForCallers;  // mHasJobs by another handle
    std::promise<Start> mStart;
    std::atomic<bool> mIsStopped = false;
    std::atomic<bool> mIsListening = false;
    std::mutex mLock;  // guards what follows, and that mHasJobs tells whether there are jobs
    std::deque<ReceivedJob> mJobs;
    std::deque<std::wstring> mProblems;
    RepeatFilter mRepeats;
    std::thread mThread;
};
