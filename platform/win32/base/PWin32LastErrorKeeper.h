#pragma once

#include <cstdint>

#include "platform/base/PExport.h"

/// PWin32LastErrorKeeper: at the end of its scope the thread's last error is what it was at the start.
///
/// For clean-up that runs while an exception is being made from the last error, and for calls that change it
/// though they succeed.
class QUILLON_EXPORT PWin32LastErrorKeeper {
public:
    PWin32LastErrorKeeper() noexcept;
    PWin32LastErrorKeeper(const PWin32LastErrorKeeper&) = delete;
    PWin32LastErrorKeeper& operator=(const PWin32LastErrorKeeper&) = delete;
    ~PWin32LastErrorKeeper();

    std::uint32_t Get() const noexcept { return mLastError; }

private:
    const std::uint32_t mLastError;
};
