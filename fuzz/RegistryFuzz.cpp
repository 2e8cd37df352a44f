// A registry of listeners whose segment another process has filled with anything.
#include <algorithm>
#include <cstring>

#include "framework/ipc/GIPCMessageQueueMgr.h"
#include "fuzz/FuzzInput.h"
#include "platform/posix/ipc/PMemorySharedMemory.h"

namespace {

PMemorySharedMemory::Block FindRegistry(long& size) {
    const GBuffer name =
        GBuffer("QulShD") + GIPCMessageQueueMgr::GetRegistryID(GIPCMessageQueueMgr::cNormal).GetBuffer();
    return PMemorySharedMemory::FindBlock(GIPCMessageQueueMgr::GetMemoryPath(), name, size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    GIPCMessageQueueMgr registry;
    long size = 0;
    const PMemorySharedMemory::Block block = FindRegistry(size);
    Require(block != nullptr, "the registry is found by its name");
    std::memcpy(block.get(), bytes, std::min(count, static_cast<std::size_t>(size)));

    GTable<GIPCQueueAddress> queues;
    GTable<std::int32_t> registrations;
    long session = 0;
    Try([] { GIPCMessageQueueMgr another; });
    Try([&] { registry.GetRegistered(queues); });
    Try([&] { registry.GetRegistered(4711, session, registrations); });
    Try([&] { registry.IsRegistered(4711); });
    Try([&] {
        const long registration = registry.Register(4711);
        Require(registration >= 1 && registration <= 32767, "a registration has a number from 1 to 32767");
        Require(registry.IsRegistered(4711), "a registered process is found");
        registry.Unregister(4711, registration);
    });
    Try([&] { registry.Unregister(4711); });
    return 0;
}
