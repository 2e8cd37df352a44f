#pragma once

#include <cstddef>
#include <utility>

/// GSmartPtr: an intrusive pointer to an object derived from GRefCount.
///
/// It holds one reference while it points at an object. `T` may be const and may be incomplete where
/// the pointer is only declared. All pointers to one object belong to one thread. Objects may be relocated
/// bitwise.
template <class T>
class GSmartPtr {
public:
    constexpr GSmartPtr() noexcept = default;
    constexpr GSmartPtr(std::nullptr_t) noexcept {}
    /// Adds a reference: the object's first when it is new.
    GSmartPtr(T* object) : mObject(object) {
        if (mObject) mObject->AddRef();
    }
    GSmartPtr(const GSmartPtr& other) : GSmartPtr(other.mObject) {}
    GSmartPtr(GSmartPtr&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
    template <class U>
    GSmartPtr(const GSmartPtr<U>& other) : GSmartPtr(other.Get()) {}
    ~GSmartPtr() {
        if (mObject) mObject->Release();
    }
    GSmartPtr& operator=(GSmartPtr other) noexcept {
        Swap(other);
        return *this;
    }

    /// Takes over a reference that the caller holds.
    static GSmartPtr Adopt(T* object) noexcept {
        GSmartPtr result;
        result.mObject = object;
        return result;
    }
    /// Lets the reference go to the caller.
    [[nodiscard]] T* Detach() noexcept { return std::exchange(mObject, nullptr); }
    void Reset() { GSmartPtr().Swap(*this); }
    void Swap(GSmartPtr& other) noexcept { std::swap(mObject, other.mObject); }

    T* Get() const noexcept { return mObject; }
    T* operator->() const noexcept { return mObject; }
    T& operator*() const noexcept { return *mObject; }
    explicit operator bool() const noexcept { return mObject != nullptr; }
    bool operator==(const GSmartPtr& other) const noexcept { return mObject == other.mObject; }
    bool operator==(const T* object) const noexcept { return mObject == object; }

private:
    T* mObject = nullptr;
};
