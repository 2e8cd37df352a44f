// A processing application: it is told about every job file that the port monitor has written.
// Copy this file, and put what you do with a job in the place of ProcessJob.
#include <exception>
#include <string>

#include "examples/PrinterProcessorWin/JobFile.h"
#include "examples/PrinterProcessorWin/JobText.h"
#include "examples/PrinterProcessorWin/Options.h"
#include "examples/PrinterProcessorWin/StopRequest.h"
#include "framework/core/errors/GException.h"
#include "framework/core/events/GBasicSignals.h"
#include "framework/ipc/GIPCReceiver.h"
#include "monitor/handoff/GPPHandOffScope.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/console/Console.h"

namespace {

class JobReceiver final : public GIPCReceiver {
public:
    explicit JobReceiver(const Options& options)
        : GIPCReceiver(GPPIPCManager::GetInstance()), mOptions(options) {
        Register(GPPJobRecord::cMessageType);  // from here on the monitor finds this process
    }
    bool IsDone() const { return mOptions.once && mJobs > 0; }

    // Any process can send a message, so the data may be anything at all.
    void HandleIPCMessage(const GIPCMessage& message) override {
        GPPJobRecord record;
        if (!record.SetFromMessageData(message.GetData())) {
            Console::WriteError(L"A message that holds no job record was left out.\n");
        } else if (!IsDone()) {
            ++mJobs;
            ProcessJob(record);
        }
    }

private:
    void ProcessJob(const GPPJobRecord& record) const {
        // The monitor may still be closing the file: this waits until it can be opened.
        const auto jobBytes = WaitForJobFile(record.GetJobPath());
        const auto format = mOptions.json ? FormatAsJson : FormatAsLines;
        if (!Console::Write(format(record, jobBytes))) {
            throw GSimpleException(GExceptionID::cCouldNotWriteFile);
        }
    }

    Options mOptions;
    long mJobs = 0;
};

// Messages arrive on the ticks that this loop gives, so its pause is the delay of a notification.
void ReceiveJobs(const Options& options) {
    constexpr unsigned long cTickMilliseconds = 100;
    const GPPHandOffScope handOff;
    const StopRequest stop;
    const JobReceiver receiver(options);
    Console::WriteError(L"Listening for printed jobs. Ctrl-C ends.\n");
    do {
        GBasicSignals::DevoteTimeToRepeaters();
    } while (!receiver.IsDone() && !stop.WaitFor(cTickMilliseconds));
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    const auto options = Options::Parse(count, arguments);
    if (!options) {
        Console::WriteError(Options::GetHelpText());
        return 2;
    }
    try {
        ReceiveJobs(*options);
        return 0;
    } catch (const GException& failure) {
        Console::WriteError(std::wstring(AsWide(failure.GetFullDescription())) + L'\n');
    } catch (const std::exception&) {
        Console::WriteError(L"The program could not be started.\n");
    }
    return 1;
}
