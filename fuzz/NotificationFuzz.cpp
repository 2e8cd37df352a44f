// A whole notification among processes that have put anything into the registries and the queues.
#include <cstring>
#include <vector>

#include "framework/ipc/GIPCClock.h"
#include "fuzz/FuzzInput.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobNotification.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "monitor/handoff/GPPPrinterProcessorLayer.h"
#include "platform/posix/ipc/PMemorySharedMemory.h"
#include "tests/ipc/IPCWorld.h"

namespace {

constexpr long cMonitor = 100;
constexpr std::int32_t cListeners[] = {200, 300};
constexpr const char* cPaths[] = {"Session\\0\\", "Global\\", "Session\\1\\"};
constexpr long cSizes[] = {8208, 32772, 32772, 4096, 24, 11, 3, 65536};

/// No time passes but in the sleeps.
unsigned long long sNow = 0;

/// Mostly a number that is used elsewhere, too, so that things meet.
std::int32_t TakeLikely(FuzzInput& input, std::initializer_list<std::int32_t> likely) {
    const std::uint8_t choice = input.TakeByte();
    return choice < 0xE0 ? *(likely.begin() + choice % likely.size()) : input.TakeNumber();
}

/// A segment that a process has made which keeps to no rules.
class Segment {
public:
    Segment(const char* path, const GBuffer& identifier, long size, FuzzInput& input)
        : mSize(size), mBlock(PMemorySharedMemory::MakeBlock(path, GBuffer("QulShD") + identifier, size)) {
        SetWord(0, TakeLikely(input, {static_cast<std::int32_t>(size)}));
        SetWord(4, TakeLikely(input, {1}));
    }
    void SetWord(long offset, std::int32_t value) {
        if (offset < 0 || offset > mSize - 4) return;
        for (int i = 0; i < 4; ++i)
            mBlock[offset + i] = static_cast<unsigned char>(static_cast<std::uint32_t>(value) >> (8 * i));
    }
    void SetBytes(long offset, const GBuffer& bytes) {
        if (!bytes.IsEmpty() && bytes.GetLength() <= mSize - offset)
            std::memcpy(mBlock.get() + offset, bytes.GetRawData(),
                        static_cast<std::size_t>(bytes.GetLength()));
    }

private:
    long mSize;
    PMemorySharedMemory::Block mBlock;
};

Segment MakeRegistry(const char* path, FuzzInput& input) {
    const std::uint8_t choice = input.TakeByte();
    Segment registry(path, GBuffer("GIPC_PP"), cSizes[choice < 0xF0 ? 0 : choice & 7], input);
    std::int32_t end = 12;
    for (int left = input.TakeByte() % 16; left > 0; --left, end += 8) {
        registry.SetWord(end + 4, TakeLikely(input, {200, 300, -200, 999, 0}));
        registry.SetWord(end + 8, TakeLikely(input, {1, 2, -5, 0, 32768, 32767}));
    }
    registry.SetWord(12, TakeLikely(input, {end, end, 8204, end + 4}));
    return registry;
}

Segment MakeQueue(const char* path, std::int32_t processID, std::int32_t registrationID, FuzzInput& input) {
    Segment queue(path, GIPCMessageQueue::ConvertToMemoryID(processID, registrationID).GetBuffer(),
                  cSizes[input.TakeByte() & 7], input);
    const GBuffer records = input.TakeBytes();
    queue.SetWord(8,
                  TakeLikely(input, {8, static_cast<std::int32_t>(8 + records.GetLength()), 32768, 40000}));
    queue.SetBytes(12, records);
    return queue;
}

bool Notify() {
    static const GPPJobRecord sRecord(GString("anna"), GPathName("C:/a.ps"), GString("Proof"),
                                      GString("QuillonPDFPort:"), 1);
    sNow = 0;
    const bool told = GPPJobNotification().NotifyPrintProcessor(sRecord);
    Require(sNow <= GPPIPCManager::cTakenLimit, "nobody holds a job longer than the limit");
    return told;
}

void MeetAttackers(FuzzInput& input) {
    std::vector<Segment> segments;
    for (const char* path : cPaths) {
        segments.push_back(MakeRegistry(path, input));
        for (const std::int32_t processID : cListeners)
            for (const std::int32_t registrationID : {1, 2})
                if (input.TakeByte() & 1)
                    segments.push_back(MakeQueue(path, processID, registrationID, input));
    }
    Notify();
    GPPJobNotification().RetryDelayed();
    if (GPPIPCManager* manager = GPPIPCManager::GetInstance())
        for (const std::int32_t processID : cListeners) Try([&] { manager->GetListeningState(processID); });
    Notify();
}

class Listener : public GIPCReceiver {
public:
    explicit Listener(GPPIPCManager& manager) : GIPCReceiver(&manager) {
        Register(GPPJobRecord::cMessageType);
    }
    void HandleIPCMessage(const GIPCMessage&) override { ++mJobs; }

    int mJobs = 0;
};

void TellAnHonestListener(IPCWorld& world) {
    world.ActAs(cListeners[0], 0);
    GPPIPCManager manager;
    const Listener listener(manager);
    world.ActAs(cMonitor, 0);
    Require(Notify(), "who listens is told");
    manager.ForceProcessPendingMessages();
    Require(listener.mJobs == 1, "and told once");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    GIPCClock::Replace([] { return sNow; },
                       [](long milliseconds) { sNow += static_cast<unsigned long long>(milliseconds); });
    FuzzInput input(bytes, count);
    IPCWorld world;
    for (const std::int32_t processID : cListeners) world.ActAs(processID, 1);
    world.ActAs(cMonitor, 0);
    // Whatever is thrown here but want of memory would end a spooler.
    MeetAttackers(input);
    GPPPrinterProcessorLayer::Finalize();
    TellAnHonestListener(world);
    GPPPrinterProcessorLayer::Finalize();
    return 0;
}
