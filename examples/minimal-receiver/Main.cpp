// The smallest processing application in C++: shows the path of each job file that it is told of. It takes no
// file over; PrinterProcessorWin and the C interface do.
#include <cstdio>
#include <cstdlib>

#include "framework/core/errors/GException.h"
#include "framework/core/events/GBasicSignals.h"
#include "framework/core/text/GStandardString.h"
#include "framework/ipc/GIPCReceiver.h"
#include "framework/ipc/GWaitBudget.h"
#include "monitor/handoff/GPPHandOffScope.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"

class JobReceiver final : public GIPCReceiver {
public:
    explicit JobReceiver(int jobs) : GIPCReceiver(GPPIPCManager::GetInstance()), mJobsLeft(jobs) {
        Register(GPPJobRecord::cMessageType);  // from here on the monitor finds this process
    }
    void HandleIPCMessage(const GIPCMessage& message) override {
        GPPJobRecord record;
        if (!record.SetFromMessageData(message.GetData())) return;
        std::puts(GStandardString::ToUTF8(record.GetJobPath()).c_str());
        std::fflush(stdout);
        --mJobsLeft;
    }
    bool IsDone() const { return mJobsLeft == 0; }

private:
    int mJobsLeft;
};

/// The argument: after how many jobs it ends.
int main(int count, char** arguments) {
    GWaitBudget budget(1000);  // milliseconds: any program can hold a shared lock for ever
    try {
        const GPPHandOffScope handOff(&budget);
        const JobReceiver receiver(count > 1 ? std::atoi(arguments[1]) : -1);
        std::fputs("Listening\n", stderr);
        std::fflush(stderr);
        while (!receiver.IsDone()) {
            budget.Refill(1000);
            GBasicSignals::DevoteTimeToRepeaters();              // delivers what has arrived
            GPPIPCManager::GetInstance()->WaitForMessages(100);  // at most so many milliseconds
        }
        return 0;
    } catch (const GException& failure) {
        std::fprintf(stderr, "%s\n", GStandardString::ToUTF8(failure.GetFullDescription()).c_str());
        return 1;
    }
}
