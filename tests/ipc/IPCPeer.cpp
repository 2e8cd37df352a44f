// Another process for the tests of messages between processes. Its first argument says what it does.
#include <cstdlib>
#include <string>

#include "framework/core/GBasicSignals.h"
#include "framework/core/GException.h"
#include "monitor/GPPIPCManager.h"
#include "platform/win32/PWin32Api.h"
#include "tests/ipc/FixedSession.h"

namespace {

constexpr long cRequest = 145;
constexpr long cAnswer = 146;

/// Sends what it is sent back to the sender, until that is "stop".
class Echo : public GIPCReceiver {
public:
    explicit Echo(GPPIPCManager& manager) : GIPCReceiver(&manager), mManager(manager) {}
    void HandleIPCMessage(const GIPCMessage& message) override {
        if (message.GetData() == "stop") {
            mStopped = true;
        } else {
            mManager.SendRaw(message.GetSenderProcessID(), cAnswer, message.GetData());
        }
    }
    bool IsStopped() const { return mStopped; }

private:
    GPPIPCManager& mManager;
    bool mStopped = false;
};

/// Ends while it holds the mutex of an identifier.
void DieHolding(const char* identifier) {
    GIPMutex mutex(GShMemID(identifier), GIPPrefix::cSharedMemoryLock);
    mutex.Lock();
    ::TerminateProcess(::GetCurrentProcess(), 7);
}

/// Listens in a session and answers.
void Answer(long session) {
    GSessionInfo::SetInstance(new FixedSession(session));
    GPPIPCManager manager(GIPCMessageQueueMgr::cTest);
    Echo echo(manager);
    echo.Register(cRequest);
    while (!echo.IsStopped()) {
        GBasicSignals::DevoteTimeToRepeaters();
        ::Sleep(5);
    }
}

/// Listens in a session, but never looks what has come.
void Ignore(long session) {
    GSessionInfo::SetInstance(new FixedSession(session));
    GPPIPCManager manager(GIPCMessageQueueMgr::cTest);
    Echo echo(manager);
    echo.Register(cRequest);
    ::Sleep(INFINITE);
}

/// Appends `count` numbered messages of all sizes to a queue of the global name space.
void Write(long processID, long registrationID, long count) {
    GIPCMessageQueue queue(-1, processID, registrationID);
    for (long number = 0; number < count; ++number) {
        const std::string text = std::to_string(number) + ":" + std::string(number % 977, '.');
        while (!queue.TryToAddRawMessage(cRequest, text.c_str())) ::Sleep(1);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const auto number = [&](int index) { return index < argc ? std::atol(argv[index]) : 0; };
    const std::string what = argc > 1 ? argv[1] : "";
    GShMemID::Initialize();
    try {
        if (what == "die-holding") DieHolding(argv[2]);
        if (what == "answer") Answer(number(2));
        if (what == "ignore") Ignore(number(2));
        if (what == "write") Write(number(2), number(3), number(4));
    } catch (const GException& exception) {
        return static_cast<int>(exception.GetExceptionID() % 100);
    }
    GShMemID::Finalize();
    return 0;
}
