#pragma once

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
};
