#pragma once

#include <cstdint>

#include "monitor/spooling/CallbackOutcome.h"
#include "monitor/spooling/MonitorPlatform.h"
#include "monitor/spooling/MonitorState.h"

/// MonitorPort: the one port, as the spooler lists, opens and closes it.
///
/// The caller holds the monitor's lock, except for Reset. Texts are zero-terminated UTF-16.
class MonitorPort {
public:
    MonitorPort(MonitorPlatform& platform, MonitorState& state) noexcept
        : mPlatform(platform), mState(state) {}

    /// Describes the port in the spooler's record of `level` 1 or 2 at the start of `buffer`, whose
    /// texts stand at the very end of it. `needed` gets the bytes that it takes, `returned` the number
    /// of records; both are untouched for any other level.
    CallbackOutcome Enumerate(std::uint32_t level, unsigned char* buffer, std::uint32_t size,
                              unsigned long* needed, unsigned long* returned) const;
    /// Opens the port when it is closed and `name` is its name, letter for letter.
    CallbackOutcome Open(const unsigned short* name, void** handle);
    /// A job in progress is over by that, but its file and its printer stay open.
    CallbackOutcome Close(void* handle);
    /// True for the handle of the open port; never for null.
    bool IsOpenHandle(const void* handle) const noexcept;
    /// Back to "port closed, no job"; the printer is forgotten, not closed. Takes no lock: for
    /// shut-down, when no callback runs.
    void Reset() noexcept;

private:
    void Free() noexcept;

    MonitorPlatform& mPlatform;
    MonitorState& mState;
};
