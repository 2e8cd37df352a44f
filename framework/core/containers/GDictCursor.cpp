#include "framework/core/containers/GDictCursor.h"

GDictCursor::GDictCursor(const void* owner, GDictCursor*& chain) noexcept : GCursorChain(owner, chain) {}

GDictCursor::GDictCursor(const GDictCursor& other) : GCursorChain() {
    *this = other;
}

GDictCursor& GDictCursor::operator=(const GDictCursor& other) {
    if (this == &other) return *this;
    mList = other.mList;
    Follow(other);
    mPosition = other.mPosition;
    mState = other.mState;
    mHasList = other.mHasList;
    mListPosition = other.mListPosition;
    return *this;
}

GDictCursor::~GDictCursor() = default;

void GDictCursor::Reset() noexcept {
    if (!IsValid()) return;
    mPosition = -1;
    mState = cBetween;
    mHasList = false;
    mList.Clear();
}

long GDictCursor::TakePending() noexcept {
    while (mListPosition < mList.GetCount()) {
        const long slot = mList[mListPosition++];
        if (slot >= 0) return slot;
    }
    return -1;
}

void GDictCursor::StandOn(long slot) noexcept {
    mPosition = static_cast<std::int32_t>(slot);
    mState = cOnEntry;
}

void GDictCursor::StandPastEnd(long slotCount) noexcept {
    mPosition = static_cast<std::int32_t>(slotCount);
    mState = cBetween;
}

// A list keeps the slot: whoever takes it from there sees that it is free.
void GDictCursor::EntryRemoved(GDictCursor* chain, long slot) noexcept {
    ForEach(chain, [=](GDictCursor& cursor) {
        if (cursor.mState == cOnEntry && cursor.mPosition == slot) cursor.mState = cBetween;
    });
}

void GDictCursor::AllRemoved(GDictCursor* chain) noexcept {
    ForEach(chain, [](GDictCursor& cursor) {
        cursor.mState = cBetween;
        cursor.mList.Clear();
        cursor.mListPosition = 0;
    });
}

void GDictCursor::PrepareRehash(GDictCursor* chain, long entryCount) {
    ForEach(chain, [=](GDictCursor& cursor) { cursor.mList.Reserve(entryCount); });
}

void GDictCursor::Rehashed(GDictCursor* chain, const GTable<std::int32_t>& newSlots) noexcept {
    ForEach(chain, [&](GDictCursor& cursor) { cursor.GiveSlots(newSlots); });
}

void GDictCursor::GiveSlots(const GTable<std::int32_t>& newSlots) noexcept {
    if (mHasList) {
        for (long i = mListPosition; i < mList.GetCount(); ++i) {
            if (mList[i] >= 0) mList[i] = newSlots[mList[i]];
        }
    } else {
        // There is room: PrepareRehash() made it.
        for (long slot = mPosition + 1L; slot < newSlots.GetCount(); ++slot) {
            if (newSlots[slot] >= 0) mList.Append(newSlots[slot]);
        }
        mHasList = true;
        mListPosition = 0;
    }
    if (mState == cOnEntry) mPosition = newSlots[mPosition];
}

void GDictCursor::ResetAll(GDictCursor* chain) noexcept {
    ForEach(chain, [](GDictCursor& cursor) { cursor.Reset(); });
}

void GDictCursor::DictGone(GDictCursor* chain) noexcept {
    ForEach(chain, [](GDictCursor& cursor) {
        cursor.Reset();
        cursor.mState = cDictGone;
    });
    ReleaseAll(chain);
}
