#pragma once

#include <exception>

#include "framework/core/GReceiver.h"
#include "framework/core/GTable.h"

/// GSignal: a numbered event and the receivers that asked to be told of it.
///
/// Receivers are told in the order of their subscription. They may subscribe and unsubscribe, also
/// each other, while the signal is being delivered: one that is added meanwhile is told as well, one
/// that is removed is not. Receivers are not owned. One thread at a time.
template <class Message>
class GSignal {
public:
    explicit GSignal(long number) : mNumber(number) {}
    GSignal(const GSignal&) = delete;
    GSignal& operator=(const GSignal&) = delete;

    long GetNumber() const noexcept { return mNumber; }

    /// A receiver that is subscribed already stays subscribed once.
    void Subscribe(GReceiver<Message>& receiver) {
        if (!IsSubscribed(receiver)) mReceivers.Append(&receiver);
    }

    void Unsubscribe(const GReceiver<Message>& receiver) {
        const long position = FindReceiver(receiver);
        if (position >= 0) mReceivers.Remove(position);
    }

    bool IsSubscribed(const GReceiver<Message>& receiver) const { return FindReceiver(receiver) >= 0; }

    /// Tells every receiver, also when one of them throws; then the first exception is thrown on.
    void Fire(const Message& message) {
        std::exception_ptr firstFailure;
        GTableIterator<GReceiver<Message>*> receivers(mReceivers);
        while (GReceiver<Message>** receiver = receivers.Next()) {
            try {
                (*receiver)->Receive(mNumber, message);
            } catch (...) {
                if (!firstFailure) firstFailure = std::current_exception();
            }
        }
        if (firstFailure) std::rethrow_exception(firstFailure);
    }

private:
    long FindReceiver(const GReceiver<Message>& receiver) const {
        for (long position = 0; position < mReceivers.GetCount(); ++position)
            if (mReceivers[position] == &receiver) return position;
        return -1;
    }

    long mNumber;
    GTable<GReceiver<Message>*> mReceivers;
};
