#pragma once

// The bodies of GTable's members. Include GTable.h, not this file. None stands in the class: it would be
// inline there, and the DLL does not export the inline members of an instance.

template <class T>
GTable<T>::GTable() noexcept = default;

template <class T>
GTable<T>::GTable(std::initializer_list<T> elements) {
    AppendAll(elements.begin(), elements.size());
}

template <class T>
GTable<T>::GTable(const GTable& other) {
    AppendAll(other.mElements, static_cast<std::size_t>(other.mCount));
}

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
    GAllocator::GetInstance().Free(oldElements, static_cast<std::size_t>(oldCapacity) * cElementSize);
    return *this;
}

template <class T>
GTable<T>::~GTable() {
    DestroyElements(mElements, mCount);
    FreeArray();
    GTableCursor::TableGone(mCursors);
}

template <class T>
long GTable<T>::GetCount() const noexcept {
    return mCount;
}

template <class T>
bool GTable<T>::IsEmpty() const noexcept {
    return mCount == 0;
}

template <class T>
long GTable<T>::GetCapacity() const noexcept {
    return mCapacity;
}

template <class T>
T& GTable<T>::operator[](long position) noexcept {
    assert(position >= 0 && position < mCount);
    return mElements[position];
}

template <class T>
const T& GTable<T>::operator[](long position) const noexcept {
    assert(position >= 0 && position < mCount);
    return mElements[position];
}

template <class T>
T& GTable<T>::GetLast() noexcept {
    return (*this)[mCount - 1L];
}

template <class T>
const T& GTable<T>::GetLast() const noexcept {
    return (*this)[mCount - 1L];
}

template <class T>
T* GTable<T>::begin() noexcept {
    return mElements;
}

template <class T>
T* GTable<T>::end() noexcept {
    return mElements + mCount;
}

template <class T>
const T* GTable<T>::begin() const noexcept {
    return mElements;
}

template <class T>
const T* GTable<T>::end() const noexcept {
    return mElements + mCount;
}

template <class T>
void GTable<T>::Append(const T& element) {
    InsertElement(mCount, element);
}

template <class T>
void GTable<T>::Append(T&& element) {
    InsertElement(mCount, std::move(element));
}

template <class T>
void GTable<T>::Insert(long position, const T& element) {
    InsertElement(position, element);
}

template <class T>
void GTable<T>::Insert(long position, T&& element) {
    InsertElement(position, std::move(element));
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
void GTable<T>::Clear() noexcept {
    Remove(0, mCount);
}

template <class T>
bool GTable<T>::Has(const T& element) const {
    return Find(element) >= 0;
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
void GTable<T>::Sort() {
    std::sort(begin(), end());
}

template <class T>
bool GTable<T>::operator==(const GTable& other) const {
    return mCount == other.mCount && std::equal(begin(), end(), other.begin());
}

template <class T>
template <class Source>
void GTable<T>::InsertElement(long position, Source&& source) {
    if (position >= mCount && mCount < mCapacity) {
        position = mCount;
        // Nothing moves, so the source may be one of our own elements.
        ::new (static_cast<void*>(mElements + mCount)) T(std::forward<Source>(source));
    } else {
        position = std::clamp(position, 0L, static_cast<long>(mCount));
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
        std::memcpy(static_cast<void*>(mElements + position), static_cast<const void*>(&detached.element),
                    cElementSize);
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
    constexpr std::size_t cMaxCapacity = std::min<std::size_t>(INT32_MAX, PTRDIFF_MAX / cElementSize);
    if (capacity > cMaxCapacity) GAllocator::ThrowOutOfMemory();
    T* const elements = static_cast<T*>(GAllocator::GetInstance().Allocate(capacity * cElementSize));
    if (mCount > 0) {
        std::memcpy(static_cast<void*>(elements), static_cast<const void*>(mElements),
                    static_cast<std::size_t>(mCount) * cElementSize);
    }
    FreeArray();
    mElements = elements;
    mCapacity = static_cast<std::int32_t>(capacity);
}

template <class T>
void GTable<T>::MoveElements(long from, long to, std::size_t count) noexcept {
    if (count > 0)
        std::memmove(static_cast<void*>(mElements + to), static_cast<const void*>(mElements + from),
                     count * cElementSize);
}

template <class T>
void GTable<T>::DestroyElements(T* elements, long count) noexcept {
    for (long i = 0; i < count; ++i) elements[i].~T();
}

template <class T>
void GTable<T>::FreeArray() noexcept {
    GAllocator::GetInstance().Free(mElements, static_cast<std::size_t>(mCapacity) * cElementSize);
}
