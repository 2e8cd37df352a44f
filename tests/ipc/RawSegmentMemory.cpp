#include "platform/posix/ipc/PMemorySharedMemory.h"
#include "tests/ipc/RawSegment.h"

std::unique_ptr<RawSegment> RawSegment::Open(const std::string& path, const std::string& name) {
    long size = 0;
    const auto block = PMemorySharedMemory::FindBlock(path.c_str(), name.c_str(), size);
    return block ? std::make_unique<RawSegment>(block, block.get(), size) : nullptr;
}

std::unique_ptr<RawSegment> RawSegment::Make(const std::string& path, const std::string& name, long size) {
    const auto block = PMemorySharedMemory::MakeBlock(path.c_str(), name.c_str(), size);
    return std::make_unique<RawSegment>(block, block.get(), size);
}
