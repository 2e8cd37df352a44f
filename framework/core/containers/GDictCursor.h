#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GCursorChain.h"
#include "framework/core/containers/GTable.h"

template <class K, class V>
class GDict;

/// GDictCursor: the position of an iterator, chained to the dictionary it walks. What GDictIterator
/// and GConstDictIterator share; it does not know the entries' types.
///
/// It walks the slots upward from its position. A rehash puts the entries into other slots; from
/// then on the cursor goes by its own list of the slots that it still has to visit.
class QUILLON_EXPORT GDictCursor : protected GCursorChain<GDictCursor> {
public:
    ///@{ Stands where `other` stands, in the same dictionary. Throws as GAllocator::ThrowOutOfMemory().
    GDictCursor(const GDictCursor& other);
    GDictCursor& operator=(const GDictCursor& other);
    ///@}

    /// Slot of the entry it stands on, or stood on before that was removed; -1 before the first and
    /// when the dictionary is gone.
    long GetPosition() const noexcept { return mPosition; }
    /// Whether the dictionary still exists.
    bool IsValid() const noexcept { return mState != cDictGone; }
    /// False between entries and when the dictionary is gone.
    bool IsOnEntry() const noexcept { return mState == cOnEntry; }
    /// Back to before the first entry.
    void Reset() noexcept;

protected:
    /// Before the first slot of `owner`, whose cursors `chain` heads.
    GDictCursor(const void* owner, GDictCursor*& chain) noexcept;
    ~GDictCursor();

    /// Whether the slots to visit come from TakePending(), not from walking upward.
    bool HasList() const noexcept { return mHasList; }
    /// The next slot of the list, which may have become free; -1 at the end.
    long TakePending() noexcept;
    void StandOn(long slot) noexcept;            ///< on the entry in that slot
    void StandPastEnd(long slotCount) noexcept;  ///< past the last slot

private:
    template <class K, class V>
    friend class GDict;
    friend GCursorChain<GDictCursor>;

    enum State : std::uint32_t { cOnEntry = 0, cDictGone = 1, cBetween = 2 };

    void GiveSlots(const GTable<std::int32_t>& newSlots) noexcept;

    // What a dictionary does to all cursors of its chain.
    static void EntryRemoved(GDictCursor* chain, long slot) noexcept;
    static void AllRemoved(GDictCursor* chain) noexcept;
    /// Makes the room that Rehashed() needs; what throws, throws here.
    static void PrepareRehash(GDictCursor* chain, long entryCount);
    /// `newSlots`: for each old slot the new one of its entry, or -1.
    static void Rehashed(GDictCursor* chain, const GTable<std::int32_t>& newSlots) noexcept;
    static void ResetAll(GDictCursor* chain) noexcept;
    static void DictGone(GDictCursor* chain) noexcept;

    std::int32_t mPosition = -1;
    std::uint32_t mState = cBetween;
    bool mHasList = false;
    std::int32_t mListPosition = 0;  // in mList, of the next slot to visit
    GTable<std::int32_t> mList;      // slots; -1 where a further rehash found none occupied
};
