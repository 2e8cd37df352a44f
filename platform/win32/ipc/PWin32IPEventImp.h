#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

/// PWin32IPEventImp: a named Windows event that all sessions and users share. One wait that sees it set
/// resets it.
///
/// An event only saves time. So nothing is thrown: where the system refuses it there is none, and the calls
/// do nothing.
class QUILLON_EXPORT PWin32IPEventImp {
public:
    enum class Use { cOpen, cOpenOrCreate };

    /// In the machine-wide name space.
    PWin32IPEventImp(const GBuffer& identifier, Use use);

    bool IsThere() const noexcept { return static_cast<bool>(mHandle); }
    void Set() noexcept;
    /// The system's own, for waiting together with others; null when there is none.
    void* GetHandle() const noexcept { return mHandle.Get(); }

    /// Waits at most so long for one of two events; either may be null or not be there. True when one was
    /// set.
    static bool WaitForEither(PWin32IPEventImp* one, PWin32IPEventImp* other, long milliseconds) noexcept;

private:
    PWin32ScopedHandle<PWin32KernelHandle> mHandle;
};
