#pragma once

// The bodies of GDict's longer members; included by GDict.h, which is the header to include.

template <class K, class V>
template <class EntryType>
class GDict<K, V>::SlotIterator {
public:
    SlotIterator(EntryType* slot, EntryType* end) noexcept : mSlot(slot), mEnd(end) { SkipFree(); }
    EntryType& operator*() const noexcept { return *mSlot; }
    EntryType* operator->() const noexcept { return mSlot; }
    SlotIterator& operator++() noexcept {
        ++mSlot;
        SkipFree();
        return *this;
    }
    bool operator==(const SlotIterator& other) const noexcept { return mSlot == other.mSlot; }

private:
    void SkipFree() noexcept {
        while (mSlot != mEnd && !GDict::IsOccupied(*mSlot)) ++mSlot;
    }

    EntryType* mSlot;
    EntryType* mEnd;
};

template <class K, class V>
GDict<K, V>::GDict(const GDict& other) : mSlotCount(other.mSlotCount) {
    if (other.mCount > 0) CopyEntries(other);
}

template <class K, class V>
GDict<K, V>::GDict(GDict&& other) noexcept
    : mSlots(std::exchange(other.mSlots, nullptr)),
      mSlotCount(std::exchange(other.mSlotCount, GDictUtil::cFirstAllocation)),
      mCount(std::exchange(other.mCount, 0)) {
    GDictCursor::ResetAll(other.mCursors);
}

template <class K, class V>
GDict<K, V>& GDict<K, V>::operator=(const GDict& other) {
    if (this != &other) *this = GDict(other);
    return *this;
}

template <class K, class V>
GDict<K, V>& GDict<K, V>::operator=(GDict&& other) noexcept {
    if (this == &other) return *this;
    GDict taken(std::move(other));
    std::swap(mSlots, taken.mSlots);
    std::swap(mSlotCount, taken.mSlotCount);
    std::swap(mCount, taken.mCount);
    GDictCursor::ResetAll(mCursors);
    return *this;
}

template <class K, class V>
GDict<K, V>::~GDict() {
    DestroyEntries();
    FreeBlock(mSlots, mSlotCount);
    GDictCursor::DictGone(mCursors);
}

template <class K, class V>
const V* GDict<K, V>::Find(const K& key) const {
    const long slot = FindSlot(key, GDictHash(key));
    return slot < 0 ? nullptr : &mSlots[slot].mValue;
}

template <class K, class V>
bool GDict<K, V>::Insert(const K& key, const V& value) {
    const long countBefore = mCount;
    Set(key, value);
    return mCount != countBefore;
}

template <class K, class V>
V& GDict<K, V>::Set(const K& key, const V& value) {
    const std::uint32_t hash = GDictHash(key);
    const long slot = FindSlot(key, hash);
    if (slot < 0) return InsertNew(key, hash, [&value](void* place) { ::new (place) V(value); });
    mSlots[slot].mValue = value;
    return mSlots[slot].mValue;
}

template <class K, class V>
V& GDict<K, V>::GetOrInsert(const K& key) {
    const std::uint32_t hash = GDictHash(key);
    const long slot = FindSlot(key, hash);
    if (slot < 0) return InsertNew(key, hash, [](void* place) { ::new (place) V(); });
    return mSlots[slot].mValue;
}

template <class K, class V>
bool GDict<K, V>::Remove(const K& key) {
    const long slot = FindSlot(key, GDictHash(key));
    if (slot < 0) return false;
    Vacate(static_cast<std::int32_t>(slot));
    mSlots[slot].mKey.~K();
    mSlots[slot].mValue.~V();
    return true;
}

template <class K, class V>
void GDict<K, V>::Clear() noexcept {
    if (mCount == 0) return;
    DestroyEntries();
    for (std::int32_t slot = 0; slot < mSlotCount; ++slot) {
        mSlots[slot].mOccupied = 0;
        mSlots[slot].mHomeCount = 0;
        Tags()[slot].home = cFree;
    }
    mCount = 0;
    GDictCursor::AllRemoved(mCursors);
}

template <class K, class V>
void GDict<K, V>::Swap(GDict& other) noexcept {
    std::swap(mSlots, other.mSlots);
    std::swap(mSlotCount, other.mSlotCount);
    std::swap(mCount, other.mCount);
    GDictCursor::SwapChains(this, mCursors, &other, other.mCursors);
}

template <class K, class V>
bool GDict<K, V>::operator==(const GDict& other) const {
    if (mCount != other.mCount) return false;
    for (const Entry& entry : *this) {
        const V* const value = other.Find(entry.GetKey());
        if (value == nullptr || !(*value == entry.GetValue())) return false;
    }
    return true;
}

// --- The block: slots, then tags ---------------------------------------------------------------

template <class K, class V>
bool GDict<K, V>::IsOccupied(const Entry& entry) noexcept {
    return entry.mOccupied != 0;
}

template <class K, class V>
typename GDict<K, V>::Tag* GDict<K, V>::TagsOf(Entry* slots, std::int32_t slotCount) noexcept {
    return reinterpret_cast<Tag*>(slots + slotCount);
}

template <class K, class V>
std::uint32_t GDict<K, V>::HomeOf(std::uint32_t hash) const noexcept {
    return hash % static_cast<std::uint32_t>(mSlotCount);
}

template <class K, class V>
std::size_t GDict<K, V>::BlockSize(std::int32_t slotCount) noexcept {
    return static_cast<std::size_t>(slotCount) * (sizeof(Entry) + sizeof(Tag));
}

template <class K, class V>
typename GDict<K, V>::Entry* GDict<K, V>::NewBlock(std::int32_t slotCount) {
    Entry* const slots = static_cast<Entry*>(GAllocator::GetInstance().Allocate(BlockSize(slotCount)));
    for (std::int32_t slot = 0; slot < slotCount; ++slot) ::new (static_cast<void*>(slots + slot)) Entry();
    Tag* const tags = TagsOf(slots, slotCount);
    for (std::int32_t slot = 0; slot < slotCount; ++slot)
        ::new (static_cast<void*>(tags + slot)) Tag{0, cFree};
    return slots;
}

template <class K, class V>
void GDict<K, V>::FreeBlock(Entry* slots, std::int32_t slotCount) noexcept {
    if (slots != nullptr) GAllocator::GetInstance().Free(slots, BlockSize(slotCount));
}

template <class K, class V>
void GDict<K, V>::DestroyEntries() noexcept {
    for (Entry& entry : *this) {
        entry.mKey.~K();
        entry.mValue.~V();
    }
}

template <class K, class V>
void GDict<K, V>::CopyEntries(const GDict& other) {
    // Filled apart, so that what a throwing copy leaves behind is cleaned up by its destructor.
    GDict copy;
    copy.mSlotCount = mSlotCount;
    copy.mSlots = NewBlock(mSlotCount);
    for (std::int32_t slot = 0; slot < mSlotCount; ++slot) {
        const Entry& source = other.mSlots[slot];
        if (!IsOccupied(source)) continue;
        Entry& target = copy.mSlots[slot];
        ::new (static_cast<void*>(&target.mKey)) K(source.mKey);
        try {
            ::new (static_cast<void*>(&target.mValue)) V(source.mValue);
        } catch (...) {
            target.mKey.~K();
            throw;
        }
        copy.Occupy(slot, other.Tags()[slot].hash);
    }
    std::swap(mSlots, copy.mSlots);
    std::swap(mCount, copy.mCount);
}

// --- Probing -----------------------------------------------------------------------------------

template <class K, class V>
long GDict<K, V>::FindSlot(const K& key, std::uint32_t hash) const {
    if (mCount == 0) return -1;
    const std::uint32_t slotCount = static_cast<std::uint32_t>(mSlotCount);
    const std::uint32_t home = HomeOf(hash);
    if constexpr (std::is_scalar_v<K>) {
        // Such keys cost nothing to compare: most are found without a look at the tags.
        if (mSlots[home].mOccupied && mSlots[home].mKey == key) return static_cast<long>(home);
    }
    std::uint32_t unseen = mSlots[home].mHomeCount;
    const Tag* const tags = Tags();
    for (std::uint32_t slot = home; unseen > 0; slot = slot + 1 == slotCount ? 0 : slot + 1) {
        if (tags[slot].home != home) continue;
        if (tags[slot].hash == hash && mSlots[slot].mKey == key) return static_cast<long>(slot);
        --unseen;
    }
    return -1;
}

template <class K, class V>
std::int32_t GDict<K, V>::FreeSlotFrom(std::uint32_t home, const Tag* tags, std::int32_t slotCount) noexcept {
    std::int32_t slot = static_cast<std::int32_t>(home);
    while (tags[slot].home != cFree) slot = slot + 1 == slotCount ? 0 : slot + 1;
    return slot;
}

template <class K, class V>
template <class MakeValue>
V& GDict<K, V>::InsertNew(const K& key, std::uint32_t hash, MakeValue makeValue) {
    if (mSlots == nullptr) mSlots = NewBlock(mSlotCount);
    std::int32_t slot = FreeSlotFrom(HomeOf(hash), Tags(), mSlotCount);
    Entry& entry = mSlots[slot];
    ::new (static_cast<void*>(&entry.mKey)) K(key);
    try {
        makeValue(static_cast<void*>(&entry.mValue));
    } catch (...) {
        entry.mKey.~K();
        throw;
    }
    Occupy(slot, hash);
    if (mCount < static_cast<long long>(mSlotCount) * 3 / 4) return entry.mValue;
    try {
        slot = Rehash(slot);
    } catch (...) {
        Vacate(slot);
        entry.mKey.~K();
        entry.mValue.~V();
        throw;
    }
    return mSlots[slot].mValue;
}

template <class K, class V>
void GDict<K, V>::Occupy(std::int32_t slot, std::uint32_t hash) noexcept {
    const std::uint32_t home = HomeOf(hash);
    ++mSlots[home].mHomeCount;
    mSlots[slot].mOccupied = 1;
    Tags()[slot] = {hash, home};
    ++mCount;
}

// The key and the value are still alive afterwards, but no longer the dictionary's.
template <class K, class V>
void GDict<K, V>::Vacate(std::int32_t slot) noexcept {
    Tag& tag = Tags()[slot];
    --mSlots[tag.home].mHomeCount;
    mSlots[slot].mOccupied = 0;
    tag.home = cFree;
    --mCount;
    if (mCursors != nullptr) GDictCursor::EntryRemoved(mCursors, slot);
}

// Returns the new slot of the entry in `followedSlot`. Nothing changes when it throws.
template <class K, class V>
std::int32_t GDict<K, V>::Rehash(std::int32_t followedSlot) {
    const std::int32_t slotCount = static_cast<std::int32_t>(GDictUtil::GetAllocation(2L * mSlotCount));
    GTable<std::int32_t> newSlots;
    newSlots.Reserve(mSlotCount);
    GDictCursor::PrepareRehash(mCursors, mCount);
    Entry* const slots = NewBlock(slotCount);
    MoveEntries(slots, slotCount, newSlots);
    GDictCursor::Rehashed(mCursors, newSlots);
    return newSlots[followedSlot];
}

template <class K, class V>
void GDict<K, V>::MoveEntries(Entry* slots, std::int32_t slotCount, GTable<std::int32_t>& newSlots) noexcept {
    Tag* const tags = TagsOf(slots, slotCount);
    for (std::int32_t old = 0; old < mSlotCount; ++old) {
        if (!IsOccupied(mSlots[old])) {
            newSlots.Append(-1);
            continue;
        }
        const std::uint32_t hash = Tags()[old].hash;
        const std::uint32_t home = hash % static_cast<std::uint32_t>(slotCount);
        const std::int32_t slot = FreeSlotFrom(home, tags, slotCount);
        std::memcpy(static_cast<void*>(&slots[slot].mKey), static_cast<const void*>(&mSlots[old].mKey),
                    sizeof(K));
        std::memcpy(static_cast<void*>(&slots[slot].mValue), static_cast<const void*>(&mSlots[old].mValue),
                    sizeof(V));
        slots[slot].mOccupied = 1;
        ++slots[home].mHomeCount;
        tags[slot] = {hash, home};
        newSlots.Append(slot);
    }
    FreeBlock(mSlots, mSlotCount);
    mSlots = slots;
    mSlotCount = slotCount;
}

template <class K, class V>
long GDict<K, V>::NextOccupied(long slot) const noexcept {
    if (mSlots == nullptr) return mSlotCount;
    do ++slot;
    while (slot < mSlotCount && !IsOccupied(mSlots[slot]));
    return slot;
}

// --- Iterators ---------------------------------------------------------------------------------

template <class K, class V>
bool GDict<K, V>::MoveOn(GDictCursor& cursor) const noexcept {
    const long slot = cursor.HasList() ? cursor.TakePending() : NextOccupied(cursor.GetPosition());
    if (slot >= 0 && slot < mSlotCount) {
        cursor.StandOn(slot);
        return true;
    }
    cursor.StandPastEnd(mSlotCount);
    return false;
}

template <class K, class V>
DictEntry<K, V>* GDictIterator<K, V>::Next() noexcept {
    return IsValid() && Dict()->MoveOn(*this) ? GetCurrent() : nullptr;
}

template <class K, class V>
const DictEntry<K, V>* GConstDictIterator<K, V>::Next() noexcept {
    return IsValid() && Dict()->MoveOn(*this) ? GetCurrent() : nullptr;
}
