#include "examples/PrinterProcessorWin/JobOutput.h"

#include "examples/PrinterProcessorWin/JobText.h"
#include "tools/console/Console.h"

void JobOutput::Write(const Job& job) {
    const auto text = mJson ? FormatAsJson(job.record, job.file) : FormatAsLines(job.record, job.file);
    if (!Console::Write(text)) mHasFailed = true;
}

void JobOutput::Write(const Job& job, const std::wstring& program, const ProgramResult& result) {
    const auto text =
        mJson ? FormatAsJson(job.file, program, result) : FormatAsLines(job.file, program, result);
    if (!Console::Write(text)) mHasFailed = true;
}
