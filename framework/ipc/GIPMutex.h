#pragma once

/// @file
/// Mutexes between processes.

#include <concepts>
// Seen before any exported class: otherwise the instantiation below exports the library's exceptions, too.
#include <new>

#include "PPlatformIPC.h"
#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/ipc/GIPPrefix.h"
#include "framework/ipc/GShMemID.h"
#include "framework/ipc/GWaitBudget.h"

/// What a platform supplies: a mutex that all processes of the machine know by name.
///
/// Construction opens or creates the object; every call throws a GException (GExceptionID::cGeneral with the
/// system's text) when the system refuses it. The thread that holds it may lock it again and unlocks it as
/// often.
template <class Imp>
concept GIPMutexImp = std::constructible_from<Imp, const GBuffer&> && requires(Imp imp, double seconds) {
    imp.Lock();                                        // waits without limit; a dead holder has released
    { imp.TryToLock(seconds) } -> std::same_as<bool>;  // false on time-out
    imp.Unlock();
    imp.Close();                                           // once; what the destructor does, but it reports
    { Imp::GetMaxIDSize() } -> std::convertible_to<long>;  // length of the longest name
};

/// GIPMutexBase: a mutex between processes, named after an identifier and the kind of its use.
///
/// A holder that dies counts as having released. A mutex is held by a thread: only the one that locked
/// it may unlock it.
template <GIPMutexImp Imp>
class GIPMutexBase {
public:
    /// Opens or creates it. Throws GExceptionID::cInvalidShMemID for a prefix that GIPPrefix does not know,
    /// cGeneral when the system refuses.
    explicit GIPMutexBase(const GShMemID& identifier, long prefixID = GIPPrefix::cMutex);

    /// Waits without limit.
    void Lock();
    /// Waits at most so many seconds, 0 for not at all; false when they have passed.
    bool TryToLock(double seconds);
    /// As often as it was locked, on the same thread.
    void Unlock();
    /// Closes the mutex, and throws when the system refuses; the destructor keeps that to itself. The
    /// mutex is of no use afterwards.
    void Close();

    static long GetMaxIDSize();  ///< bytes that prefix and identifier may have together

private:
    Imp mImp;
};

// Outside the class, because what is inline is not exported.

template <GIPMutexImp Imp>
GIPMutexBase<Imp>::GIPMutexBase(const GShMemID& identifier, long prefixID)
    : mImp(GIPPrefix::AddPrefix(prefixID, identifier)) {}

template <GIPMutexImp Imp>
void GIPMutexBase<Imp>::Lock() {
    mImp.Lock();
}

template <GIPMutexImp Imp>
bool GIPMutexBase<Imp>::TryToLock(double seconds) {
    return mImp.TryToLock(seconds);
}

template <GIPMutexImp Imp>
void GIPMutexBase<Imp>::Unlock() {
    mImp.Unlock();
}

template <GIPMutexImp Imp>
void GIPMutexBase<Imp>::Close() {
    mImp.Close();
}

template <GIPMutexImp Imp>
long GIPMutexBase<Imp>::GetMaxIDSize() {
    return Imp::GetMaxIDSize();
}

/// The mutex of this platform.
using GIPMutex = GIPMutexBase<PIPMutexImp>;
extern template class QUILLON_EXPORT GIPMutexBase<PIPMutexImp>;

/// GIPMutexLocker: holds a mutex for its own lifetime. It stays on one thread.
template <class Mutex>
class GIPMutexLocker {
public:
    /// Waits within `budget`; without limit when that is null.
    explicit GIPMutexLocker(Mutex& mutex, GWaitBudget* budget = nullptr) : mMutex(mutex) {
        GWaitBudget::Lock(budget, mMutex);
    }
    GIPMutexLocker(const GIPMutexLocker&) = delete;
    GIPMutexLocker& operator=(const GIPMutexLocker&) = delete;
    ~GIPMutexLocker() {
        try {
            mMutex.Unlock();
        } catch (...) {
            // An exception may be on its way through this scope; a second one would end the process.
        }
    }

private:
    Mutex& mMutex;
};
