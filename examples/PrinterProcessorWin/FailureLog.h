#pragma once

#include <string>

/// FailureLog: lines for the standard error output. A line that repeats the one before it is written
/// again only after a minute: what goes wrong on a tick may go wrong on every tick.
class FailureLog {
public:
    /// Control characters in the text show as question marks.
    void Write(const std::wstring& line);

private:
    std::wstring mLast;
    unsigned long long mLastTime = 0;
};
