#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/ipc/GWaitBudget.h"
#include "monitor/handoff/GPPHandOffScope.h"

class GPPJobRecord;

/// JobListener: hears of every job that the port monitor has written, and goes on doing so whatever
/// other programs do to the shared memory that the news comes through.
///
/// One at a time, used on the thread that made it, while the framework runs.
class JobListener {
public:
    /// Gets each job's record. What it throws is reported.
    using Handler = std::function<void(const GPPJobRecord&)>;
    /// Gets a line about what the listener does or what went wrong; the same may come many times.
    using Reporter = std::function<void(const std::wstring&)>;

    JobListener(Handler handler, Reporter report);
    JobListener(const JobListener&) = delete;
    JobListener& operator=(const JobListener&) = delete;
    /// Signs off. A registration that cannot be taken back within a second stays behind; whoever meets
    /// it next removes it.
    ~JobListener();

    /// Hands out what has arrived, and starts to listen when that is not so, or not any more. Called
    /// regularly, with Wait() in between. Waits for others at most a second; throws nothing, a failure is
    /// reported and the next call goes on.
    void Tick();
    bool IsListening() const { return mReceiver != nullptr; }
    /// Returns as soon as a job has come, one of `handles` is signalled (the system's HANDLEs, of events
    /// or processes, 60 at most), or the time is over. Give it a limit: not every sender wakes its
    /// receivers. Throws nothing but std::bad_alloc.
    void Wait(unsigned long milliseconds, const std::vector<void*>& handles) const;

private:
    class Receiver;

    void Listen();
    std::vector<void*> GetWakeHandles() const;
    bool HasMessages() const;
    void StopListening() noexcept;
    void CheckRegistration();

    Handler mHandler;
    Reporter mReport;
    GWaitBudget mBudget;
    std::optional<GPPHandOffScope> mHandOff;
    std::unique_ptr<Receiver> mReceiver;  // null while not listening
    unsigned long long mLastCheck = 0;
};
