#pragma once

#include <algorithm>

#include "framework/core/containers/GTable.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/core/events/GReceiver.h"

/// GEmptyMessage: what a signal carries that says no more than its number.
struct GEmptyMessage {};

/// GSignal: a numbered event and the receivers that asked to be told of it.
///
/// Receivers are told in the order of their subscription. They may subscribe and unsubscribe, also
/// each other, while the signal is being delivered: one that is added meanwhile is told as well, one
/// that is removed is not. Receivers are not owned. One thread at a time.
template <class Message>
class GSignal {
public:
    explicit GSignal(long number) : mNumber(number) {}  ///< receivers are handed the number with each message
    GSignal(const GSignal&) = delete;
    GSignal& operator=(const GSignal&) = delete;

    long GetNumber() const noexcept { return mNumber; }  ///< as it was given

    /// A receiver that is subscribed already stays subscribed once.
    void Subscribe(GReceiver<Message>& receiver) {
        if (!IsSubscribed(receiver)) mReceivers.Append(&receiver);
    }

    /// A receiver that is not subscribed is no error.
    void Unsubscribe(const GReceiver<Message>& receiver) {
        // At the end, where it is not found, there is nothing to remove.
        mReceivers.Remove(static_cast<long>(FindReceiver(receiver) - mReceivers.begin()));
    }

    /// Whether it is told of this signal.
    bool IsSubscribed(const GReceiver<Message>& receiver) const {
        return FindReceiver(receiver) != mReceivers.end();
    }

    /// Tells every receiver, also when one of them throws; then the first exception is thrown on.
    void Fire(const Message& message) {
        GFirstFailure failure;
        GTableIterator<GReceiver<Message>*> receivers(mReceivers);
        while (GReceiver<Message>** receiver = receivers.Next())
            failure.Run([&] { (*receiver)->Receive(mNumber, message); });
        failure.Throw();
    }

private:
    GReceiver<Message>* const* FindReceiver(const GReceiver<Message>& receiver) const {
        return std::find(mReceivers.begin(), mReceivers.end(), &receiver);
    }

    long mNumber;
    GTable<GReceiver<Message>*> mReceivers;
};
