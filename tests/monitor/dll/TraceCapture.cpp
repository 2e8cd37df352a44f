#include "tests/monitor/dll/TraceCapture.h"

#include <mutex>

#include "platform/win32/base/PWin32Api.h"

namespace {

constexpr DWORD cNarrowText = 0x40010006;  // DBG_PRINTEXCEPTION_C
constexpr DWORD cWideText = 0x4001000A;    // DBG_PRINTEXCEPTION_WIDE_C

std::mutex sLock;
std::vector<std::string> sWords;
bool sEchoes = false;

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
    if (sEchoes) {
        // Without the lock: at the end of the process a thread that was killed may have it.
        DWORD count = 0;
        word += '\n';
        ::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), word.data(), static_cast<DWORD>(word.size()), &count,
                    nullptr);
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    const std::lock_guard<std::mutex> lock(sLock);
    sWords.push_back(word);
    return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

TraceCapture::TraceCapture() : mHandler(::AddVectoredExceptionHandler(1, TakeDebugOutput)) {
    Take();
}

void TraceCapture::EchoToOutput() {
    sEchoes = true;
    ::AddVectoredExceptionHandler(1, TakeDebugOutput);
}

TraceCapture::~TraceCapture() {
    ::RemoveVectoredExceptionHandler(mHandler);
}

std::vector<std::string> TraceCapture::Take() {
    const std::lock_guard<std::mutex> lock(sLock);
    return std::exchange(sWords, {});
}
