#pragma once

#include <string>

#include "platform/win32/base/PWin32ScopedHandle.h"

/// ChildProcess: a program of this build, running with its output in a file. Whatever still runs when the
/// object goes is ended.
class ChildProcess {
public:
    /// `commandLine` begins with the program's file name; it stands beside this test program.
    ChildProcess(std::wstring commandLine, const std::wstring& outputPath, const std::wstring& errorPath);
    ChildProcess(ChildProcess&&) = default;
    ~ChildProcess();

    unsigned long GetID() const { return mID; }
    bool IsRunning() const;
    /// Ends it on the spot and waits until it has gone.
    void Kill() const;
    /// Waits half a minute at most; -1 when it still runs then.
    long WaitForExitCode() const;

private:
    PWin32ScopedHandle<PWin32KernelHandle> mProcess;
    unsigned long mID = 0;
};
