#include "platform/posix/ipc/PMemorySharedMemory.h"
#include "tests/ipc/RawSegment.h"

namespace {

class MemorySegment : public RawSegment {
public:
    MemorySegment(PMemorySharedMemory::Block block, long size) : mBlock(std::move(block)) {
        mBytes = mBlock.get();
        mSize = size;
    }

private:
    PMemorySharedMemory::Block mBlock;
};

}  // namespace

std::unique_ptr<RawSegment> RawSegment::Open(const std::string& path, const std::string& name) {
    long size = 0;
    auto block = PMemorySharedMemory::FindBlock(path.c_str(), name.c_str(), size);
    if (!block) return nullptr;
    return std::make_unique<MemorySegment>(std::move(block), size);
}

std::unique_ptr<RawSegment> RawSegment::Make(const std::string& path, const std::string& name, long size) {
    return std::make_unique<MemorySegment>(PMemorySharedMemory::MakeBlock(path.c_str(), name.c_str(), size),
                                           size);
}
