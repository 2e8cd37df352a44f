#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GCursorChain.h"

template <class T>
class GTable;
template <class T>
class GTableIterator;
template <class T>
class GConstTableIterator;

/// GTableCursor: the position of an iterator, chained to the table it walks. What GTableIterator and
/// GConstTableIterator share; it does not know the elements' type.
///
/// It stands on an element, or between elements, or its table is gone. Between elements, its
/// direction says which way it was going, and its position is that of the element it comes to next
/// that way: so a cursor before the first element has position -1 and goes backward, and one past the
/// last has the count and goes forward. An insert at or before the position of a cursor moves it up
/// by one, whatever its state, and that keeps it beside the same neighbour.
class QUILLON_EXPORT GTableCursor : protected GCursorChain<GTableCursor> {
public:
    ///@{ Stands where `other` stands, in the same table.
    GTableCursor(const GTableCursor& other) noexcept;
    GTableCursor& operator=(const GTableCursor& other) noexcept;
    ///@}

    /// Position of the element it stands on; between elements, of the one it comes to next in its
    /// direction (-1 before the first, the count past the last); -1 when the table is gone.
    long GetPosition() const noexcept { return mPosition; }
    /// Whether the table still exists.
    bool IsValid() const noexcept { return mState != cTableGone; }
    /// False between elements and when the table is gone.
    bool IsOnElement() const noexcept { return mState == cOnElement; }
    /// Back to before the first element.
    void Reset() noexcept;

protected:
    /// Before the first element of `owner`, whose cursors `chain` heads.
    GTableCursor(const void* owner, GTableCursor*& chain) noexcept;
    ~GTableCursor();

    ///@{ Moves in a table of `count` elements; the position of the element now stood on, or -1.
    long MoveForward(long count) noexcept;
    long MoveBackward(long count) noexcept;
    long MoveTo(long position, long count) noexcept;
    ///@}

private:
    template <class T>
    friend class GTable;
    friend GCursorChain<GTableCursor>;

    enum State : std::uint32_t { cOnElement = 0, cTableGone = 1, cBetween = 2 };

    // What a table does to all cursors of its chain.
    static void ElementInserted(GTableCursor* chain, long position) noexcept;
    static void ElementsRemoved(GTableCursor* chain, long position, long count) noexcept;
    static void ResetAll(GTableCursor* chain) noexcept;
    static void TableGone(GTableCursor* chain) noexcept;

    std::int32_t mPosition = -1;
    std::uint32_t mState : 31 = cBetween;
    std::uint32_t mForward : 1 = 0;
};
