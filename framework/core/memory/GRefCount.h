#pragma once

#include <atomic>
#include <cstdint>

#include "framework/core/GExport.h"

/// GRefCount: base of objects that several owners on one thread share.
///
/// A new object has no reference; the Release() of the last one deletes it. Copying an object does not
/// copy its references. GSmartPtr holds a reference for as long as it lives.
class QUILLON_EXPORT GRefCount {
public:
    virtual ~GRefCount();
    void AddRef() const noexcept { ++mCount; }  ///< one owner more
    /// One owner less; the last one's call deletes the object.
    void Release() const {
        if (--mCount == 0) delete this;
    }
    long GetRefCount() const noexcept { return mCount; }  ///< how many references are held

protected:
    GRefCount() noexcept = default;
    ///@{ Takes the values only: each object counts its own references.
    GRefCount(const GRefCount&) noexcept {}
    GRefCount& operator=(const GRefCount&) noexcept { return *this; }
    ///@}

private:
    mutable std::int32_t mCount = 0;
};

/// GThreadSafeRefCount: the same for owners on any threads; GSharedObject holds a reference.
class QUILLON_EXPORT GThreadSafeRefCount {
public:
    virtual ~GThreadSafeRefCount();
    void AddRef() const noexcept { mCount.fetch_add(1, std::memory_order_relaxed); }  ///< one owner more
    /// One owner less; the last one's call deletes the object, on the thread that makes it.
    void Release() const {
        // What other owners did to the object happens before its destructor.
        if (mCount.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    }
    /// A snapshot: other threads may change it at once.
    long GetRefCount() const noexcept { return mCount.load(std::memory_order_relaxed); }

protected:
    GThreadSafeRefCount() noexcept = default;
    ///@{ Takes the values only: each object counts its own references.
    GThreadSafeRefCount(const GThreadSafeRefCount&) noexcept {}
    GThreadSafeRefCount& operator=(const GThreadSafeRefCount&) noexcept { return *this; }
    ///@}

private:
    mutable std::atomic<std::int32_t> mCount{0};
};
