#include "examples/PrinterProcessorWin/FailureLog.h"

#include "tools/console/Console.h"

void FailureLog::Write(const std::wstring& line) {
    if (mRepeats.IsNew(line)) Console::WriteError(MakePrintable(line) + L'\n');
}
