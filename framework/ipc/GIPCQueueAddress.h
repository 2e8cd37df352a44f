#pragma once

#include <cstdint>

#include "framework/core/GExport.h"

/// GIPCQueueAddress: what names one process's queue machine-wide. Session -1 is the name space that all
/// sessions share.
struct QUILLON_EXPORT GIPCQueueAddress {
    std::int32_t mSession = 0;         ///< whose name space the queue lies in
    std::int32_t mProcessID = 0;       ///< whose queue it is
    std::int32_t mRegistrationID = 0;  ///< which of its queues

    bool operator==(const GIPCQueueAddress&) const = default;
};
