#include "framework/core/GTableCursor.h"

#include <algorithm>
#include <utility>

GTableCursor::GTableCursor(const void* owner, GTableCursor*& chain) noexcept {
    Attach(owner, chain);
}

GTableCursor::GTableCursor(const GTableCursor& other) noexcept {
    *this = other;
}

GTableCursor& GTableCursor::operator=(const GTableCursor& other) noexcept {
    if (this == &other) return *this;
    if (mChain != other.mChain) {
        Detach();
        if (other.mChain != nullptr) Attach(other.mOwner, *other.mChain);
    }
    mPosition = other.mPosition;
    mState = other.mState;
    mForward = other.mForward;
    return *this;
}

GTableCursor::~GTableCursor() {
    Detach();
}

void GTableCursor::Attach(const void* owner, GTableCursor*& chain) noexcept {
    mOwner = owner;
    mChain = &chain;
    mNext = chain;
    chain = this;
}

void GTableCursor::Detach() noexcept {
    if (mChain == nullptr) return;
    GTableCursor** link = mChain;
    while (*link != this) link = &(*link)->mNext;
    *link = mNext;
    mNext = nullptr;
    mChain = nullptr;
    mOwner = nullptr;
}

void GTableCursor::Reset() noexcept {
    if (!IsValid()) return;
    mPosition = -1;
    mState = cBetween;
    mForward = 0;
}

long GTableCursor::MoveForward(long count) noexcept {
    if (!IsValid()) return -1;
    const bool nextIsHere = mState == cBetween && mForward;
    return MoveTo(nextIsHere ? mPosition : mPosition + 1L, count);
}

long GTableCursor::MoveBackward(long count) noexcept {
    if (!IsValid()) return -1;
    const bool nextIsHere = mState == cBetween && !mForward;
    const long target = nextIsHere ? mPosition : mPosition - 1L;
    const long position = MoveTo(target, count);
    mForward = 0;
    return position;
}

long GTableCursor::MoveTo(long position, long count) noexcept {
    if (!IsValid()) return -1;
    const bool inside = position >= 0 && position < count;
    mPosition = static_cast<std::int32_t>(std::clamp(position, -1L, count));
    mState = inside ? cOnElement : cBetween;
    mForward = mPosition >= 0;
    return inside ? mPosition : -1;
}

void GTableCursor::ElementInserted(GTableCursor* chain, long position) noexcept {
    for (GTableCursor* cursor = chain; cursor != nullptr; cursor = cursor->mNext) {
        if (cursor->mPosition >= position) ++cursor->mPosition;
    }
}

void GTableCursor::ElementsRemoved(GTableCursor* chain, long position, long count) noexcept {
    const long end = position + count;
    for (GTableCursor* cursor = chain; cursor != nullptr; cursor = cursor->mNext) {
        if (cursor->mPosition >= end) {
            cursor->mPosition -= static_cast<std::int32_t>(count);
        } else if (cursor->mPosition >= position) {
            // What it stood on or came to next is gone; now it comes to the neighbour in its direction.
            cursor->mPosition = static_cast<std::int32_t>(cursor->mForward ? position : position - 1);
            cursor->mState = cBetween;
        }
    }
}

void GTableCursor::ResetAll(GTableCursor* chain) noexcept {
    for (GTableCursor* cursor = chain; cursor != nullptr; cursor = cursor->mNext) cursor->Reset();
}

void GTableCursor::TableGone(GTableCursor* chain) noexcept {
    while (chain != nullptr) {
        GTableCursor* const next = chain->mNext;
        chain->mPosition = -1;
        chain->mState = cTableGone;
        chain->mNext = nullptr;
        chain->mChain = nullptr;
        chain->mOwner = nullptr;
        chain = next;
    }
}

void GTableCursor::SwapChains(const void* ownerA, GTableCursor*& chainA, const void* ownerB,
                              GTableCursor*& chainB) noexcept {
    std::swap(chainA, chainB);
    for (GTableCursor* cursor = chainA; cursor != nullptr; cursor = cursor->mNext) {
        cursor->mOwner = ownerA;
        cursor->mChain = &chainA;
    }
    for (GTableCursor* cursor = chainB; cursor != nullptr; cursor = cursor->mNext) {
        cursor->mOwner = ownerB;
        cursor->mChain = &chainB;
    }
}
