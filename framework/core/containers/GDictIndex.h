#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

/// GDictIndex: leads a dictionary's look-ups straight to the entries of a home slot; a view of the
/// memory around its slots.
///
/// The slots alone would do: the entries of a home lie somewhere from it on, as many as it counts.
/// The index saves the probing. It knows one entry of each home, and of each entry its hash and the
/// next one of the same home, so that a look-up computes no hash but its own and compares only keys
/// whose hashes agree.
///
/// What comes first in a look-up lies before the slots and is found from their address alone: directly
/// before them their header, before that, backwards, the first entry of each home. Hashes and
/// successors follow behind the slots.
class GDictIndex {
public:
    static constexpr std::int32_t cEnd = -1;  ///< the end of a chain

    /// The bytes that the index takes before the slots, a multiple of 8, and behind them.
    static constexpr std::size_t GetFrontSize(std::int32_t slotCount) noexcept {
        const auto pairs = (static_cast<std::size_t>(slotCount) + 1) / 2;
        return sizeof(Header) + pairs * 2 * sizeof(std::int32_t);
    }
    static constexpr std::size_t GetBackSize(std::int32_t slotCount) noexcept {
        return static_cast<std::size_t>(slotCount) * sizeof(Link);
    }

    /// Makes the index of free slots from `slots` to `end`.
    static void Create(void* slots, void* end, std::int32_t slotCount) noexcept {
        // The reciprocal of the number of slots, rounded up.
        const std::uint64_t reciprocal = UINT64_MAX / static_cast<std::uint32_t>(slotCount) + 1;
        ::new (static_cast<void*>(static_cast<Header*>(slots) - 1))
            Header{static_cast<Link*>(end), reciprocal};
        GDictIndex(slots).Clear(slotCount);
    }

    explicit GDictIndex(void* slots) noexcept
        : mHeader(static_cast<const Header*>(slots) - 1),
          mFirst(static_cast<std::int32_t*>(slots) - cHeaderWords - 1),
          mLinks(mHeader->links) {}

    /// hash % slotCount without a division: the fraction of hash / slotCount, times slotCount. With 64
    /// bits behind the point that is exact for all numbers of 32 bits.
    std::uint32_t GetHome(std::uint32_t hash, std::int32_t slotCount) const noexcept {
        __extension__ using Wide = unsigned __int128;
        const std::uint64_t fraction = mHeader->reciprocal * hash;
        return static_cast<std::uint32_t>(Wide{fraction} * static_cast<std::uint32_t>(slotCount) >> 64);
    }
    /// An entry of a home, or cEnd; with GetNext() all of them.
    std::int32_t GetFirst(std::uint32_t home) const noexcept { return First(home); }
    std::int32_t GetNext(std::int32_t slot) const noexcept { return mLinks[slot].next; }
    std::uint32_t GetHash(std::int32_t slot) const noexcept { return mLinks[slot].hash; }

    /// The first free slot at or behind a home, with wrap-around; there must be one.
    std::int32_t FindFree(std::uint32_t home, std::int32_t slotCount) const noexcept {
        auto slot = static_cast<std::int32_t>(home);
        while (mLinks[slot].next != cFree) slot = slot + 1 == slotCount ? 0 : slot + 1;
        return slot;
    }
    void Add(std::int32_t slot, std::uint32_t hash, std::uint32_t home) noexcept {
        mLinks[slot] = {hash, First(home)};
        First(home) = slot;
    }
    void Remove(std::int32_t slot, std::uint32_t home) noexcept {
        std::int32_t* link = &First(home);
        while (*link != slot) link = &mLinks[*link].next;
        *link = mLinks[slot].next;
        mLinks[slot].next = cFree;
    }
    /// All slots are free.
    void Clear(std::int32_t slotCount) noexcept {
        for (std::int32_t slot = 0; slot < slotCount; ++slot) {
            First(static_cast<std::uint32_t>(slot)) = cEnd;
            mLinks[slot] = {0, cFree};
        }
    }

private:
    static constexpr std::int32_t cFree = -2;  // the successor of no entry: the slot is free

    struct Link {
        std::uint32_t hash;
        std::int32_t next;
    };
    struct Header {
        Link* links;
        std::uint64_t reciprocal;
    };
    static constexpr std::ptrdiff_t cHeaderWords = sizeof(Header) / sizeof(std::int32_t);

    std::int32_t& First(std::uint32_t home) const noexcept {
        return mFirst[-static_cast<std::ptrdiff_t>(home)];
    }

    const Header* mHeader;
    std::int32_t* mFirst;  // by home, backwards
    Link* mLinks;          // by the slot in which an entry lies
};
