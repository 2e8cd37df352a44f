#pragma once

#include <gmock/gmock.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "framework/ipc/GIPCClock.h"
#include "framework/ipc/GIPCManager.h"
#include "framework/ipc/GIPMutex.h"
#include "tests/ipc/IPCWorld.h"

using Log = std::vector<std::string>;

/// Notes what it is handed, as "sender:type:payload" (a long one as "20000 x A"), and then does what a test
/// wants of it.
class NotingReceiver : public GIPCReceiver {
public:
    explicit NotingReceiver(GIPCManager* manager, long type = 0) : GIPCReceiver(manager) {
        if (type != 0) Register(type);
    }
    void HandleIPCMessage(const GIPCMessage& message) override {
        mLog.push_back(std::to_string(message.GetSenderProcessID()) + ":" +
                       std::to_string(message.GetType()) + ":" + Describe(message.GetData()));
        const std::function<void()> reaction = mReaction;  // which may replace itself
        if (reaction) reaction();
    }
    Log TakeLog() { return std::exchange(mLog, {}); }

    std::function<void()> mReaction;

private:
    static std::string Describe(const GBuffer& data) {
        const std::string text = Text(data);
        return text.size() < 100 ? text : std::to_string(text.size()) + " x " + text[0];
    }

    Log mLog;
};

/// Somebody else who keeps the mutex of an identifier for its own lifetime.
class MutexHog {
public:
    explicit MutexHog(const GShMemID& identifier) {
        mThread = std::thread([this, identifier] { Hold(identifier); });
        std::unique_lock<std::mutex> lock(mGuard);
        mChanged.wait(lock, [this] { return mHeld; });
    }
    ~MutexHog() {
        {
            const std::lock_guard<std::mutex> lock(mGuard);
            mEnd = true;
        }
        mChanged.notify_all();
        mThread.join();
    }

private:
    void Hold(const GShMemID& identifier) {
        GIPMutex mutex(identifier, GIPPrefix::cSharedMemoryLock);
        const GIPMutexLocker locker(mutex);
        std::unique_lock<std::mutex> lock(mGuard);
        mHeld = true;
        mChanged.notify_all();
        mChanged.wait(lock, [this] { return mEnd; });
    }

    std::mutex mGuard;
    std::condition_variable mChanged;
    bool mHeld = false;
    bool mEnd = false;
    std::thread mThread;
};

/// Replaces the time by which messaging waits for its own lifetime: no time passes but in the sleeps, which
/// are noted, and in which a test's reaction is called with the number of sleeps so far.
class SleepLog {
public:
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

private:
    static inline SleepLog* sCurrent = nullptr;
    unsigned long long mNow = 0;
};

inline std::string Filler(long length, char byte = 'f') {
    return std::string(static_cast<std::size_t>(length), byte);
}
