#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "examples/PrinterProcessorWin/JobProgram.h"
#include "examples/PrinterProcessorWin/ProgramCommand.h"

class FailureLog;
class JobOutput;

/// JobQueue: hands jobs out in their order. It shows each job, and runs the command for it, for so many at a
/// time; the others wait. How each program ended is shown, too.
///
/// A job whose program fails keeps its file, and is not handed out again.
class JobQueue {
public:
    /// Without a command no job waits. `output` and `log` outlive the queue.
    JobQueue(std::optional<ProgramCommand> command, std::size_t atATime, JobOutput& output, FailureLog& log);

    /// Its file is taken over, or could not be taken.
    void Add(Job job);
    /// Shows which programs have ended, and hands out the jobs whose turn has come.
    void Tick();
    /// How many jobs came.
    int GetCount() const { return mCount; }
    /// No program runs.
    bool IsIdle() const { return mRunning.empty(); }
    /// A job was not handed out, or its program did not succeed.
    bool HasFailed() const { return mHasFailed; }
    /// Handles to wait for: each is signalled when a program has ended.
    std::vector<void*> GetHandles() const;

    /// Reports each job that waits, and forgets it; the file stays as it is.
    void LeaveWaiting();
    /// The same for the programs that run: they go on.
    void LeaveRunning();

private:
    void HandOut(Job job);
    void CollectEnded();

    std::optional<ProgramCommand> mCommand;
    std::size_t mAtATime;
    JobOutput& mOutput;
    FailureLog& mLog;
    std::deque<Job> mWaiting;
    std::vector<std::unique_ptr<JobProgram>> mRunning;
    int mCount = 0;
    bool mHasFailed = false;
};
