// A processing application: it is told about every job file that the port monitor has written.
// Copy this folder, and put what you do with a job in the place of ProcessJob.
#include <exception>
#include <string>
#include <vector>

#include "examples/PrinterProcessorWin/FailureLog.h"
#include "examples/PrinterProcessorWin/JobFile.h"
#include "examples/PrinterProcessorWin/JobListener.h"
#include "examples/PrinterProcessorWin/JobText.h"
#include "examples/PrinterProcessorWin/Options.h"
#include "examples/PrinterProcessorWin/StopRequest.h"
#include "framework/GFrameworkScope.h"
#include "framework/core/errors/GException.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SpoolerHost.h"

namespace {

/// What this program does with the jobs: it takes over their files and shows what it was told.
class Jobs {
public:
    Jobs(const Options& options, FailureLog& log)
        : mOptions(options), mFolder(options.anywhere ? L"" : SpoolerHost::GetJobFolder()), mLog(log) {}
    bool IsDone() const { return mOptions.once && mCount > 0; }

    void ProcessJob(const GPPJobRecord& record) {
        if (IsDone()) return;
        ++mCount;
        const JobFile file = JobFile::Take(AsWide(record.GetJobPath()), mFolder);
        if (!file.problem.empty()) mLog.Write(file.problem);
        const auto format = mOptions.json ? FormatAsJson : FormatAsLines;
        if (!Console::Write(format(record, file))) mCannotWrite = true;
    }
    /// Nobody reads what this program has to say.
    bool CannotWrite() const { return mCannotWrite; }

private:
    Options mOptions;
    std::wstring mFolder;  // job files lie below it; empty: anywhere
    FailureLog& mLog;
    long mCount = 0;
    bool mCannotWrite = false;
};

// A sender that does not wake its receivers is heard on the next tick, so their distance is its delay.
void ReceiveJobs(const Options& options) {
    constexpr unsigned long cTickMilliseconds = 100;
    FailureLog log;
    Jobs jobs(options, log);
    const StopRequest stop;
    JobListener listener([&](const GPPJobRecord& record) { jobs.ProcessJob(record); },
                         [&](const std::wstring& line) { log.Write(line); });
    for (;;) {
        listener.Tick();
        if (jobs.CannotWrite()) throw GSimpleException(GExceptionID::cCouldNotWriteFile);
        if (jobs.IsDone() || stop.IsMade()) break;
        listener.Wait(cTickMilliseconds, {stop.GetHandle()});
    }
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    try {
        const GFrameworkScope framework;
        const Options options =
            Options::Read(std::vector<std::wstring>(arguments + (count > 0), arguments + count));
        if (options.page.empty()) {
            ReceiveJobs(options);
        } else {
            Console::Write(options.page);
        }
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
