#include "receiver/JobListener.h"

#include <gmock/gmock.h>

#include <future>
#include <optional>
#include <thread>

#include "framework/ipc/GIPMutex.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "tools/console/Console.h"

namespace {

/// While it exists, another thread holds the lock of the registries.
class HeldLock {
public:
    HeldLock() {
        mThread = std::thread([this] {
            GIPMutex lock(GPPIPCManager::GetRegistryID(GIPCMessageQueueMgr::cNormal),
                          GIPPrefix::cSharedMemoryLock);
            const GIPMutexLocker locker(lock);
            mHeld.set_value();
            mEnd.get_future().wait();
        });
        mHeld.get_future().wait();
    }
    ~HeldLock() {
        mEnd.set_value();
        mThread.join();
    }

private:
    std::promise<void> mHeld;
    std::promise<void> mEnd;
    std::thread mThread;
};

TEST(JobListener, AHeldLockDelaysItsStartAndCannotKeepItFromEnding) {
    std::wstring reported;
    std::optional<JobListener> listener;
    listener.emplace([](const GPPJobRecord&) {}, [&](const std::wstring& line) { reported += line; });
    {
        const HeldLock held;
        listener->Tick();
    }
    EXPECT_THAT(ToUTF8(reported), testing::HasSubstr("Could not lock the mutex"));
    EXPECT_FALSE(listener->IsListening());
    listener->Tick();
    EXPECT_TRUE(listener->IsListening());
    const HeldLock held;
    listener.reset();
}

TEST(JobListener, WaitsUntilAJobHasComeOrAHandleIsSet) {
    long jobs = 0;
    JobListener listener([&](const GPPJobRecord&) { ++jobs; }, [](const std::wstring&) {});
    listener.Tick();
    PWin32ScopedHandle<PWin32KernelHandle> event(::CreateEventW(nullptr, TRUE, TRUE, nullptr));
    listener.Wait(INFINITE, {event.Get()});
    ::ResetEvent(event.Get());
    GPPIPCManager::GetInstance()->SendRaw(static_cast<long>(::GetCurrentProcessId()),
                                          GPPJobRecord::cMessageType, GPPJobRecord().GetMessageData());
    listener.Wait(INFINITE, {event.Get()});
    listener.Tick();
    EXPECT_EQ(jobs, 1);
    listener.Wait(1, {});
}

}  // namespace
