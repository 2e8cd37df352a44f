#include "tests/tools/ChildProcess.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

HANDLE OpenInheritable(const std::wstring& path) {
    SECURITY_ATTRIBUTES attributes{sizeof(attributes), nullptr, TRUE};
    return ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes,
                         CREATE_ALWAYS, 0, nullptr);
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
    startup.hStdOutput = OpenInheritable(outputPath);
    startup.hStdError = OpenInheritable(errorPath);
    PROCESS_INFORMATION process{};
    const std::wstring program = GetOwnFolder() + commandLine.substr(0, commandLine.find(L' '));
    std::wstring line = commandLine;
    if (::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                         &process)) {
        ::CloseHandle(process.hThread);
        mProcess = process.hProcess;
        mID = process.dwProcessId;
    }
    ::CloseHandle(startup.hStdOutput);
    ::CloseHandle(startup.hStdError);
}

ChildProcess::~ChildProcess() {
    if (mProcess == nullptr) return;
    if (IsRunning()) Kill();
    ::CloseHandle(mProcess);
}

bool ChildProcess::IsRunning() const {
    return ::WaitForSingleObject(mProcess, 0) == WAIT_TIMEOUT;
}

void ChildProcess::Kill() const {
    ::TerminateProcess(mProcess, 99);
    ::WaitForSingleObject(mProcess, INFINITE);
}

long ChildProcess::WaitForExitCode() const {
    constexpr DWORD cWaitMilliseconds = 30000;
    DWORD exitCode = 0;
    if (::WaitForSingleObject(mProcess, cWaitMilliseconds) != WAIT_OBJECT_0) return -1;
    ::GetExitCodeProcess(mProcess, &exitCode);
    return static_cast<long>(exitCode);
}
