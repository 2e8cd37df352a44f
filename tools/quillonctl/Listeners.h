#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/core/containers/GTable.h"
#include "framework/ipc/GIPCQueueAddress.h"

/// A process that has registered for the notifications of printed jobs.
struct Listener {
    long session = 0;  // -1 when the system does not tell
    long processID = 0;
    bool isListening = true;  // false: it has ended, or left a broken queue, without signing off
    /// File name of its program, when that is another than the one whose processes the monitor tells; empty
    /// when the system does not tell it.
    std::optional<std::wstring> otherProgram = std::nullopt;

    bool IsTold() const;
    /// One line without a line end.
    std::wstring Format() const;
};

/// Listeners: the processes that have registered for finished jobs, told or not.
class Listeners {
public:
    /// Of all sessions, in the order of sessions and processes. Throws a Failure when the
    /// registries cannot be read, with what is in the way.
    static std::vector<Listener> GetAll();

    /// One listener for each process, in the order of first mention. A process stands in its session's
    /// registry and in the one that all sessions share, which is also that of session 0: the highest
    /// number is its session.
    static std::vector<Listener> Merge(const GTable<GIPCQueueAddress>& registrations);
};
