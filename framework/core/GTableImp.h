#pragma once

// The bodies of GTable's longer members; included by GTable.h, which is the header to include.

template <class T>
GTable<T>::GTable(GTable&& other) noexcept
    : mElements(std::exchange(other.mElements, nullptr)),
      mCapacity(std::exchange(other.mCapacity, 0)),
      mCount(std::exchange(other.mCount, 0)) {
    GTableCursor::ResetAll(other.mCursors);
}

template <class T>
GTable<T>& GTable<T>::operator=(const GTable& other) {
    if (this != &other) *this = GTable(other);
    return *this;
}

template <class T>
GTable<T>& GTable<T>::operator=(GTable&& other) noexcept {
    if (this == &other) return *this;
    // Out of the way first: an element that is destroyed here may own `other`.
    T* const oldElements = std::exchange(mElements, std::exchange(other.mElements, nullptr));
    const std::int32_t oldCapacity = std::exchange(mCapacity, std::exchange(other.mCapacity, 0));
    const std::int32_t oldCount = std::exchange(mCount, std::exchange(other.mCount, 0));
    GTableCursor::ResetAll(mCursors);
    GTableCursor::ResetAll(other.mCursors);
    DestroyElements(oldElements, oldCount);
    GAllocator::GetInstance().Free(oldElements, static_cast<std::size_t>(oldCapacity) * sizeof(T));
    return *this;
}

template <class T>
GTable<T>::~GTable() {
    DestroyElements(mElements, mCount);
    FreeArray();
    GTableCursor::TableGone(mCursors);
}

template <class T>
void GTable<T>::Remove(long position, long count) noexcept {
    if (position < 0 || position >= mCount || count <= 0) return;
    count = std::min(count, mCount - position);
    DestroyElements(mElements + position, count);
    const long rest = mCount - position - count;
    MoveElements(position + count, position, static_cast<std::size_t>(rest));
    mCount -= static_cast<std::int32_t>(count);
    GTableCursor::ElementsRemoved(mCursors, position, count);
}

template <class T>
long GTable<T>::Find(const T& element, long start) const {
    for (long i = std::max(start, 0L); i < mCount; ++i) {
        if (mElements[i] == element) return i;
    }
    return -1;
}

template <class T>
void GTable<T>::Reserve(long capacity) {
    if (capacity > mCapacity) Reallocate(static_cast<std::size_t>(capacity));
}

template <class T>
void GTable<T>::Swap(GTable& other) noexcept {
    std::swap(mElements, other.mElements);
    std::swap(mCapacity, other.mCapacity);
    std::swap(mCount, other.mCount);
    GTableCursor::SwapChains(this, mCursors, &other, other.mCursors);
}

template <class T>
template <class Source>
void GTable<T>::InsertElement(long position, Source&& source) {
    position = std::clamp(position, 0L, static_cast<long>(mCount));
    if (position == mCount && mCount < mCapacity) {
        // Nothing moves, so the source may be one of our own elements.
        ::new (static_cast<void*>(mElements + mCount)) T(std::forward<Source>(source));
    } else {
        Detached detached(std::forward<Source>(source));
        if (mCount == mCapacity) {
            try {
                GrowForOneMore();
            } catch (...) {
                detached.element.~T();
                throw;
            }
        }
        MoveElements(position, position + 1, static_cast<std::size_t>(mCount - position));
        std::memcpy(static_cast<void*>(mElements + position), &detached.element, sizeof(T));
    }
    ++mCount;
    if (mCursors != nullptr) GTableCursor::ElementInserted(mCursors, position);
}

// Only for a table without elements.
template <class T>
void GTable<T>::AppendAll(const T* elements, std::size_t count) {
    if (count == 0) return;
    Reallocate(count);
    try {
        for (std::size_t i = 0; i < count; ++i, ++mCount)
            ::new (static_cast<void*>(mElements + i)) T(elements[i]);
    } catch (...) {
        DestroyElements(mElements, mCount);
        FreeArray();
        throw;
    }
}

template <class T>
void GTable<T>::GrowForOneMore() {
    Reallocate(mCapacity == 0 ? 2 : static_cast<std::size_t>(mCapacity) * 2);
}

template <class T>
void GTable<T>::Reallocate(std::size_t capacity) {
    constexpr std::size_t cMaxCapacity = INT32_MAX;
    if (capacity > cMaxCapacity || capacity > PTRDIFF_MAX / sizeof(T)) GAllocator::ThrowOutOfMemory();
    T* const elements = static_cast<T*>(GAllocator::GetInstance().Allocate(capacity * sizeof(T)));
    if (mCount > 0) {
        std::memcpy(static_cast<void*>(elements), mElements, static_cast<std::size_t>(mCount) * sizeof(T));
    }
    FreeArray();
    mElements = elements;
    mCapacity = static_cast<std::int32_t>(capacity);
}

template <class T>
void GTable<T>::MoveElements(long from, long to, std::size_t count) noexcept {
    if (count > 0) std::memmove(static_cast<void*>(mElements + to), mElements + from, count * sizeof(T));
}

template <class T>
void GTable<T>::DestroyElements(T* elements, long count) noexcept {
    for (long i = 0; i < count; ++i) elements[i].~T();
}

template <class T>
void GTable<T>::FreeArray() noexcept {
    GAllocator::GetInstance().Free(mElements, static_cast<std::size_t>(mCapacity) * sizeof(T));
}
