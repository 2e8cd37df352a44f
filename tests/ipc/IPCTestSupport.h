#pragma once

#include <future>

#include "framework/ipc/GIPCClock.h"
#include "framework/ipc/GIPCManager.h"
#include "framework/ipc/GIPMutex.h"
#include "tests/core/TextForTests.h"
#include "tests/core/ThrownBy.h"
#include "tests/ipc/IPCWorld.h"
#include "tests/ipc/RawSegment.h"

using ByteList = std::vector<unsigned char>;
using Log = std::vector<std::string>;

inline std::string Filler(long length, char byte = 'f') {
    return std::string(static_cast<std::size_t>(length), byte);
}

/// A message as tests write it: "sender:type:payload" (a long payload as "20000 x A").
inline std::string Describe(const GIPCMessage& message) {
    const std::string text = BytesOf(message.GetData());
    return std::to_string(message.GetSenderProcessID()) + ":" + std::to_string(message.GetType()) + ":" +
           (text.size() < 100 ? text : std::to_string(text.size()) + " x " + text[0]);
}

inline std::string QueueName(long processID, long registrationID) {
    return "QulShDP" + std::to_string(processID) + "MQ" + std::to_string(registrationID);
}

/// Process and registration ID of every entry of a registry; of none there are none.
using Entries = std::vector<std::pair<long, long>>;
inline Entries EntriesOf(const RawSegment* registry) {
    Entries entries;
    for (long offset = 16; registry && offset < static_cast<long>(registry->GetWord(12)) + 4; offset += 8)
        entries.emplace_back(registry->GetWord(offset), registry->GetWord(offset + 4));
    return entries;
}

/// Writes an entry behind the others, as a process that keeps to no rules.
inline void AddEntry(RawSegment& registry, long processID, long registrationID) {
    const long end = static_cast<long>(registry.GetWord(12));
    registry.SetWord(end + 4, static_cast<std::uint32_t>(processID));
    registry.SetWord(end + 8, static_cast<std::uint32_t>(registrationID));
    registry.SetWord(12, static_cast<std::uint32_t>(end + 8));
}

/// Notes what it is handed, and then does what a test wants of it.
struct NotingReceiver : GIPCReceiver {
    explicit NotingReceiver(GIPCManager* manager, long type = 0) : GIPCReceiver(manager) {
        if (type != 0) Register(type);
    }
    void HandleIPCMessage(const GIPCMessage& message) override {
        mLog.push_back(Describe(message));
        const std::function<void()> reaction = mReaction;  // which may replace itself
        if (reaction) reaction();
    }
    Log TakeLog() { return std::exchange(mLog, {}); }

    std::function<void()> mReaction;
    Log mLog;
};

/// A process with a manager, which `arguments` make.
template <class Manager>
struct Process {
    template <class... Arguments>
    Process(IPCWorld& world, long processID, long session, Arguments... arguments)
        : mWorld(world), mID(processID), mSession(session), mManager(Make(arguments...)) {}
    ~Process() { Act(); }
    void Act() { mWorld.ActAs(mID, mSession); }
    template <class... Arguments>
    std::unique_ptr<Manager> Make(Arguments... arguments) {
        Act();
        return std::make_unique<Manager>(arguments...);
    }
    /// The queue under that path, or null.
    std::unique_ptr<RawSegment> OpenQueue(const char* path = "Session\\1\\") const {
        return RawSegment::Open(path, QueueName(mID, mManager->GetRegistrationID()));
    }

    IPCWorld& mWorld;
    long mID, mSession;
    std::unique_ptr<Manager> mManager;
    std::unique_ptr<NotingReceiver> mReceiver;
};

/// One that listens to messages of type 145 from its start on, as a processing application.
template <class Manager>
struct Listener : Process<Manager> {
    template <class... Arguments>
    Listener(IPCWorld& world, long processID, long session, Arguments... arguments)
        : Process<Manager>(world, processID, session, arguments...) {
        this->mReceiver = std::make_unique<NotingReceiver>(this->mManager.get(), 145);
    }
    Log Tick() {
        this->mManager->ForceProcessPendingMessages();
        return this->mReceiver->TakeLog();
    }
};

/// Somebody else who keeps the mutex of an identifier for its own lifetime.
struct MutexHog {
    explicit MutexHog(const GShMemID& identifier)
        : mThread([this, identifier] {
              GIPMutex mutex(identifier, GIPPrefix::cSharedMemoryLock);
              const GIPMutexLocker locker(mutex);
              mHeld.set_value();
              mEnd.get_future().wait();
          }) {
        mHeld.get_future().wait();
    }
    ~MutexHog() { mEnd.set_value(); }

    std::promise<void> mHeld, mEnd;
    std::jthread mThread;
};

/// Replaces the time by which messaging waits for its own lifetime: no time passes but in the sleeps, which
/// are noted, and in which a test's reaction is called with the number of sleeps so far.
struct SleepLog {
    SleepLog() {
        sCurrent = this;
        GIPCClock::Replace([] { return sCurrent->mNow; },
                           [](long milliseconds) {
                               sCurrent->mSleeps.push_back(milliseconds);
                               sCurrent->mNow += static_cast<unsigned long long>(milliseconds);
                               if (sCurrent->mReaction) sCurrent->mReaction(sCurrent->mSleeps.size());
                           });
    }
    ~SleepLog() { GIPCClock::Replace(nullptr, nullptr); }
    unsigned long long GetSlept() const noexcept { return mNow; }

    std::vector<long> mSleeps;
    std::function<void(std::size_t)> mReaction;
    static inline SleepLog* sCurrent = nullptr;
    unsigned long long mNow = 0;
};
