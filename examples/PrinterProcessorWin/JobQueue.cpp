#include "examples/PrinterProcessorWin/JobQueue.h"

#include <utility>

#include "examples/PrinterProcessorWin/FailureLog.h"
#include "examples/PrinterProcessorWin/JobOutput.h"

JobQueue::JobQueue(std::optional<ProgramCommand> command, std::size_t atATime, JobOutput& output,
                   FailureLog& log)
    : mCommand(std::move(command)), mAtATime(atATime), mOutput(output), mLog(log) {}

void JobQueue::Add(Job job) {
    ++mCount;
    if (!job.file.problem.empty()) mLog.Write(job.file.problem);
    // There is nothing to wait for without a file.
    if (!job.file.bytes) return HandOut(std::move(job));
    mWaiting.push_back(std::move(job));
    Tick();
}

void JobQueue::Tick() {
    CollectEnded();
    while (!mWaiting.empty() && mRunning.size() < mAtATime) {
        Job job = std::move(mWaiting.front());
        mWaiting.pop_front();
        HandOut(std::move(job));
    }
}

void JobQueue::HandOut(Job job) {
    if (!job.file.HandOut()) {
        mHasFailed = true;
        mLog.Write(job.file.problem);
        return;
    }
    mOutput.Write(job);
    if (!mCommand) return;
    if (job.file.bytes) {
        mRunning.push_back(std::make_unique<JobProgram>(*mCommand, std::move(job)));
        CollectEnded();
    } else {
        mHasFailed = true;
    }
}

void JobQueue::CollectEnded() {
    std::erase_if(mRunning, [this](const std::unique_ptr<JobProgram>& program) {
        if (!program->HasEnded()) return false;
        const ProgramResult result = program->GetResult();
        if (result.outcome != ProgramResult::cSucceeded) mHasFailed = true;
        mOutput.Write(program->GetJob(), mCommand->GetProgram(), result);
        return true;
    });
}

std::vector<void*> JobQueue::GetHandles() const {
    std::vector<void*> handles;
    for (const auto& program : mRunning)
        if (program->GetHandle() != nullptr) handles.push_back(program->GetHandle());
    return handles;
}

void JobQueue::LeaveWaiting() {
    for (const Job& job : mWaiting) mLog.Write(L"Not handed out, left for --pending: " + job.file.path);
    mWaiting.clear();
}

void JobQueue::LeaveRunning() {
    for (const auto& program : mRunning) {
        mLog.Write(L"Left running, process " + std::to_wstring(program->GetProcessID()) + L": " +
                   program->GetJob().file.path);
        mOutput.Write(program->GetJob(), mCommand->GetProgram(), program->GetResult());
    }
    mHasFailed = mHasFailed || !mRunning.empty();
    mRunning.clear();
}
