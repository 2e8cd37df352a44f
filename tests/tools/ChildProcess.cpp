#include "tests/tools/ChildProcess.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

PWin32ScopedHandle<PWin32FileHandle> OpenInheritable(const std::wstring& path) {
    SECURITY_ATTRIBUTES attributes{sizeof(attributes), nullptr, TRUE};
    return PWin32ScopedHandle<PWin32FileHandle>(::CreateFileW(path.c_str(), GENERIC_WRITE,
                                                              FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes,
                                                              CREATE_ALWAYS, 0, nullptr));
}

std::wstring GetOwnFolder() {
    std::wstring path(4096, L'\0');
    path.resize(::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.find_last_of(L'\\') + 1);
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
    const std::wstring program = GetOwnFolder() + commandLine.substr(0, commandLine.find(L' '));
    std::wstring line = commandLine;
    if (::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
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
