#pragma once

#include <cstddef>
#include <utility>

/// GSharedObject: a pointer to an object that counts its references, such as a GThreadSafeRefCount.
///
/// It holds one reference while it points at an object. `T` may be const and may be incomplete where
/// the pointer is only declared. Pointers to one GThreadSafeRefCount may live on any threads, but each
/// pointer is used by one thread at a time; those to one GRefCount belong to one thread. Pointers may be
/// relocated bitwise.
template <class T>
class GSharedObject {
public:
    constexpr GSharedObject() noexcept = default;
    constexpr GSharedObject(std::nullptr_t) noexcept {}
    /// Adds a reference: the object's first when it is new.
    GSharedObject(T* object) : mObject(object) {
        if (mObject) mObject->AddRef();
    }
    GSharedObject(const GSharedObject& other) : GSharedObject(other.mObject) {}
    GSharedObject(GSharedObject&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
    template <class U>
    GSharedObject(const GSharedObject<U>& other) : GSharedObject(other.Get()) {}
    ~GSharedObject() {
        if (mObject) mObject->Release();
    }
    GSharedObject& operator=(GSharedObject other) noexcept {
        Swap(other);
        return *this;
    }

    /// Takes over a reference that the caller holds.
    static GSharedObject Adopt(T* object) noexcept {
        GSharedObject result;
        result.mObject = object;
        return result;
    }
    /// Lets the reference go to the caller.
    [[nodiscard]] T* Detach() noexcept { return std::exchange(mObject, nullptr); }
    void Reset() { GSharedObject().Swap(*this); }
    void Swap(GSharedObject& other) noexcept { std::swap(mObject, other.mObject); }

    T* Get() const noexcept { return mObject; }
    T* operator->() const noexcept { return mObject; }
    T& operator*() const noexcept { return *mObject; }
    explicit operator bool() const noexcept { return mObject != nullptr; }
    bool operator==(const GSharedObject& other) const noexcept { return mObject == other.mObject; }
    bool operator==(const T* object) const noexcept { return mObject == object; }

private:
    T* mObject = nullptr;
};
