#pragma once

#include <cstdint>

#include "framework/system/GExternalProcessImp.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

/// PWinExternalProcessImp: a process by its handle, which is opened when it is first needed.
class PWinExternalProcessImp : public GExternalProcessImp {
public:
    explicit PWinExternalProcessImp(unsigned long processID) : mProcessID(processID) {}

    bool Run(const GPathName& program, const GTable<GString>& arguments, bool showWindow,
             bool argumentsPrepared, const GPathName& workingFolder) override;
    bool IsRunning() override;
    bool WaitForEnd(long milliseconds) override;
    long GetReturnValue() const override { return mReturnValue; }
    long GetProcessID() const override { return static_cast<long>(mProcessID); }
    bool SetPriority(long priority) override;
    bool TerminateProcess() override;
    void DetachProcess() override;

private:
    bool Obtain();
    bool Start(const wchar_t* application, const GString& line, bool showWindow, const GString& folder);

    PWin32ScopedHandle<PWin32KernelHandle> mProcess;
    bool mTried = false;  // a handle was obtained or refused
    PWin32ScopedHandle<PWin32KernelHandle> mThread;
    std::uint32_t mProcessID;
    std::int32_t mReturnValue = 0;
};
