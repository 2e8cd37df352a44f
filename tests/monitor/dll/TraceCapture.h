#pragma once

#include "tests/Testing.h"

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

    /// From now on to the end of the process everything goes to the standard output, a word a line.
    static void EchoToOutput();

private:
    void* mHandler;
};
