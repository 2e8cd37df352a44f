#pragma once

#include "framework/core/GExport.h"
#include "framework/core/events/GSignal.h"

/// GBasicSignals: the framework's own signals.
///
/// Only one so far: the repeater signal, the framework's heartbeat. Its source is the program: it calls
/// DevoteTimeToRepeaters regularly, from a timer or an idle loop, on the one thread that owns whatever
/// subscribed. How often decides how fast messages between processes arrive.
class QUILLON_EXPORT GBasicSignals {
public:
    static constexpr long cRepeaterSignal = 101;  ///< the number of the repeater signal

    static GSignal<GEmptyMessage>& GetRepeaters();  ///< the repeater signal, made on first use
    /// Fires the repeater signal once. Throws what a receiver threw, after all have been told.
    static void DevoteTimeToRepeaters();
};
