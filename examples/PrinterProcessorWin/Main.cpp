// A processing application: it is told about every job file that the port monitor has written.
// Copy this folder and receiver/, and put what you do with a job in the place of JobQueue.
#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "examples/PrinterProcessorWin/FailureLog.h"
#include "examples/PrinterProcessorWin/JobOutput.h"
#include "examples/PrinterProcessorWin/JobQueue.h"
#include "examples/PrinterProcessorWin/Options.h"
#include "examples/PrinterProcessorWin/StopRequest.h"
#include "framework/GFrameworkScope.h"
#include "framework/core/errors/GException.h"
#include "platform/win32/core/PWin32Wide.h"
#include "receiver/JobIntake.h"
#include "receiver/JobListener.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SpoolerHost.h"

namespace {

constexpr unsigned long cTickMilliseconds = 100;

std::optional<ProgramCommand> ReadCommand(const Options& options, FailureLog& log) {
    if (options.run.empty()) return std::nullopt;
    ProgramCommand command(options.run);
    if (!command.GetWarning().empty()) log.Write(command.GetWarning());
    return command;
}

/// A job's way: JobListener hears of it, JobIntake takes its file over, JobQueue hands it out.
class Receiver {
public:
    explicit Receiver(const Options& options)
        : mOptions(options),
          mOutput(options.json),
          mQueue(ReadCommand(options, mLog), options.jobs, mOutput, mLog),
          mIntake(options.anywhere && !options.pending ? L"" : SpoolerHost::GetJobFolder(), options.anywhere,
                  [this](const std::wstring& line) { mLog.Write(line); }) {}

    /// False when the program should end with a failure.
    bool Run() {
        if (mOptions.pending) TakePending();
        if (!IsDone()) Listen();
        Finish();
        if (mOutput.HasFailed()) throw GSimpleException(GExceptionID::cCouldNotWriteFile);
        return !(mOptions.once && mQueue.HasFailed());
    }

private:
    bool IsDone() const {
        return mStop.IsMade() || mOutput.HasFailed() || (mOptions.once && mQueue.GetCount() > 0);
    }

    void TakePending() {
        while (!IsDone()) {
            std::optional<Job> job = mIntake.TakePending();
            if (!job) return;
            mQueue.Add(std::move(*job));
        }
    }

    void TakeAnnounced(const GPPJobRecord& record) {
        if (mOptions.once && mQueue.GetCount() > 0) return;
        if (std::optional<Job> job = mIntake.TakeAnnounced(record)) mQueue.Add(std::move(*job));
    }

    // A sender that does not wake its receivers is heard on the next tick, so their distance is its delay.
    void Listen() {
        JobListener listener([this](const GPPJobRecord& record) { TakeAnnounced(record); },
                             [this](const std::wstring& line) { mLog.Write(line); });
        for (bool isTold = false;;) {
            listener.Tick();
            if (listener.IsListening() && !std::exchange(isTold, true))
                mLog.Write(L"Listening for printed jobs. Ctrl-C ends.");
            if (mOptions.pending && listener.IsListening() && mIntake.IsLookDue()) TakePending();
            mQueue.Tick();
            if (IsDone()) return;
            std::vector<void*> handles = mQueue.GetHandles();
            handles.push_back(mStop.GetHandle());
            listener.Wait(cTickMilliseconds, handles);
        }
    }

    // Programs that run are waited for, until Ctrl-C is pressed once more.
    void Finish() {
        mQueue.LeaveWaiting();
        mQueue.Tick();
        if (mStop.IsMade() && !mQueue.IsIdle())
            mLog.Write(L"Waiting for programs to end. Ctrl-C leaves them.");
        mStop.Forget();
        while (!mQueue.IsIdle() && !mStop.IsMade() && !mStop.IsPressing()) {
            mStop.WaitWith(mQueue.GetHandles(), cTickMilliseconds);
            mQueue.Tick();
        }
        mQueue.LeaveRunning();
    }

    const Options mOptions;
    const StopRequest mStop;
    FailureLog mLog;
    JobOutput mOutput;
    JobQueue mQueue;
    JobIntake mIntake;
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
    try {
        const GFrameworkScope framework;
        const Options options =
            Options::Read(std::vector<std::wstring>(arguments + (count > 0), arguments + count));
        if (options.page.empty()) return Receiver(options).Run() ? 0 : 1;
        Console::Write(options.page);
        return 0;
    } catch (const UsageFailure& failure) {
        Console::WriteError(failure.GetText() + L'\n');
        return 2;
    } catch (const Failure& failure) {
        Console::WriteError(failure.GetText() + L'\n');
    } catch (const GException& failure) {
        Console::WriteError(std::wstring(AsWide(failure.GetFullDescription())) + L'\n');
    } catch (const std::exception&) {
        Console::WriteError(L"The program could not be started.\n");
    }
    return 1;
}
