#pragma once

#include <array>
#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/ipc/GIPCQueueAddress.h"
#include "framework/ipc/GSharedMemory.h"

/// GIPCRegistryEntries: a copy of the entries in a registry's segment. Nothing in it changes while it is
/// looked at.
///
/// Any process can write anything into a registry. So an entry counts only when its process ID is positive
/// and its registration ID is 1 to 32767, and it counts once, however often it stands there.
class QUILLON_EXPORT GIPCRegistryEntries {
public:
    static constexpr long cMaxCount = 1024;  ///< entries in a new registry
    /// The highest number that a registration gets.
    static constexpr std::int32_t cMaxRegistrationID = 32767;

    /// One registration of one process.
    struct Entry {
        std::int32_t mProcessID;       ///< positive in one that counts
        std::int32_t mRegistrationID;  ///< 1 to cMaxRegistrationID in one that counts

        bool operator==(const Entry&) const = default;
        /// Whether the numbers can be those of a registration.
        bool Counts() const noexcept {
            return mProcessID > 0 && mRegistrationID > 0 && mRegistrationID <= cMaxRegistrationID;
        }
    };

    /// Prepares the header of a new registry, or checks that of an existing one: throws
    /// GExceptionID::cUnknownIPCVersion. The segment is locked.
    static void CheckOrWriteHeader(GSharedMemory& registry, bool created);
    /// Makes a registry an empty one. Its seed stays, so that no ID comes twice.
    static void RemoveAll(GSharedMemory& registry);
    /// The number of usable bytes that a registry of so many entries needs.
    static constexpr long GetLength(long count) noexcept { return cFirstEntry + count * cEntrySize; }
    /// Adds 1 to the seed for new registration IDs and returns it.
    static std::uint32_t CountUpSeed(GSharedMemory& registry);

    /// Throws GExceptionID::cNotEnoughData or cSharedMemoryReadFailed when the segment makes no sense.
    explicit GIPCRegistryEntries(GSharedMemory& registry);

    /// @name All entries, whether they count or not.
    /// @{
    long GetCount() const noexcept { return mCount; }             ///< entries in the copy
    bool IsFull() const noexcept { return mCount >= mCapacity; }  ///< whether no entry fits any more
    /// More than three quarters are taken.
    bool IsCrowded() const noexcept { return mCount > mCapacity / 4 * 3; }
    /// Whether any process has that number.
    bool HasRegistrationID(std::int32_t registrationID) const noexcept;
    /// The first position of an entry, or -1.
    long Find(const Entry& entry) const noexcept;
    /// @}

    /// Appends the queues of the entries that count, in their order.
    void CollectQueues(long session, GTable<GIPCQueueAddress>& queues) const;

    /// @name Changes of the copy; Write brings them into the segment.
    /// @{

    /// There must be room.
    void Append(const Entry& entry) noexcept { mEntries[static_cast<std::size_t>(mCount++)] = entry; }
    /// The last entry takes the place of the one removed.
    void Remove(long position) noexcept {
        mEntries[static_cast<std::size_t>(position)] = mEntries[static_cast<std::size_t>(--mCount)];
    }
    /// Keeps what keep(entry) holds for, in its order.
    template <class Keep>
    void KeepIf(Keep keep) {
        long kept = 0;
        for (const Entry& entry : *this)
            if (keep(entry)) mEntries[static_cast<std::size_t>(kept++)] = entry;
        mCount = kept;
    }
    /// Keeps those that count, each once.
    void KeepWhatCounts();
    /// Writes the entries from this position on, and then their number.
    void Write(GSharedMemory& registry, long position) const;
    /// @}

    ///@{ All entries, whether they count or not; valid until the copy changes.
    const Entry* begin() const noexcept { return mEntries.data(); }
    const Entry* end() const noexcept { return mEntries.data() + mCount; }
    ///@}

private:
    static constexpr long cFirstEntry = 12;  // its offset in the segment
    static constexpr long cEntrySize = 8;

    std::array<Entry, cMaxCount> mEntries{};
    long mCount = 0;
    long mCapacity = 0;
};
