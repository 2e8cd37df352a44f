#pragma once

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

/// GIPCFailure: whose fault a failure of the messaging is. The one list of them.
struct GIPCFailure {
    /// True for what no target can help: the message is too large for any queue, or memory has run out.
    static bool IsOfSender(const GException& failure) {
        const long id = failure.GetExceptionID();
        return id == GExceptionID::cMessageTooLarge || id == GExceptionID::cOutOfMemory;
    }
    /// True for what tells that a queue or registry is gone or makes no sense. A mutex that was not to be
    /// had in time tells nothing: its holder may be anybody.
    static bool IsOfTarget(const GException& failure) {
        return !IsOfSender(failure) && failure.GetExceptionID() != GExceptionID::cCouldNotLockMutex;
    }
};
