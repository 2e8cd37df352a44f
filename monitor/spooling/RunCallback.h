#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <utility>

#include "monitor/spooling/CallbackOutcome.h"
#include "monitor/spooling/MonitorPlatform.h"
#include "monitor/spooling/MonitorState.h"

/// What a callback answers when an exception comes out of its work.
struct CallbackFailure {
    std::optional<std::uint32_t> mLastError;  ///< unset: the exception goes on to the spooler
};

/// Runs the work of one callback: the boundary between the spooler and code that throws.
///
/// Traces `word`, then holds the monitor's lock while `body` (which gives a CallbackOutcome) runs.
/// An exception out of it becomes a failure with the given last error, or goes on to the caller after
/// the lock is free. The last error stays as it was before the call unless the outcome names one.
template <class Body>
bool RunCallback(MonitorPlatform& platform, MonitorState& state, const wchar_t* word, CallbackFailure failure,
                 Body&& body) {
    const std::uint32_t lastError = platform.GetLastError();
    platform.Trace(word);
    CallbackOutcome outcome = CallbackOutcome::SilentFailure();
    {
        const std::lock_guard<PCriticalSection> lock(state.sMonitorLock);
        try {
            outcome = std::forward<Body>(body)();
        } catch (...) {
            if (!failure.mLastError) throw;
            outcome = CallbackOutcome::Failure(*failure.mLastError);
        }
    }
    platform.SetLastError(outcome.mLastError.value_or(lastError));
    return outcome.mSucceeded;
}
