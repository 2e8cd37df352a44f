#pragma once

#include <string>

#include "examples/PrinterProcessorWin/JobProgram.h"
#include "receiver/Job.h"

/// JobOutput: what this program says of jobs on the standard output, in lines or as JSON.
class JobOutput {
public:
    explicit JobOutput(bool json) : mJson(json) {}

    void Write(const Job& job);
    void Write(const Job& job, const std::wstring& program, const ProgramResult& result);
    /// Nobody reads it any more.
    bool HasFailed() const { return mHasFailed; }

private:
    bool mJson;
    bool mHasFailed = false;
};
