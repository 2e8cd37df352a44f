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
    constexpr GSharedObject(std::nullptr_t) noexcept {}  ///< points at nothing
    /// Adds a reference: the object's first when it is new.
    GSharedObject(T* object) : mObject(object) {
        if (mObject) mObject->AddRef();
    }
    ///@{ Adds a reference; moving takes over the other pointer's and leaves it null.
    GSharedObject(const GSharedObject& other) : GSharedObject(other.mObject) {}
    GSharedObject(GSharedObject&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
    template <class U>
    GSharedObject(const GSharedObject<U>& other) : GSharedObject(other.Get()) {}
    ///@}
    ~GSharedObject() {
        if (mObject) mObject->Release();
    }
    /// Holds the other's object; the old one loses its reference.
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
    void Reset() { GSharedObject().Swap(*this); }  ///< lets its reference go and is null
    /// Exchanges the objects; no count changes.
    void Swap(GSharedObject& other) noexcept { std::swap(mObject, other.mObject); }

    T* Get() const noexcept { return mObject; }  ///< null when it points at nothing; the reference stays here
    /// The object; not to be called on a null pointer, nor is the next one.
    T* operator->() const noexcept { return mObject; }
    T& operator*() const noexcept { return *mObject; }  ///< the object
    /// Whether it points at an object.
    explicit operator bool() const noexcept { return mObject != nullptr; }
    ///@{ Whether both point at the same object; its value does not count.
    bool operator==(const GSharedObject& other) const noexcept { return mObject == other.mObject; }
    bool operator==(const T* object) const noexcept { return mObject == object; }
    ///@}

private:
    T* mObject = nullptr;
};
