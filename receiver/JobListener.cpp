#include "receiver/JobListener.h"

#include "framework/core/errors/GException.h"
#include "framework/core/events/GBasicSignals.h"
#include "framework/ipc/GIPCReceiver.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/base/PWin32Api.h"
#include "receiver/RunReporting.h"

namespace {

// Any program can hold a shared lock for ever.
constexpr long cMaxWaitMilliseconds = 1000;
constexpr unsigned long long cMillisecondsBetweenChecks = 1000;

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
    RunReporting(mReport, [this] {
        mBudget.Refill(cMaxWaitMilliseconds);
        if (!mReceiver) Listen();
        GBasicSignals::DevoteTimeToRepeaters();
        CheckRegistration();
    });
}

// Any process can set the event of a queue again and again; that must not keep this one busy.
void JobListener::Wait(unsigned long milliseconds, const std::vector<void*>& handles) const {
    constexpr DWORD cPauseMilliseconds = 10;
    std::vector<void*> all = handles;
    for (void* const handle : GetWakeHandles()) all.push_back(handle);
    const DWORD woken = all.empty() ? WAIT_FAILED
                                    : ::WaitForMultipleObjects(static_cast<DWORD>(all.size()), all.data(),
                                                               FALSE, milliseconds);
    if (woken == WAIT_FAILED) {
        ::Sleep(milliseconds);
    } else if (woken != WAIT_TIMEOUT && woken >= WAIT_OBJECT_0 + handles.size() && !HasMessages()) {
        ::Sleep(cPauseMilliseconds);
    }
}

// What is wrong with the queue is for the next tick to say.
std::vector<void*> JobListener::GetWakeHandles() const {
    std::vector<void*> handles;
    try {
        if (mReceiver)
            for (void* const handle : GPPIPCManager::GetInstance()->GetWakeHandles())
                handles.push_back(handle);
    } catch (const GException&) {
        handles.clear();
    }
    return handles;
}

bool JobListener::HasMessages() const {
    try {
        return GPPIPCManager::GetInstance()->WaitForMessages(0);
    } catch (const GException&) {
        return false;
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
}

void JobListener::StopListening() noexcept {
    mBudget.Refill(cMaxWaitMilliseconds);
    mReceiver.reset();
    mHandOff.reset();
}

// The monitor drops the registration of a process whose queue somebody has spoilt.
void JobListener::CheckRegistration() {
    const unsigned long long now = ::GetTickCount64();
    if (now - mLastCheck < cMillisecondsBetweenChecks) return;
    mLastCheck = now;
    GPPIPCManager& manager = *GPPIPCManager::GetInstance();
    if (manager.IsStillRegistered()) return;
    mReport(L"The registration was gone. Registering again.");
    manager.Reregister();
}
