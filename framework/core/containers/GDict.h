#pragma once

/// @file
/// Hash dictionaries, and the hashes of their keys.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "framework/core/containers/GDictCursor.h"
#include "framework/core/containers/GDictIndex.h"
#include "framework/core/containers/GDictUtil.h"
#include "framework/core/memory/GAllocator.h"

template <class K, class V>
class GDictIterator;
template <class K, class V>
class GConstDictIterator;

/// The hash by which GDict files a key: the key's own GetHash(), or for numbers and pointers one that
/// mixes the bits of their value. A key type without GetHash() brings an overload of its own.
template <class K>
requires requires(const K& key) {
    { key.GetHash() } -> std::convertible_to<std::uint32_t>;
}
std::uint32_t GDictHash(const K& key) {
    return static_cast<std::uint32_t>(key.GetHash());
}
/// A number hashes alike in every width.
template <class K>
requires std::integral<K> || std::is_enum_v<K> std::uint32_t GDictHash(K key)
noexcept {
    return GDictUtil::MixBits(static_cast<std::uint64_t>(static_cast<long long>(key)));
}
/// A pointer hashes by its address.
template <class T>
std::uint32_t GDictHash(T* key) noexcept {
    return GDictUtil::MixBits(reinterpret_cast<std::uintptr_t>(key));
}

/// DictEntry: one key and its value in a GDict, handed out by iteration.
template <class K, class V>
class DictEntry {
public:
    DictEntry(const DictEntry&) = delete;
    DictEntry& operator=(const DictEntry&) = delete;

    const K& GetKey() const noexcept { return mKey; }  ///< valid as long as the entry
    ///@{ The value; it may be changed in place through an entry that is not const.
    const V& GetValue() const noexcept { return mValue; }
    V& GetValue() noexcept { return mValue; }
    ///@}

private:
    friend class GDict<K, V>;

    DictEntry() noexcept {}
    ~DictEntry() {}

    // Alive only while the slot is occupied.
    union {
        K mKey;
    };
    union {
        V mValue;
    };
    std::uint32_t mHomeCount : 31 = 0;  // entries whose home slot this is, wherever they lie
    std::uint32_t mOccupied : 1 = 0;
};

/// GDict: a hash dictionary.
///
/// A key's home slot is its hash modulo the number of slots; an entry lies in the first slot that was
/// free from there on, with wrap-around. Each slot counts the entries whose home it is, so that free
/// slots on the way to one do not end a search, and a removal frees its slot without a trace. From
/// three quarters on the slots are doubled (GDictUtil::GetAllocation).
///
/// Around the slots, in the same block, lies their index: a look-up goes by that instead of probing.
///
/// Keys have `==` and a GDictHash; keys and values must bear being moved bitwise, as in a GTable.
/// Iteration is in slot order, which depends on hashes and history. Robust iterators (GDictIterator)
/// are chained to the dictionary and adjusted by every change:
/// - an iterator on an entry stays on it through inserts and rehashes;
/// - when its entry is removed, it goes on with the entry that would have come next;
/// - it meets every entry that is there during its whole walk exactly once, and no removed one; an
///   entry inserted meanwhile is met at most once;
/// - an iterator whose dictionary is gone reports position -1 and yields nothing.
///
/// A call that throws (no memory, or copying failed) leaves the dictionary as it was. A key or value
/// passed in may be one of the dictionary's own. Not locked: one thread at a time.
template <class K, class V>
class GDict {
    static_assert(alignof(DictEntry<K, V>) <= GAllocator::cGranularity, "blocks are aligned to 8 bytes");

    template <class Entry>
    class SlotIterator;

public:
    using Entry = DictEntry<K, V>;  ///< what iteration hands out

    /// 7 slots; they are allocated with the first entry.
    GDict() noexcept;
    /// GDictUtil::GetAllocation(slots) slots.
    explicit GDict(long slots);
    GDict(const GDict& other);  ///< entry for entry in the same slots
    /// Leaves `other` empty; its iterators stay with it, at its start.
    GDict(GDict&& other) noexcept;
    /// Iterators of this dictionary start anew.
    GDict& operator=(const GDict& other);
    /// Takes the entries over and leaves `other` empty; iterators of both start anew.
    GDict& operator=(GDict&& other) noexcept;
    ~GDict();

    long GetCount() const noexcept;      ///< entries
    long GetSlotCount() const noexcept;  ///< slots, free ones included
    bool IsEmpty() const noexcept;       ///< whether it has no entry

    /// The value, valid until the next insert or removal; null when the key is absent.
    const V* Find(const K& key) const;
    /// The same for changing the value in place.
    V* Find(const K& key);
    bool Has(const K& key) const;  ///< whether the key is present

    /// True when the key is new; otherwise replaces its value, keeps the old key and returns false.
    bool Insert(const K& key, const V& value);
    /// Inserts or replaces; the value's place, valid until the next insert or removal.
    V& Set(const K& key, const V& value);
    /// The value of the key, which is inserted with a value V() when absent.
    V& GetOrInsert(const K& key);
    /// False when the key was absent. The key may be the entry's own.
    bool Remove(const K& key);
    /// Removes all entries; keeps the slots.
    void Clear() noexcept;
    /// Exchanges the entries; iterators go with the entries they stand on.
    void Swap(GDict& other) noexcept;

    ///@{ Forward iteration in slot order, for walks that neither insert nor remove.
    SlotIterator<Entry> begin() noexcept;
    SlotIterator<Entry> end() noexcept;
    SlotIterator<const Entry> begin() const noexcept;
    SlotIterator<const Entry> end() const noexcept;
    ///@}

    /// Same keys with equal values, in whatever slots.
    bool operator==(const GDict& other) const;

private:
    friend class GDictIterator<K, V>;
    friend class GConstDictIterator<K, V>;

    static bool IsOccupied(const Entry& entry) noexcept;
    Entry* End() const noexcept { return mSlots == nullptr ? nullptr : mSlots + mSlotCount; }
    GDictIndex Index() const noexcept { return GDictIndex(mSlots); }
    static std::size_t BlockSize(std::int32_t slotCount) noexcept;
    static Entry* NewBlock(std::int32_t slotCount);
    static void FreeBlock(Entry* slots, std::int32_t slotCount) noexcept;

    const V* FindValue(const K& key) const;
    /// Of a dictionary with entries: the slot of the key, or -1.
    long FindSlot(const K& key, std::uint32_t hash) const;
    template <class MakeValue>
    V& InsertNew(const K& key, std::uint32_t hash, MakeValue makeValue);
    void Occupy(std::int32_t slot, std::uint32_t hash) noexcept;
    void Vacate(std::int32_t slot) noexcept;
    std::int32_t Rehash(std::int32_t followedSlot);
    void MoveEntries(Entry* slots, std::int32_t slotCount, GTable<std::int32_t>& newSlots) noexcept;
    void CopyEntries(const GDict& other);
    void DestroyEntries() noexcept;
    long NextOccupied(long slot) const noexcept;
    long FindNext(GDictCursor& cursor) const noexcept;
    bool MoveOn(GDictCursor& cursor) const noexcept;

    Entry* mSlots = nullptr;
    std::int32_t mSlotCount = GDictUtil::cFirstAllocation;
    std::int32_t mCount = 0;
    mutable GDictCursor* mCursors = nullptr;
};

/// GDictIterator: walks a dictionary and stays right while the dictionary changes; see GDict.
///
///     GDictIterator<GBuffer, long> entries(dict);
///     while (auto* entry = entries.Next()) ...
///
/// The dictionary must not be moved to another address while an iterator walks it, but may end before.
template <class K, class V>
class GDictIterator : public GDictCursor {
public:
    /// Stands before the first entry.
    explicit GDictIterator(GDict<K, V>& dict) noexcept : GDictCursor(&dict, dict.mCursors) {}

    /// Moves on and returns the entry there; null past the end or when the dictionary is gone.
    DictEntry<K, V>* Next() noexcept;
    /// The entry the iterator stands on; null between entries or when the dictionary is gone.
    DictEntry<K, V>* GetCurrent() const noexcept {
        return IsOnEntry() ? Dict()->mSlots + GetPosition() : nullptr;
    }

private:
    GDict<K, V>* Dict() const noexcept { return static_cast<GDict<K, V>*>(const_cast<void*>(GetOwner())); }
};

/// GConstDictIterator: the same over a dictionary that the walker does not change itself.
template <class K, class V>
class GConstDictIterator : public GDictCursor {
public:
    /// Stands before the first entry.
    explicit GConstDictIterator(const GDict<K, V>& dict) noexcept : GDictCursor(&dict, dict.mCursors) {}

    /// As GDictIterator::Next().
    const DictEntry<K, V>* Next() noexcept;
    /// As GDictIterator::GetCurrent().
    const DictEntry<K, V>* GetCurrent() const noexcept {
        return IsOnEntry() ? Dict()->mSlots + GetPosition() : nullptr;
    }

private:
    const GDict<K, V>* Dict() const noexcept { return static_cast<const GDict<K, V>*>(GetOwner()); }
};

#include "framework/core/containers/GDictImp.h"
