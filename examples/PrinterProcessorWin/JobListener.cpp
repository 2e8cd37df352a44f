#include "examples/PrinterProcessorWin/JobListener.h"

#include <exception>

#include "framework/core/errors/GException.h"
#include "framework/core/events/GBasicSignals.h"
#include "framework/ipc/GIPCReceiver.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/core/PWin32Wide.h"

namespace {

// Any program can hold a shared lock for ever.
constexpr long cMaxWaitMilliseconds = 1000;
constexpr unsigned long cTicksBetweenChecks = 10;

}  // namespace

class JobListener::Receiver final : public GIPCReceiver {
public:
    explicit Receiver(JobListener& listener)
        : GIPCReceiver(GPPIPCManager::GetInstance()), mListener(listener) {
        Register(GPPJobRecord::cMessageType);  // from here on the monitor finds this process
    }

    // Any process can send a message, so the data may be anything at all.
    void HandleIPCMessage(const GIPCMessage& message) override {
        GPPJobRecord record;
        if (record.SetFromMessageData(message.GetData())) {
            mListener.mHandler(record);
        } else {
            mListener.mReport(L"A message that holds no job record was left out.");
        }
    }

private:
    JobListener& mListener;
};

JobListener::JobListener(Handler handler, Reporter report)
    : mHandler(std::move(handler)), mReport(std::move(report)), mBudget(cMaxWaitMilliseconds) {}

JobListener::~JobListener() {
    StopListening();
}

void JobListener::Tick() {
    try {
        mBudget.Refill(cMaxWaitMilliseconds);
        if (!mReceiver) Listen();
        GBasicSignals::DevoteTimeToRepeaters();
        if (++mTicks % cTicksBetweenChecks == 0) CheckRegistration();
    } catch (const GException& failure) {
        mReport(AsWide(failure.GetFullDescription()));
    } catch (const std::exception&) {
        mReport(L"Memory ran out.");
    }
}

void JobListener::Listen() {
    try {
        if (!mHandOff) mHandOff.emplace(&mBudget);
        mReceiver = std::make_unique<Receiver>(*this);
    } catch (...) {
        StopListening();
        throw;
    }
    mReport(L"Listening for printed jobs. Ctrl-C ends.");
}

void JobListener::StopListening() noexcept {
    mBudget.Refill(cMaxWaitMilliseconds);
    mReceiver.reset();
    mHandOff.reset();
}

// The monitor drops the registration of a process whose queue somebody has spoilt.
void JobListener::CheckRegistration() {
    GPPIPCManager& manager = *GPPIPCManager::GetInstance();
    if (manager.IsStillRegistered()) return;
    mReport(L"The registration was gone. Registering again.");
    manager.Reregister();
}
