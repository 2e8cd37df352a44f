#include "monitor/handoff/GPPJobNotification.h"

#include "framework/core/errors/GException.h"
#include "framework/core/events/GBasicSignals.h"
#include "framework/ipc/GWaitBudget.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/PSystem.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "monitor/handoff/GPPPrinterProcessorLayer.h"

namespace {

constexpr const char* cProcessingApplication = "PrinterProcessorWin.exe";

bool TryToStartLayer() {
    if (GPPPrinterProcessorLayer::IsInitialized()) return true;
    try {
        GPPPrinterProcessorLayer::Initialize();
        return true;
    } catch (...) {
        // Whatever kept it from starting when the module was loaded still does.
        PSystem::Trace(L"GPPPrinterProcessorLayer could not be started");
        return false;
    }
}

GTable<std::int32_t> FindProcessingApplications() {
    GProcessInfo& processes = *GProcessInfo::GetInstance();
    GTable<std::int32_t> ids;
    processes.GetProcessIDs(GString(cProcessingApplication), ids, false);
    const long own = ids.Find(static_cast<std::int32_t>(processes.GetCurrentProcessID()));
    if (own >= 0) ids.Remove(own);
    return ids;
}

/// True for a failure that comes from what a target has put, or done, into shared memory: a mutex that it
/// keeps, or a segment that makes no sense. Any local process can cause those; if one got through to
/// the spooler, any local process could end it.
bool IsTheTargetsDoing(const GException& failure) {
    switch (failure.GetExceptionID()) {
        case GExceptionID::cGeneral:
        case GExceptionID::cUnknownIPCVersion:
        case GExceptionID::cNotEnoughSpace:
        case GExceptionID::cNotEnoughData:
        case GExceptionID::cSharedMemoryReadFailed:
        case GExceptionID::cSharedMemoryWriteFailed:
        case GExceptionID::cSharedMemorySizeDiffers:
        case GExceptionID::cCouldNotLockMutex:
            return true;
        default:
            return false;
    }
}

/// True when it listens and has been sent the message. What is wrong with one target tells nothing about
/// the others, so it is no exception.
bool TryToTell(GPPIPCManager& manager, long processID, const GBuffer& message) {
    try {
        if (manager.GetListeningState(processID) != GIPCManager::cListening) return false;
        manager.SendOnceRaw(processID, GPPJobRecord::cMessageType, message);
        return true;
    } catch (const GException& failure) {
        if (!IsTheTargetsDoing(failure)) throw;
        PSystem::Trace(L"PrinterProcessorWin could not be reached");
        return false;
    }
}

}  // namespace

bool GPPJobNotification::NotifyPrintProcessor(const GPPJobRecord& record) {
    GPPPrinterProcessorLayer::GetWaitBudget().Refill(GPPPrinterProcessorLayer::cWaitLimit);
    if (!TryToStartLayer()) return false;
    const GBuffer message = record.GetMessageData();
    GPPIPCManager& manager = *GPPIPCManager::GetInstance();
    bool told = false;
    for (const std::int32_t processID : FindProcessingApplications()) {
        if (TryToTell(manager, processID, message)) told = true;
    }
    return told;
}

void GPPJobNotification::RetryDelayed() noexcept {
    if (!GPPPrinterProcessorLayer::IsInitialized()) return;
    GPPPrinterProcessorLayer::GetWaitBudget().Refill(0);
    try {
        GBasicSignals::DevoteTimeToRepeaters();
    } catch (...) {
        // What could not be delivered stays where it is, or its target is gone: no job's concern.
    }
}
