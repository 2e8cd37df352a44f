#pragma once

#include <memory>

#include "framework/core/bytes/GBuffer.h"

/// PMemoryIPEventImp: an event that the threads of this process know by name. One wait that sees it set
/// resets it.
///
/// It stands in for a system's event where messaging is tested. Any thread may call.
class PMemoryIPEventImp {
public:
    enum class Use { cOpen, cOpenOrCreate };

    PMemoryIPEventImp(const GBuffer& identifier, Use use);
    PMemoryIPEventImp(PMemoryIPEventImp&& other) noexcept;
    ~PMemoryIPEventImp();

    bool IsThere() const noexcept { return mShared != nullptr; }
    void Set() noexcept;
    /// Stands for the system's handle; null when there is no event.
    void* GetHandle() const noexcept { return mShared.get(); }

    /// Waits at most so long for one of two events; either may be null or not be there. True when one was
    /// set.
    static bool WaitForEither(PMemoryIPEventImp* one, PMemoryIPEventImp* other, long milliseconds) noexcept;

private:
    struct Shared;

    static bool Take(PMemoryIPEventImp* event) noexcept;

    std::shared_ptr<Shared> mShared;
};
