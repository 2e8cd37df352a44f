#include "framework/core/events/GBasicSignals.h"

GSignal<GEmptyMessage>& GBasicSignals::GetRepeaters() {
    static GSignal<GEmptyMessage> sRepeaters(cRepeaterSignal);
    return sRepeaters;
}

void GBasicSignals::DevoteTimeToRepeaters() {
    GetRepeaters().Fire(GEmptyMessage());
}
