#pragma once

#include <string>
#include <vector>

/// A job that the spooler has not finished.
struct QueuedJob {
    unsigned long number = 0;
    std::wstring document;
    std::wstring user;
    std::wstring state;     // in words; empty: it waits for its turn
    long long seconds = 0;  // since it was printed
};

/// PrintQueue: what waits at a printer.
struct PrintQueue {
    /// In the order of printing. Throws a Failure when the spooler does not tell, as Wine's.
    static std::vector<QueuedJob> GetJobs(const std::wstring& printer);
    /// The words for the flags of a job's state (JOB_STATUS_...), with commas between them.
    static std::wstring Describe(unsigned long status);
};
