#pragma once

#include <string>

#include "framework/system/GExternalProcess.h"
#include "receiver/Job.h"

class ProgramCommand;

/// ProgramResult: how the program of a job ended.
struct ProgramResult {
    enum Outcome {
        cSucceeded,   ///< it ended by itself, with 0
        cFailed,      ///< with any other exit code, as one that somebody has ended
        cCrashed,     ///< with the exit code of an exception that it did not handle
        cNotStarted,  ///< `problem` tells
        cStillRunning
    };
    Outcome outcome = cStillRunning;
    /// Shown in the way of the system: as an unsigned number.
    unsigned long exitCode = 0;
    unsigned long long milliseconds = 0;
    std::wstring problem;

    /// What an exit code means.
    static Outcome Judge(unsigned long exitCode);
};

/// JobProgram: one program at work for one job. It goes on when the object goes; one thread at a time.
class JobProgram {
public:
    /// Starts the program, in a console of its own that is hidden, in the current folder. The job's fields
    /// are variables of its environment (JobVariables).
    JobProgram(const ProgramCommand& command, Job job);

    const Job& GetJob() const { return mJob; }
    /// Asks the system.
    bool HasEnded();
    /// While it runs: the time so far.
    ProgramResult GetResult() const;
    long GetProcessID() const { return mProcess.GetProcessID(); }
    /// A handle that is signalled when the program has ended; null when there is none to be had.
    void* GetHandle() const { return mEnd.Get(); }

private:
    Job mJob;
    GExternalProcess mProcess;
    PWin32ScopedHandle<PWin32KernelHandle> mEnd;
    unsigned long long mStart;
    ProgramResult mResult;
};
