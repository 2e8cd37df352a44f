#include "monitor/handoff/GPPJobNotification.h"

#include <new>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/core/events/GBasicSignals.h"
#include "framework/core/trace/GTraceLog.h"
#include "framework/ipc/GIPCFailure.h"
#include "framework/ipc/GWaitBudget.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/PSystem.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "monitor/handoff/GPPPrinterProcessorLayer.h"

namespace {

constexpr const char* cCategory = "Notification";  // in the trace log

bool TryToStartLayer() {
    if (GPPPrinterProcessorLayer::IsInitialized()) return true;
    try {
        GPPPrinterProcessorLayer::Initialize();
        return true;
    } catch (...) {
        // Whatever kept it from starting when the module was loaded still does.
        PSystem::Trace(L"GPPPrinterProcessorLayer could not be started");
        GTraceLog::TraceQuietly(cCategory, &GException::DescribeCurrent);
        return false;
    }
}

/// Whether a process that listens is a processing application, and not this one. Only those that listen are
/// asked for their names: on a terminal server with thousands of processes a list of all takes longer than
/// everything else.
bool IsProcessingApplication(std::int32_t processID) {
    GProcessInfo& processes = *GProcessInfo::GetInstance();
    return processID != processes.GetCurrentProcessID() &&
           processes.GetProcessName(processID) == GString(GPPJobNotification::cListenerName);
}

long CountRunning() {
    GTable<std::int32_t> ids;
    GProcessInfo::GetInstance()->GetProcessIDs(GString(GPPJobNotification::cListenerName), ids, false);
    return ids.GetCount();
}

/// True when at least one application listens and has been sent the message.
bool Tell(const GBuffer& message) {
    const GIPCManager::Told told = GPPIPCManager::GetInstance()->SendOnceRaw(
        &IsProcessingApplication, GPPJobRecord::cMessageType, message);
    GTraceLog::TraceQuietly(cCategory, [&] {
        const long listening = told.mReached + told.mFailed;
        return GString("of ") + GString(listening > 0 ? listening : CountRunning()) +
               GString(" PrinterProcessorWin ") + GString(told.mReached) + GString(" told, ") +
               GString(told.mFailed) + GString(" could not be reached");
    });
    // Once, however many: each line may have to wait for whoever reads the debugger's output.
    if (told.mFailed > 0) PSystem::Trace(L"PrinterProcessorWin could not be reached");
    return told.mReached > 0;
}

}  // namespace

// An exception that leaves the callback ends the spooler, and nearly everything that the notification
// meets is in the hands of other processes. So what may pass is listed, and nothing else does.
bool GPPJobNotification::NotifyPrintProcessor(const GPPJobRecord& record) {
    GPPPrinterProcessorLayer::GetWaitBudget().Refill(GPPPrinterProcessorLayer::cWaitLimit);
    if (!TryToStartLayer()) return false;
    try {
        return Tell(record.GetMessageData());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const GException& failure) {
        GTraceLog::TraceQuietly(cCategory, &GException::DescribeCurrent);
        if (GIPCFailure::IsOfSender(failure)) throw;
    } catch (...) {
        GTraceLog::TraceQuietly(cCategory, &GException::DescribeCurrent);
    }
    PSystem::Trace(L"The processing applications could not be looked up");
    return false;
}

void GPPJobNotification::RetryDelayed() noexcept {
    if (!GPPPrinterProcessorLayer::IsInitialized()) return;
    GPPPrinterProcessorLayer::GetWaitBudget().Refill(0);
    // What could not be delivered stays where it is, or its target is gone: no job's concern.
    RunQuietly([] { GBasicSignals::DevoteTimeToRepeaters(); });
}
