#include "tests/tools/ChildProcess.h"

#include "platform/win32/base/PWin32Api.h"

ChildProcess::ChildProcess(std::wstring commandLine, const std::wstring& outputPath,
                           const std::wstring& errorPath) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const auto open = [&](const std::wstring& path) {
        constexpr DWORD cShare = FILE_SHARE_READ | FILE_SHARE_WRITE;
        return PWin32ScopedHandle<PWin32FileHandle>(
            ::CreateFileW(path.c_str(), GENERIC_WRITE, cShare, &inherited, CREATE_ALWAYS, 0, nullptr));
    };
    const auto output = open(outputPath), error = open(errorPath);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.Get();
    startup.hStdError = error.Get();
    PROCESS_INFORMATION process{};
    // A program without a path is looked for beside this one first.
    if (::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                         &process)) {
        const PWin32ScopedHandle<PWin32KernelHandle> thread(process.hThread);
        mProcess.Reset(process.hProcess);
        mID = process.dwProcessId;
    }
}

ChildProcess::~ChildProcess() {
    if (mProcess && IsRunning()) Kill();
}

bool ChildProcess::IsRunning() const {
    return ::WaitForSingleObject(mProcess.Get(), 0) == WAIT_TIMEOUT;
}

void ChildProcess::Kill() const {
    ::TerminateProcess(mProcess.Get(), 99);
    ::WaitForSingleObject(mProcess.Get(), INFINITE);
}

long ChildProcess::WaitForExitCode() const {
    constexpr DWORD cWaitMilliseconds = 30000;
    DWORD exitCode = 0;
    if (::WaitForSingleObject(mProcess.Get(), cWaitMilliseconds) != WAIT_OBJECT_0) return -1;
    ::GetExitCodeProcess(mProcess.Get(), &exitCode);
    return static_cast<long>(exitCode);
}
