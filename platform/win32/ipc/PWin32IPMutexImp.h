#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

/// PWin32IPMutexImp: a named Windows mutex that all sessions and users share.
///
/// Refusals of the system throw GExceptionID::cGeneral with its text.
class QUILLON_EXPORT PWin32IPMutexImp {
public:
    /// Opens or creates the mutex of that name in the machine-wide name space.
    explicit PWin32IPMutexImp(const GBuffer& identifier);
    PWin32IPMutexImp(const PWin32IPMutexImp&) = delete;
    PWin32IPMutexImp& operator=(const PWin32IPMutexImp&) = delete;
    virtual ~PWin32IPMutexImp();

    /// Waits without limit. A mutex whose holder has died is taken over silently.
    void Lock();
    /// False when it could not be had within so many seconds, or the wait failed.
    [[nodiscard]] bool TryToLock(double seconds);
    void Unlock();
    void Close();

    /// The name space: "Global\", or nothing (GOSVersion::HasGlobalMutexes).
    static GBuffer GetMemoryPath();
    /// The length of the longest identifier.
    static long GetMaxIDSize();

private:
    PWin32ScopedHandle<PWin32KernelHandle> mHandle;
};
