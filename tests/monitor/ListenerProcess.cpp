#include "tests/monitor/ListenerProcess.h"

#include <stdexcept>

#include "tests/monitor/MonitorLibrary.h"

namespace {

constexpr DWORD cPatience = 20000;  // milliseconds, for what takes a fraction of it

HANDLE MakeEvent(const std::wstring& name) {
    return ::CreateEventW(nullptr, TRUE, FALSE, name.c_str());
}

/// The listener's program lies in a folder beside this one, since it bears a product's name.
std::wstring GetProgram() {
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring self(path);
    return self.substr(0, self.find_last_of(L'\\')) +
           L"\\..\\test-support\\listener\\PrinterProcessorWin.exe";
}

}  // namespace

ListenerProcess::ListenerProcess(const std::wstring& mode) {
    static int sCount = 0;
    const std::wstring name = std::to_wstring(::GetCurrentProcessId()) + L"-" + std::to_wstring(++sCount);
    const std::wstring prefix = L"QuillonTestListener-" + name + L"-";
    mOutput = GetTestFolder() + L"listener-" + name + L".txt";
    mReady = MakeEvent(prefix + L"ready");
    mGo = MakeEvent(prefix + L"go");
    mDrained = MakeEvent(prefix + L"drained");
    mEnd = MakeEvent(prefix + L"end");
    const std::wstring program = GetProgram();
    std::wstring command = L"\"" + program + L"\" " + mode + L" " + prefix + L" \"" + mOutput + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    if (!::CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &startup, &mProcess)) {
        throw std::runtime_error("the listener cannot be started");
    }
    const HANDLE either[] = {mReady, mProcess.hProcess};
    if (::WaitForMultipleObjects(2, either, FALSE, cPatience) != WAIT_OBJECT_0) {
        throw std::runtime_error("the listener does not listen");
    }
}

ListenerProcess::~ListenerProcess() {
    ::TerminateProcess(mProcess.hProcess, 1);
    ::WaitForSingleObject(mProcess.hProcess, cPatience);
    for (const HANDLE handle : {mReady, mGo, mDrained, mEnd, mProcess.hThread, mProcess.hProcess})
        ::CloseHandle(handle);
}

void ListenerProcess::Drain() {
    ::SetEvent(mGo);
    ::WaitForSingleObject(mDrained, cPatience);
}

DWORD ListenerProcess::Finish() {
    ::SetEvent(mGo);
    ::SetEvent(mEnd);
    ::WaitForSingleObject(mProcess.hProcess, cPatience);
    DWORD code = 0;
    ::GetExitCodeProcess(mProcess.hProcess, &code);
    return code;
}

std::vector<std::wstring> ListenerProcess::GetJobs() const {
    const std::string bytes = ReadFileBytes(mOutput);
    std::vector<std::wstring> jobs;
    for (std::size_t start = 0, end; (end = bytes.find('\n', start)) != std::string::npos; start = end + 1) {
        const std::string path = bytes.substr(start, end - start);
        const std::string leaf = path.substr(path.find_last_of('\\') + 1);
        jobs.emplace_back(leaf.begin(), leaf.end());
    }
    return jobs;
}
