#pragma once

#include <vector>

/// StopRequest: turns Ctrl-C, Ctrl-Break, the closing of the console window, logging off and shutting
/// down into a wish to end that the program's loop sees.
///
/// One at a time. While it exists, the system's own answer, ending the process on the spot, is off.
class StopRequest {
public:
    /// Throws std::runtime_error when the system refuses.
    StopRequest();
    StopRequest(const StopRequest&) = delete;
    StopRequest& operator=(const StopRequest&) = delete;
    ~StopRequest();

    /// An event, set as soon as the program should end.
    void* GetHandle() const;
    bool IsMade() const;
    /// Until it is made, one of the handles is signalled (60 at most), or the time is over.
    void WaitWith(std::vector<void*> handles, unsigned long milliseconds) const;
    /// From here on it is made when it is made once more.
    void Forget() const;
    /// The process has a few seconds at most: its window is closed, or its user logs off.
    bool IsPressing() const;
};
