// A message queue whose segment another process has filled with anything.
#include <algorithm>
#include <cstring>

#include "framework/ipc/GIPCMessageQueue.h"
#include "fuzz/FuzzInput.h"
#include "platform/posix/ipc/PMemorySharedMemory.h"

namespace {

constexpr long cSession = 1;
constexpr long cProcess = 4711;
constexpr long cRegistration = 7;

PMemorySharedMemory::Block FindQueue(long& size) {
    const GBuffer name =
        GBuffer("QulShD") + GIPCMessageQueue::ConvertToMemoryID(cProcess, cRegistration).GetBuffer();
    return PMemorySharedMemory::FindBlock(GIPCMessageQueue::GetMemoryPath(cSession), name, size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    bool created = false;
    GIPCMessageQueue queue(cSession, cProcess, cRegistration, created);
    long size = 0;
    const PMemorySharedMemory::Block block = FindQueue(size);
    Require(block != nullptr, "the queue is found by its name");
    std::memcpy(block.get(), bytes, std::min(count, static_cast<std::size_t>(size)));

    const GBuffer data("payload");
    GTable<GSmartPtr<GIPCMessage>> messages;
    Try([] { GIPCMessageQueue(cSession, cProcess, cRegistration); });
    Try([&] { queue.ContainsRawMessage(145, data); });
    Try([&] { queue.TryToAddRawMessageOnce(145, data); });
    Try([&] { queue.ReadPendingMessages(messages); });

    queue.Reset();
    messages.Clear();
    Require(queue.TryToAddRawMessage(145, data), "an emptied queue takes a message");
    queue.ReadPendingMessages(messages);
    Require(messages.GetCount() == 1 && messages[0]->GetData() == data, "and hands it out");
    return 0;
}
