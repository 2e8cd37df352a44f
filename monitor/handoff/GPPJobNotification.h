#pragma once

#include "monitor/handoff/JobNotifier.h"

/// GPPJobNotification: the way from the monitor to every running PrinterProcessorWin, in whatever
/// session.
///
/// The message is put into the queues of all of them first; then they have GPPIPCManager::cTakenLimit, all
/// together, to take it. Waits for shared mutexes are limited to GPPPrinterProcessorLayer::cWaitLimit on top
/// of that. A target that is not reached by then, or whose shared memory makes no sense, counts as not told
/// and is traced. Called under the monitor's lock.
class GPPJobNotification final : public JobNotifier {
public:
    /// File name of the programs that are told; the case of its letters counts.
    static constexpr const char* cListenerName = "PrinterProcessorWin.exe";

    GPPJobNotification() noexcept = default;

    /// Tries to start the layer first when it does not run. Throws GExceptionID::cMessageTooLarge for a
    /// record that is too large for any queue, and for want of memory; nothing else.
    bool NotifyPrintProcessor(const GPPJobRecord& record) override;
    void RetryDelayed() noexcept override;
};
