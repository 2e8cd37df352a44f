#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <new>
#include <utility>

#include "framework/core/containers/GTableCursor.h"
#include "framework/core/memory/GAllocator.h"

/// GTable: a growable array.
///
/// Elements lie contiguously in a block from GAllocator and are relocated by plain memory moves: every
/// element type must bear being moved bitwise, that is, hold no address inside itself. That holds for
/// the framework's values, numbers and pointers, and for a table itself while no iterator walks it.
///
/// Robust iterators (GTableIterator, GConstTableIterator) are chained to the table and adjusted by
/// every change:
/// - an iterator on an element stays on that element wherever inserts and removals push it;
/// - when its element is removed, it stands between elements and goes on with the next one in the
///   direction it was moving;
/// - it meets every element that is there during its whole walk exactly once; an element inserted
///   ahead of it is met, one inserted behind it or where it stands between elements is not;
/// - past the end it stays past the end; an iterator that has not moved yet starts at what is first
///   then;
/// - an iterator whose table is gone reports position -1 and yields nothing.
///
/// Positions of operator[] are not checked. Insert and Remove cut theirs to what is there. A call that
/// throws (no memory, or copying an element failed) leaves the table as it was. A value passed in may
/// be an element of the table. Elements' destructors must not touch the table they are in. Not locked:
/// one thread at a time.
template <class T>
class GTable {
    static_assert(alignof(T) <= GAllocator::cGranularity, "blocks are aligned to 8 bytes");

public:
    GTable() noexcept;
    GTable(std::initializer_list<T> elements);  ///< copies the elements
    GTable(const GTable& other);                ///< copies the elements; no iterator walks the copy
    /// Leaves `other` empty; its iterators stay with it, at its start.
    GTable(GTable&& other) noexcept;
    /// Iterators of this table start anew.
    GTable& operator=(const GTable& other);
    /// Takes the elements over and leaves `other` empty; iterators of both start anew.
    GTable& operator=(GTable&& other) noexcept;
    ~GTable();

    long GetCount() const noexcept;     ///< elements
    bool IsEmpty() const noexcept;      ///< whether it has no element
    long GetCapacity() const noexcept;  ///< elements that fit before the array grows

    ///@{ The element itself, valid until the table changes. GetLast() must not be called on an empty table.
    T& operator[](long position) noexcept;
    const T& operator[](long position) const noexcept;
    T& GetLast() noexcept;
    const T& GetLast() const noexcept;
    ///@}

    ///@{ Plain pointers, for walks that do not change the table's count. Null for a table without an array.
    T* begin() noexcept;
    T* end() noexcept;
    const T* begin() const noexcept;
    const T* end() const noexcept;
    ///@}

    ///@{ Puts the element behind the last one. A full array doubles.
    void Append(const T& element);
    void Append(T&& element);
    ///@}
    /// Before the element at `position`; at or behind the end appends. A full array doubles (2 from 0).
    void Insert(long position, const T& element);
    /// The same, taking the element over.
    void Insert(long position, T&& element);
    /// Removes up to `count` elements from `position` on; a position outside the table removes nothing.
    void Remove(long position, long count = 1) noexcept;
    /// Removes all elements; keeps the array.
    void Clear() noexcept;

    /// Position of the first element at or after `start` that equals `element`, or -1.
    long Find(const T& element, long start = 0) const;
    bool Has(const T& element) const;  ///< whether an element equals it

    /// Makes room for `capacity` elements in all; never shrinks.
    void Reserve(long capacity);
    /// Exchanges the elements; iterators go with the elements they stand on.
    void Swap(GTable& other) noexcept;
    /// Sorts by `less(a, b)`; equal elements keep no order. Iterators stay at their positions.
    template <class Less>
    void Sort(Less less) {
        std::sort(begin(), end(), less);
    }
    void Sort();  ///< by operator<

    bool operator==(const GTable& other) const;  ///< same count, equal elements in the same order

private:
    friend class GTableIterator<T>;
    friend class GConstTableIterator<T>;

    // NOLINTNEXTLINE(bugprone-sizeof-expression): of the element itself, also where that is a pointer
    static constexpr std::size_t cElementSize = sizeof(T);

    // An element out of the array: constructed, moved in bitwise, and then no longer ours.
    union Detached {
        explicit Detached(const T& source) : element(source) {}
        explicit Detached(T&& source) : element(std::move(source)) {}
        ~Detached() {}
        T element;
    };

    template <class Source>
    void InsertElement(long position, Source&& source);
    void AppendAll(const T* elements, std::size_t count);
    void GrowForOneMore();
    void Reallocate(std::size_t capacity);
    void MoveElements(long from, long to, std::size_t count) noexcept;
    static void DestroyElements(T* elements, long count) noexcept;
    void FreeArray() noexcept;

    T* mElements = nullptr;
    std::int32_t mCapacity = 0;
    std::int32_t mCount = 0;
    mutable GTableCursor* mCursors = nullptr;
};

/// GTableIterator: walks a table and stays right while the table changes; see GTable.
///
///     GTableIterator<long> numbers(table);
///     while (long* number = numbers.Next()) ...
///
/// The table must not be moved to another address while an iterator walks it, but may end before.
template <class T>
class GTableIterator : public GTableCursor {
public:
    /// Stands before the first element.
    explicit GTableIterator(GTable<T>& table) noexcept : GTableCursor(&table, table.mCursors) {}

    /// Moves on and returns the element there; null past the end or when the table is gone.
    T* Next() noexcept { return ElementAt(MoveForward(Count())); }
    /// Moves back and returns the element there; null before the first or when the table is gone.
    T* Previous() noexcept { return ElementAt(MoveBackward(Count())); }
    /// The element the iterator stands on; null between elements or when the table is gone.
    T* GetCurrent() const noexcept { return IsOnElement() ? ElementAt(GetPosition()) : nullptr; }
    /// Stands on the element at `position`; outside the table: before the first or past the last.
    T* SetPosition(long position) noexcept { return ElementAt(MoveTo(position, Count())); }

private:
    GTable<T>* Table() const noexcept { return static_cast<GTable<T>*>(const_cast<void*>(GetOwner())); }
    long Count() const noexcept { return IsValid() ? Table()->GetCount() : 0; }
    T* ElementAt(long position) const noexcept { return position < 0 ? nullptr : &(*Table())[position]; }
};

/// GConstTableIterator: the same over a table that the walker does not change itself.
template <class T>
class GConstTableIterator : public GTableCursor {
public:
    /// Stands before the first element.
    explicit GConstTableIterator(const GTable<T>& table) noexcept : GTableCursor(&table, table.mCursors) {}

    ///@{ As the calls of GTableIterator.
    const T* Next() noexcept { return ElementAt(MoveForward(Count())); }
    const T* Previous() noexcept { return ElementAt(MoveBackward(Count())); }
    const T* GetCurrent() const noexcept { return IsOnElement() ? ElementAt(GetPosition()) : nullptr; }
    const T* SetPosition(long position) noexcept { return ElementAt(MoveTo(position, Count())); }
    ///@}

private:
    const GTable<T>* Table() const noexcept { return static_cast<const GTable<T>*>(GetOwner()); }
    long Count() const noexcept { return IsValid() ? Table()->GetCount() : 0; }
    const T* ElementAt(long position) const noexcept {
        return position < 0 ? nullptr : &(*Table())[position];
    }
};

#include "framework/core/containers/GTableImp.h"
