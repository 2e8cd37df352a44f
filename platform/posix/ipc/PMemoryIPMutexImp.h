#pragma once

#include <memory>

#include "framework/core/bytes/GBuffer.h"

/// PMemoryIPMutexImp: a recursive mutex that the threads of this process know by name.
///
/// It stands in for a system's mutex where messaging is tested, and counts what is done with it. Any
/// thread may call; the thread that holds it unlocks it.
class PMemoryIPMutexImp {
public:
    explicit PMemoryIPMutexImp(const GBuffer& identifier);
    PMemoryIPMutexImp(const PMemoryIPMutexImp&) = delete;
    PMemoryIPMutexImp& operator=(const PMemoryIPMutexImp&) = delete;
    ~PMemoryIPMutexImp();

    void Lock();
    [[nodiscard]] bool TryToLock(double seconds);
    /// Throws GExceptionID::cGeneral when the calling thread does not hold it.
    void Unlock();
    void Close() noexcept;

    static long GetMaxIDSize();

    /// How often any of these mutexes was waited for, and released, since the program began.
    static long GetWaitCount();
    static long GetReleaseCount();

private:
    struct Shared;

    std::shared_ptr<Shared> mShared;
};
