#pragma once

#include <string>

#include "receiver/RepeatFilter.h"

/// FailureLog: lines for the standard error output. A line that repeats the one before it is written
/// again only after a minute.
class FailureLog {
public:
    /// Control characters in the text show as question marks.
    void Write(const std::wstring& line);

private:
    RepeatFilter mRepeats;
};
