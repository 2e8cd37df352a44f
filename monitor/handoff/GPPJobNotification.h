#pragma once

#include "monitor/handoff/JobNotifier.h"

/// GPPJobNotification: the way from the monitor to every running PrinterProcessorWin, in whatever
/// session.
///
/// Waits for shared mutexes are limited to GPPPrinterProcessorLayer::cWaitLimit for one notification. A
/// target that is not reached by then, or whose shared memory makes no sense, counts as not told. On top
/// of that each target has its few seconds to take the message. Called under the monitor's lock.
class GPPJobNotification final : public JobNotifier {
public:
    GPPJobNotification() noexcept = default;

    /// Tries to start the layer first when it does not run. Throws 40153 for a record that is too large
    /// for any queue, and for want of memory.
    bool NotifyPrintProcessor(const GPPJobRecord& record) override;
    void RetryDelayed() noexcept override;
};
