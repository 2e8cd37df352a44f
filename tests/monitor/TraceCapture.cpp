#include "tests/monitor/TraceCapture.h"

#include <mutex>
#include <utility>

#include "platform/win32/PWin32Api.h"

namespace {

constexpr DWORD cNarrowText = 0x40010006;  // DBG_PRINTEXCEPTION_C
constexpr DWORD cWideText = 0x4001000A;    // DBG_PRINTEXCEPTION_WIDE_C

std::mutex sLock;
std::vector<std::string> sWords;

/// Debug output is an exception that the system handles when nobody else does.
LONG CALLBACK TakeDebugOutput(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    std::string word;
    if (record.ExceptionCode == cNarrowText) {
        word = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
    } else if (record.ExceptionCode == cWideText) {
        const std::wstring text(reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]));
        for (const wchar_t unit : text) word += unit < 0x80 ? static_cast<char>(unit) : '?';
    } else {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    const std::lock_guard<std::mutex> lock(sLock);
    sWords.push_back(word);
    return EXCEPTION_CONTINUE_EXECUTION;
}

std::string TextOfEvent(HANDLE process, const OUTPUT_DEBUG_STRING_INFO& event) {
    std::string text(event.nDebugStringLength, '\0');
    SIZE_T count = 0;
    ::ReadProcessMemory(process, event.lpDebugStringData, text.data(), text.size(), &count);
    return text.substr(0, text.find('\0'));
}

std::vector<std::string> Debug(const PROCESS_INFORMATION& process) {
    std::vector<std::string> words;
    DEBUG_EVENT event{};
    do {
        ::WaitForDebugEvent(&event, INFINITE);
        DWORD answer = DBG_CONTINUE;
        if (event.dwDebugEventCode == OUTPUT_DEBUG_STRING_EVENT) {
            words.push_back(TextOfEvent(process.hProcess, event.u.DebugString));
        } else if (event.dwDebugEventCode == EXCEPTION_DEBUG_EVENT &&
                   event.u.Exception.ExceptionRecord.ExceptionCode != EXCEPTION_BREAKPOINT) {
            answer = DBG_EXCEPTION_NOT_HANDLED;
        }
        ::ContinueDebugEvent(event.dwProcessId, event.dwThreadId, answer);
    } while (event.dwDebugEventCode != EXIT_PROCESS_DEBUG_EVENT);
    return words;
}

}  // namespace

TraceCapture::TraceCapture() : mHandler(::AddVectoredExceptionHandler(1, TakeDebugOutput)) {
    Take();
}

TraceCapture::~TraceCapture() {
    ::RemoveVectoredExceptionHandler(mHandler);
}

std::vector<std::string> TraceCapture::Take() {
    const std::lock_guard<std::mutex> lock(sLock);
    return std::exchange(sWords, {});
}

std::vector<std::string> TraceOfRun(const std::wstring& argument) {
    wchar_t program[MAX_PATH];
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring command = L"\"" + std::wstring(program) + L"\" " + argument;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(program, command.data(), nullptr, nullptr, FALSE, DEBUG_ONLY_THIS_PROCESS, nullptr,
                          nullptr, &startup, &process)) {
        return {"(not started)"};
    }
    const std::vector<std::string> words = Debug(process);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return words;
}
