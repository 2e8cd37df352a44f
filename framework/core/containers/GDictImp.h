#pragma once

// The bodies of GDict's members. Include GDict.h, not this file. No public member is inline, because the
// DLL does not export the inline members of an instance.

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
GDict<K, V>::GDict() noexcept = default;

template <class K, class V>
GDict<K, V>::GDict(long slots) : mSlotCount(static_cast<std::int32_t>(GDictUtil::GetAllocation(slots))) {}

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
long GDict<K, V>::GetCount() const noexcept {
    return mCount;
}

template <class K, class V>
long GDict<K, V>::GetSlotCount() const noexcept {
    return mSlotCount;
}

template <class K, class V>
bool GDict<K, V>::IsEmpty() const noexcept {
    return mCount == 0;
}

template <class K, class V>
const V* GDict<K, V>::Find(const K& key) const {
    return FindValue(key);
}

template <class K, class V>
V* GDict<K, V>::Find(const K& key) {
    return const_cast<V*>(FindValue(key));
}

template <class K, class V>
bool GDict<K, V>::Has(const K& key) const {
    return FindValue(key) != nullptr;
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
    const long slot = mCount == 0 ? -1 : FindSlot(key, hash);
    if (slot < 0) return InsertNew(key, hash, [&value](void* place) { ::new (place) V(value); });
    mSlots[slot].mValue = value;
    return mSlots[slot].mValue;
}

template <class K, class V>
V& GDict<K, V>::GetOrInsert(const K& key) {
    const std::uint32_t hash = GDictHash(key);
    const long slot = mCount == 0 ? -1 : FindSlot(key, hash);
    if (slot < 0) return InsertNew(key, hash, [](void* place) { ::new (place) V(); });
    return mSlots[slot].mValue;
}

template <class K, class V>
bool GDict<K, V>::Remove(const K& key) {
    if (mCount == 0) return false;
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
    }
    Index().Clear(mSlotCount);
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
typename GDict<K, V>::template SlotIterator<DictEntry<K, V>> GDict<K, V>::begin() noexcept {
    return {mSlots, End()};
}

template <class K, class V>
typename GDict<K, V>::template SlotIterator<DictEntry<K, V>> GDict<K, V>::end() noexcept {
    return {End(), End()};
}

template <class K, class V>
typename GDict<K, V>::template SlotIterator<const DictEntry<K, V>> GDict<K, V>::begin() const noexcept {
    return {mSlots, End()};
}

template <class K, class V>
typename GDict<K, V>::template SlotIterator<const DictEntry<K, V>> GDict<K, V>::end() const noexcept {
    return {End(), End()};
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

// --- The block: the slots and their index ------------------------------------------------------

template <class K, class V>
bool GDict<K, V>::IsOccupied(const Entry& entry) noexcept {
    return entry.mOccupied != 0;
}

template <class K, class V>
std::size_t GDict<K, V>::BlockSize(std::int32_t slotCount) noexcept {
    return GDictIndex::GetFrontSize(slotCount) + static_cast<std::size_t>(slotCount) * sizeof(Entry) +
           GDictIndex::GetBackSize(slotCount);
}

template <class K, class V>
typename GDict<K, V>::Entry* GDict<K, V>::NewBlock(std::int32_t slotCount) {
    void* const block = GAllocator::GetInstance().Allocate(BlockSize(slotCount));
    void* const place = static_cast<unsigned char*>(block) + GDictIndex::GetFrontSize(slotCount);
    Entry* const slots = static_cast<Entry*>(place);
    for (std::int32_t slot = 0; slot < slotCount; ++slot) ::new (static_cast<void*>(slots + slot)) Entry();
    GDictIndex::Create(slots, slots + slotCount, slotCount);
    return slots;
}

template <class K, class V>
void GDict<K, V>::FreeBlock(Entry* slots, std::int32_t slotCount) noexcept {
    if (slots == nullptr) return;
    void* const block = reinterpret_cast<unsigned char*>(slots) - GDictIndex::GetFrontSize(slotCount);
    GAllocator::GetInstance().Free(block, BlockSize(slotCount));
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
        copy.Occupy(slot, other.Index().GetHash(slot));
    }
    std::swap(mSlots, copy.mSlots);
    std::swap(mCount, copy.mCount);
}

// --- Looking up --------------------------------------------------------------------------------

template <class K, class V>
inline const V* GDict<K, V>::FindValue(const K& key) const {
    if (mCount == 0) return nullptr;
    const long slot = FindSlot(key, GDictHash(key));
    return slot < 0 ? nullptr : &mSlots[slot].mValue;
}

template <class K, class V>
inline long GDict<K, V>::FindSlot(const K& key, std::uint32_t hash) const {
    const GDictIndex index = Index();
    const std::uint32_t home = index.GetHome(hash, mSlotCount);
    // Most entries lie in their home slot. Where the slots are too many for the nearest cache, that slot
    // is fetched while the index is read.
    constexpr std::int32_t cManySlots = 4096;
    if (mSlotCount > cManySlots) __builtin_prefetch(mSlots + home);
    for (std::int32_t slot = index.GetFirst(home); slot >= 0; slot = index.GetNext(slot)) {
        // Scalars cost no more to compare than their hashes.
        if (!std::is_scalar_v<K> && index.GetHash(slot) != hash) continue;
        if (key == mSlots[slot].mKey) return slot;
    }
    return -1;
}

template <class K, class V>
template <class MakeValue>
V& GDict<K, V>::InsertNew(const K& key, std::uint32_t hash, MakeValue makeValue) {
    if (mSlots == nullptr) mSlots = NewBlock(mSlotCount);
    std::int32_t slot = Index().FindFree(Index().GetHome(hash, mSlotCount), mSlotCount);
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
    const std::uint32_t home = Index().GetHome(hash, mSlotCount);
    ++mSlots[home].mHomeCount;
    mSlots[slot].mOccupied = 1;
    Index().Add(slot, hash, home);
    ++mCount;
}

// The key and the value are still alive afterwards, but no longer the dictionary's.
template <class K, class V>
void GDict<K, V>::Vacate(std::int32_t slot) noexcept {
    const std::uint32_t home = Index().GetHome(Index().GetHash(slot), mSlotCount);
    --mSlots[home].mHomeCount;
    mSlots[slot].mOccupied = 0;
    Index().Remove(slot, home);
    --mCount;
    if (mCursors != nullptr) GDictCursor::EntryRemoved(mCursors, slot);
}

// Returns the new slot of the entry in `followedSlot`. Nothing changes when it throws.
template <class K, class V>
std::int32_t GDict<K, V>::Rehash(std::int32_t followedSlot) {
    if (mSlotCount > INT32_MAX / 2) GAllocator::ThrowOutOfMemory();
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
    GDictIndex index(slots);
    for (std::int32_t old = 0; old < mSlotCount; ++old) {
        if (!IsOccupied(mSlots[old])) {
            newSlots.Append(-1);
            continue;
        }
        const std::uint32_t hash = Index().GetHash(old);
        const std::uint32_t home = index.GetHome(hash, slotCount);
        const std::int32_t slot = index.FindFree(home, slotCount);
        std::memcpy(static_cast<void*>(&slots[slot].mKey), static_cast<const void*>(&mSlots[old].mKey),
                    sizeof(K));
        std::memcpy(static_cast<void*>(&slots[slot].mValue), static_cast<const void*>(&mSlots[old].mValue),
                    sizeof(V));
        slots[slot].mOccupied = 1;
        ++slots[home].mHomeCount;
        index.Add(slot, hash, home);
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

// The slot to which the cursor goes next, or a number that is no slot.
template <class K, class V>
long GDict<K, V>::FindNext(GDictCursor& cursor) const noexcept {
    if (!cursor.HasList()) return NextOccupied(cursor.GetPosition());
    long slot = cursor.TakePending();
    while (slot >= 0 && !IsOccupied(mSlots[slot])) slot = cursor.TakePending();
    return slot;
}

template <class K, class V>
bool GDict<K, V>::MoveOn(GDictCursor& cursor) const noexcept {
    const long slot = FindNext(cursor);
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
