#include "examples/PrinterProcessorWin/FailureLog.h"

#include "platform/win32/base/PWin32Api.h"
#include "tools/console/Console.h"

void FailureLog::Write(const std::wstring& line) {
    constexpr unsigned long long cQuietMilliseconds = 60000;
    const unsigned long long now = ::GetTickCount64();
    if (line == mLast && now - mLastTime < cQuietMilliseconds) return;
    mLast = line;
    mLastTime = now;
    Console::WriteError(MakePrintable(line) + L'\n');
}
