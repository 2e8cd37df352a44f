#include "framework/core/GDictCursor.h"

#include <utility>

GDictCursor::GDictCursor(const void* owner, GDictCursor*& chain) noexcept {
    Attach(owner, chain);
}

GDictCursor::GDictCursor(const GDictCursor& other) {
    *this = other;
}

GDictCursor& GDictCursor::operator=(const GDictCursor& other) {
    if (this == &other) return *this;
    mList = other.mList;
    if (mChain != other.mChain) {
        Detach();
        if (other.mChain != nullptr) Attach(other.mOwner, *other.mChain);
    }
    mPosition = other.mPosition;
    mState = other.mState;
    mHasList = other.mHasList;
    mListPosition = other.mListPosition;
    return *this;
}

GDictCursor::~GDictCursor() {
    Detach();
}

void GDictCursor::Attach(const void* owner, GDictCursor*& chain) noexcept {
    mOwner = owner;
    mChain = &chain;
    mNext = chain;
    chain = this;
}

void GDictCursor::Detach() noexcept {
    if (mChain == nullptr) return;
    GDictCursor** link = mChain;
    while (*link != this) link = &(*link)->mNext;
    *link = mNext;
    mNext = nullptr;
    mChain = nullptr;
    mOwner = nullptr;
}

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

void GDictCursor::EntryRemoved(GDictCursor* chain, long slot) noexcept {
    for (GDictCursor* cursor = chain; cursor != nullptr; cursor = cursor->mNext) {
        const bool standsThere = cursor->mState == cOnEntry && cursor->mPosition == slot;
        if (standsThere) cursor->mState = cBetween;
        // Where it stands it has been: that is not on its list any more.
        if (standsThere || !cursor->mHasList) continue;
        const long listed = cursor->mList.Find(static_cast<std::int32_t>(slot), cursor->mListPosition);
        if (listed >= 0) cursor->mList[listed] = -1;
    }
}

void GDictCursor::AllRemoved(GDictCursor* chain) noexcept {
    for (GDictCursor* cursor = chain; cursor != nullptr; cursor = cursor->mNext) {
        cursor->mState = cBetween;
        cursor->mList.Clear();
        cursor->mListPosition = 0;
    }
}

void GDictCursor::PrepareRehash(GDictCursor* chain, long entryCount) {
    for (GDictCursor* cursor = chain; cursor != nullptr; cursor = cursor->mNext)
        cursor->mList.Reserve(entryCount);
}

void GDictCursor::Rehashed(GDictCursor* chain, const GTable<std::int32_t>& newSlots) noexcept {
    for (GDictCursor* cursor = chain; cursor != nullptr; cursor = cursor->mNext) cursor->GiveSlots(newSlots);
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
    for (GDictCursor* cursor = chain; cursor != nullptr; cursor = cursor->mNext) cursor->Reset();
}

void GDictCursor::DictGone(GDictCursor* chain) noexcept {
    while (chain != nullptr) {
        GDictCursor* const next = chain->mNext;
        chain->Reset();
        chain->mState = cDictGone;
        chain->mNext = nullptr;
        chain->mChain = nullptr;
        chain->mOwner = nullptr;
        chain = next;
    }
}

void GDictCursor::SwapChains(const void* ownerA, GDictCursor*& chainA, const void* ownerB,
                             GDictCursor*& chainB) noexcept {
    std::swap(chainA, chainB);
    for (GDictCursor* cursor = chainA; cursor != nullptr; cursor = cursor->mNext) {
        cursor->mOwner = ownerA;
        cursor->mChain = &chainA;
    }
    for (GDictCursor* cursor = chainB; cursor != nullptr; cursor = cursor->mNext) {
        cursor->mOwner = ownerB;
        cursor->mChain = &chainB;
    }
}
