#include "framework/ipc/GIPCRegistryEntries.h"

#include <algorithm>
#include <ctime>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/ipc/GShMemWord.h"

namespace {

constexpr long cVersion = 1;
constexpr long cVersionOffset = 0;
constexpr long cSeedOffset = 4;
constexpr long cEndOffset = 8;  // where the end offset stands

long GetRunTime() {
    return static_cast<long>(static_cast<long long>(std::clock()) * 1000 / CLOCKS_PER_SEC);
}

}  // namespace

void GIPCRegistryEntries::CheckOrWriteHeader(GSharedMemory& registry, bool created) {
    registry.SetCursor(cVersionOffset);
    if (created) {
        registry.WriteInt32(cVersion);
        registry.WriteInt32(GetRunTime());
        registry.WriteInt32(cFirstEntry);
    } else if (registry.ReadInt32() != cVersion) {
        throw GSimpleException(GExceptionID::cUnknownIPCVersion);
    }
}

void GIPCRegistryEntries::RemoveAll(GSharedMemory& registry) {
    registry.SetCursor(cEndOffset);
    registry.WriteInt32(cFirstEntry);
}

std::uint32_t GIPCRegistryEntries::CountUpSeed(GSharedMemory& registry) {
    registry.SetCursor(cSeedOffset);
    const std::uint32_t seed = static_cast<std::uint32_t>(registry.ReadInt32()) + 1;
    registry.SetCursor(cSeedOffset);
    registry.WriteInt32(static_cast<std::int32_t>(seed));
    return seed;
}

GIPCRegistryEntries::GIPCRegistryEntries(GSharedMemory& registry) {
    GSharedMemoryLocker locker(registry);
    mCapacity = std::min((registry.GetLength() - cFirstEntry) / cEntrySize, cMaxCount);
    registry.SetCursor(cEndOffset);
    const long end = registry.ReadInt32();
    if (end < cFirstEntry || end > GetLength(mCapacity) || (end - cFirstEntry) % cEntrySize != 0)
        throw GSimpleException(GExceptionID::cNotEnoughData);
    std::array<unsigned char, cMaxCount * cEntrySize> bytes;
    registry.ReadBytes(bytes.data(), end - cFirstEntry);
    for (const unsigned char* entry = bytes.data(); GetLength(mCount) < end; entry += cEntrySize)
        Append({GShMemWord::Get(entry), GShMemWord::Get(entry + GShMemWord::cSize)});
}

void GIPCRegistryEntries::Write(GSharedMemory& registry, long position) const {
    std::array<unsigned char, cMaxCount * cEntrySize> bytes;
    unsigned char* next = bytes.data();
    for (const Entry* entry = begin() + position; entry < end(); ++entry, next += cEntrySize) {
        GShMemWord::Put(next, entry->mProcessID);
        GShMemWord::Put(next + GShMemWord::cSize, entry->mRegistrationID);
    }
    registry.SetCursor(GetLength(position));
    registry.WriteBytes(bytes.data(), static_cast<long>(next - bytes.data()));
    registry.SetCursor(cEndOffset);
    registry.WriteInt32(GetLength(mCount));
}

bool GIPCRegistryEntries::HasRegistrationID(std::int32_t registrationID) const noexcept {
    return std::any_of(begin(), end(),
                       [=](const Entry& entry) { return entry.mRegistrationID == registrationID; });
}

long GIPCRegistryEntries::Find(const Entry& entry) const noexcept {
    const Entry* const found = std::find(begin(), end(), entry);
    return found == end() ? -1 : static_cast<long>(found - begin());
}

void GIPCRegistryEntries::KeepWhatCounts() {
    long position = -1;
    KeepIf([&](const Entry& entry) {
        ++position;
        return entry.Counts() && Find(entry) == position;
    });
}

void GIPCRegistryEntries::CollectQueues(long session, GTable<GIPCQueueAddress>& queues) const {
    GIPCRegistryEntries counting(*this);
    counting.KeepWhatCounts();
    for (const Entry& entry : counting)
        queues.Append({static_cast<std::int32_t>(session), entry.mProcessID, entry.mRegistrationID});
}
