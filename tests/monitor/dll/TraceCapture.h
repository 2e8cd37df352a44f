#pragma once

#include <mutex>

#include "platform/win32/base/PWin32Api.h"
#include "tests/Testing.h"

using Words = std::vector<std::string>;

/// Collects what this process sends to the debugger's output while it lives, on all threads, and keeps it
/// from going anywhere else.
class TraceCapture {
public:
    TraceCapture() : mHandler(::AddVectoredExceptionHandler(1, TakeDebugOutput)) { Take(); }
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;
    ~TraceCapture() { ::RemoveVectoredExceptionHandler(mHandler); }

    /// The words so far, which are forgotten by that.
    Words Take() {
        const std::lock_guard<std::mutex> lock(sLock);
        return std::exchange(sWords, {});
    }
    /// From now on to the end of the process everything goes to the standard errors, a word a line.
    static void EchoToErrors() {
        sEchoes = true;
        ::AddVectoredExceptionHandler(1, TakeDebugOutput);
    }

private:
    static constexpr DWORD cNarrowText = 0x40010006;  // DBG_PRINTEXCEPTION_C
    static constexpr DWORD cWideText = 0x4001000A;    // DBG_PRINTEXCEPTION_WIDE_C

    /// Debug output is an exception that the system handles when nobody else does.
    static LONG CALLBACK TakeDebugOutput(EXCEPTION_POINTERS* pointers) {
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        const ULONG_PTR text = record.ExceptionInformation[1];
        std::string word;
        if (record.ExceptionCode == cNarrowText)
            word = reinterpret_cast<const char*>(text);
        else if (record.ExceptionCode == cWideText)
            for (const wchar_t unit : std::wstring_view(reinterpret_cast<const wchar_t*>(text)))
                word += unit < 0x80 ? static_cast<char>(unit) : '?';
        else
            return EXCEPTION_CONTINUE_SEARCH;
        if (sEchoes) {
            // Without the lock: at the end of the process a thread that was killed may have it.
            DWORD count = 0;
            word += '\n';
            ::WriteFile(::GetStdHandle(STD_ERROR_HANDLE), word.data(), static_cast<DWORD>(word.size()),
                        &count, nullptr);
            return EXCEPTION_CONTINUE_EXECUTION;
        }
        const std::lock_guard<std::mutex> lock(sLock);
        sWords.push_back(word);
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    static inline std::mutex sLock;
    static inline Words sWords;
    static inline bool sEchoes = false;

    void* mHandler;
};
