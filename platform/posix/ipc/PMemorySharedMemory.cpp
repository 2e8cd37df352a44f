#include "platform/posix/ipc/PMemorySharedMemory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/text/GString.h"

namespace {

constexpr long cSizeWord = 4;

struct NamedBlock {
    std::weak_ptr<unsigned char[]> mBlock;
    long mSize = 0;
};

struct Table {
    std::mutex mGuard;
    std::map<std::string, NamedBlock> mBlocks;
};

Table& GetTable() {
    static Table sTable;
    return sTable;
}

std::string MakeName(const GBuffer& path, const GBuffer& identifier) {
    return std::string(path.GetPtr(), path.GetLength()) +
           std::string(identifier.GetPtr(), identifier.GetLength());
}

[[noreturn]] void ThrowGeneral(const char* text) {
    throw GCustomException(GExceptionID::cGeneral, GString(text));
}

void PutSize(unsigned char* block, long size) noexcept {
    for (int index = 0; index < 4; ++index)
        block[index] = static_cast<unsigned char>(static_cast<std::uint32_t>(size) >> (8 * index));
}

// The table's guard is held by the caller.
PMemorySharedMemory::Block FindNamed(const std::string& name, long& size) {
    const auto found = GetTable().mBlocks.find(name);
    if (found == GetTable().mBlocks.end()) return nullptr;
    size = found->second.mSize;
    return found->second.mBlock.lock();
}

PMemorySharedMemory::Block AddBlock(const std::string& name, long size) {
    PMemorySharedMemory::Block block(new unsigned char[static_cast<std::size_t>(size)]());
    GetTable().mBlocks[name] = NamedBlock{block, size};
    return block;
}

}  // namespace

PMemorySharedMemory::PMemorySharedMemory(const GBuffer& path, const GBuffer& identifier) {
    const std::lock_guard<std::mutex> lock(GetTable().mGuard);
    mBlock = FindNamed(MakeName(path, identifier), mBlockSize);
    if (!mBlock) ThrowGeneral("There is no such shared memory");
}

PMemorySharedMemory::PMemorySharedMemory(const GBuffer& path, const GBuffer& identifier, long size,
                                         bool& created) {
    const std::lock_guard<std::mutex> lock(GetTable().mGuard);
    const std::string name = MakeName(path, identifier);
    mBlock = FindNamed(name, mBlockSize);
    created = !mBlock;
    if (mBlock) {
        if (mBlockSize < size + cSizeWord || ReadSizeWord() != static_cast<std::uint32_t>(size + cSizeWord))
            throw GSimpleException(GExceptionID::cSharedMemorySizeDiffers);
        return;
    }
    mBlockSize = size + cSizeWord;
    mBlock = AddBlock(name, mBlockSize);
    PutSize(mBlock.get(), mBlockSize);
}

PMemorySharedMemory::~PMemorySharedMemory() = default;

bool PMemorySharedMemory::Exists(const GBuffer& path, const GBuffer& identifier) {
    const std::lock_guard<std::mutex> lock(GetTable().mGuard);
    long size = 0;
    return FindNamed(MakeName(path, identifier), size) != nullptr;
}

long PMemorySharedMemory::GetMaxIDSize() {
    return 260;
}

std::uint32_t PMemorySharedMemory::ReadSizeWord() const noexcept {
    const unsigned char* word = mBlock.get();
    return word[0] | word[1] << 8 | word[2] << 16 | std::uint32_t{word[3]} << 24;
}

long PMemorySharedMemory::GetLength() const {
    if (mBlockSize < cSizeWord) throw GSimpleException(GExceptionID::cSharedMemoryReadFailed);
    const std::uint32_t size = ReadSizeWord();
    if (size < cSizeWord || size > static_cast<std::uint32_t>(mBlockSize))
        throw GSimpleException(GExceptionID::cSharedMemoryReadFailed);
    return static_cast<long>(size) - cSizeWord;
}

void PMemorySharedMemory::SetLength(long size) {
    if (size < 0 || mBlockSize < cSizeWord) throw GSimpleException(GExceptionID::cSharedMemoryReadFailed);
    PutSize(mBlock.get(), std::min(size + cSizeWord, mBlockSize));
}

void PMemorySharedMemory::Read(long offset, void* destination, long count) const noexcept {
    if (count > 0)
        std::memcpy(destination, mBlock.get() + cSizeWord + offset, static_cast<std::size_t>(count));
}

void PMemorySharedMemory::Write(long offset, const void* source, long count) noexcept {
    if (count > 0) std::memcpy(mBlock.get() + cSizeWord + offset, source, static_cast<std::size_t>(count));
}

bool PMemorySharedMemory::Equals(long offset, const void* bytes, long count) const noexcept {
    return count <= 0 ||
           std::memcmp(mBlock.get() + cSizeWord + offset, bytes, static_cast<std::size_t>(count)) == 0;
}

void PMemorySharedMemory::Close() noexcept {
    mBlock.reset();
}

PMemorySharedMemory::Block PMemorySharedMemory::FindBlock(const GBuffer& path, const GBuffer& identifier,
                                                          long& wholeSize) {
    const std::lock_guard<std::mutex> lock(GetTable().mGuard);
    return FindNamed(MakeName(path, identifier), wholeSize);
}

PMemorySharedMemory::Block PMemorySharedMemory::MakeBlock(const GBuffer& path, const GBuffer& identifier,
                                                          long wholeSize) {
    const std::lock_guard<std::mutex> lock(GetTable().mGuard);
    return AddBlock(MakeName(path, identifier), wholeSize);
}
