#pragma once

#include <string>

/// RepeatFilter: which of many lines are worth telling. What goes wrong on a tick may go wrong on every tick.
class RepeatFilter {
public:
    /// False for a line that repeats the one before it within a minute.
    bool IsNew(const std::wstring& line);

private:
    std::wstring mLast;
    unsigned long long mLastTime = 0;
};
