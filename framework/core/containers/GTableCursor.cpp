#include "framework/core/containers/GTableCursor.h"

#include <algorithm>

GTableCursor::GTableCursor(const void* owner, GTableCursor*& chain) noexcept : GCursorChain(owner, chain) {}

GTableCursor::GTableCursor(const GTableCursor& other) noexcept : GCursorChain() {
    *this = other;
}

GTableCursor& GTableCursor::operator=(const GTableCursor& other) noexcept {
    if (this == &other) return *this;
    Follow(other);
    mPosition = other.mPosition;
    mState = other.mState;
    mForward = other.mForward;
    return *this;
}

GTableCursor::~GTableCursor() = default;

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
    ForEach(chain, [=](GTableCursor& cursor) {
        if (cursor.mPosition >= position) ++cursor.mPosition;
    });
}

void GTableCursor::ElementsRemoved(GTableCursor* chain, long position, long count) noexcept {
    ForEach(chain, [=](GTableCursor& cursor) {
        if (cursor.mPosition >= position + count) {
            cursor.mPosition -= static_cast<std::int32_t>(count);
        } else if (cursor.mPosition >= position) {
            // Its element, or the one that came next, is gone. What comes next now is the neighbour in
            // its direction.
            cursor.mPosition = static_cast<std::int32_t>(cursor.mForward ? position : position - 1);
            cursor.mState = cBetween;
        }
    });
}

void GTableCursor::ResetAll(GTableCursor* chain) noexcept {
    ForEach(chain, [](GTableCursor& cursor) { cursor.Reset(); });
}

void GTableCursor::TableGone(GTableCursor* chain) noexcept {
    ForEach(chain, [](GTableCursor& cursor) {
        cursor.mPosition = -1;
        cursor.mState = cTableGone;
    });
    ReleaseAll(chain);
}
