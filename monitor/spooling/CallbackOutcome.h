#pragma once

#include <cstdint>
#include <optional>

/// The codes of Windows with which the callbacks explain a refusal.
struct MonitorError {
    static constexpr std::uint32_t cInvalidFunction = 1;
    static constexpr std::uint32_t cInvalidHandle = 6;
    static constexpr std::uint32_t cOutOfMemory = 14;
    static constexpr std::uint32_t cHandleDiskFull = 39;
    static constexpr std::uint32_t cInvalidParameter = 87;
    static constexpr std::uint32_t cInsufficientBuffer = 122;
    static constexpr std::uint32_t cInvalidLevel = 124;
    static constexpr std::uint32_t cBusy = 170;
    static constexpr std::uint32_t cCannotComplete = 1003;
    static constexpr std::uint32_t cUnknownPort = 1796;
    static constexpr std::uint32_t cInvalidPrinterState = 1906;
    static constexpr std::uint32_t cNoStartDoc = 3003;
};

/// CallbackOutcome: what a callback tells the spooler.
struct CallbackOutcome {
    bool mSucceeded;
    std::optional<std::uint32_t> mLastError;  ///< unset: the thread's last error stays as it was

    static constexpr CallbackOutcome Success() noexcept { return {true, std::nullopt}; }
    static constexpr CallbackOutcome Failure(std::uint32_t code) noexcept { return {false, code}; }
    static constexpr CallbackOutcome SilentFailure() noexcept { return {false, std::nullopt}; }
};
