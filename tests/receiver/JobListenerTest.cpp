#include "receiver/JobListener.h"

#include <optional>

#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "tests/WindowsTesting.h"
#include "tests/ipc/IPCTestSupport.h"
#include "tools/console/Console.h"

namespace {

MutexHog HoldRegistries() {
    return MutexHog(GPPIPCManager::GetRegistryID(GIPCMessageQueueMgr::cNormal));
}

TEST(JobListener, AHeldLockDelaysItsStartAndCannotKeepItFromEnding) {
    std::wstring reported;
    std::optional<JobListener> listener;
    listener.emplace([](const GPPJobRecord&) {}, [&](const std::wstring& line) { reported += line; });
    {
        const MutexHog held = HoldRegistries();
        listener->Tick();
    }
    EXPECT_THAT(ToUTF8(reported), testing::HasSubstr("Could not lock the mutex"));
    EXPECT_FALSE(listener->IsListening());
    listener->Tick();
    EXPECT_TRUE(listener->IsListening());
    const MutexHog held = HoldRegistries();
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
