#pragma once

#include <string>
#include <vector>

/// Collects what this process sends to the debugger's output while it lives, on all threads, and keeps it
/// from going anywhere else.
class TraceCapture {
public:
    TraceCapture();
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;
    ~TraceCapture();

    /// The words so far, which are forgotten by that.
    std::vector<std::string> Take();

private:
    void* mHandler;
};

/// Starts this program again with the given argument, as a debugger does, and returns what it sends to the
/// debugger's output until it has ended.
std::vector<std::string> TraceOfRun(const std::wstring& argument);
