#include "tests/tools/ChildProcess.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

PWin32ScopedHandle<PWin32FileHandle> OpenInheritable(const std::wstring& path) {
    SECURITY_ATTRIBUTES attributes{sizeof(attributes), nullptr, TRUE};
    return PWin32ScopedHandle<PWin32FileHandle>(::CreateFileW(path.c_str(), GENERIC_WRITE,
                                                              FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes,
                                                              CREATE_ALWAYS, 0, nullptr));
}

}  // namespace

ChildProcess::ChildProcess(const std::wstring& commandLine, const std::wstring& outputPath,
                           const std::wstring& errorPath) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    const auto output = OpenInheritable(outputPath);
    const auto error = OpenInheritable(errorPath);
    startup.hStdOutput = output.Get();
    startup.hStdError = error.Get();
    PROCESS_INFORMATION process{};
    std::wstring line = commandLine;
    // A program without a path is looked for beside this one first.
    if (::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
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
