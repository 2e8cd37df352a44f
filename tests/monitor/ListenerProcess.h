#pragma once

#include <string>
#include <vector>

#include "platform/win32/PWin32Api.h"

/// A running TestListener; killed at the end if it still runs.
class ListenerProcess {
public:
    /// Returns once it listens. Throws when it does not start.
    explicit ListenerProcess(const std::wstring& mode);
    ListenerProcess(const ListenerProcess&) = delete;
    ListenerProcess& operator=(const ListenerProcess&) = delete;
    ~ListenerProcess();

    /// Of a listener with a full queue: returns when it has emptied it.
    void Drain();
    /// Lets it go and end, and waits for that; the exit code.
    DWORD Finish();
    /// The leaves of the job paths it has been told, in order.
    std::vector<std::wstring> GetJobs() const;

private:
    std::wstring mOutput;
    HANDLE mReady;
    HANDLE mGo;
    HANDLE mDrained;
    HANDLE mEnd;
    PROCESS_INFORMATION mProcess{};
};
