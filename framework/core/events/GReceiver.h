#pragma once

#include "PPlatformTypes.h"

/// GReceiver: base of everything that signals carrying a `Message` can be delivered to.
///
/// A receiver unsubscribes from its signals before it is destroyed. It owns a recursive lock for its
/// subclass to guard what a signal and other threads both touch; delivery itself takes no lock.
template <class Message>
class GReceiver {
public:
    GReceiver() = default;
    GReceiver(const GReceiver&) = delete;
    GReceiver& operator=(const GReceiver&) = delete;
    virtual ~GReceiver() = default;

    /// Called on the thread that fires the signal. What it throws reaches whoever fired, once the
    /// other receivers have been served.
    virtual void Receive(long signalNumber, const Message& message) = 0;

protected:
    PCriticalSection& GetReceiverLock() noexcept { return mReceiverLock; }  ///< recursive; for the subclass

private:
    PCriticalSection mReceiverLock;
};
