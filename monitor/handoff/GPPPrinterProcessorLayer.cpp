#include "monitor/handoff/GPPPrinterProcessorLayer.h"

#include <iterator>

#include "framework/GBasicFrameworkCoreLayer.h"
#include "framework/core/errors/GStringPool.h"
#include "framework/ipc/GWaitBudget.h"
#include "monitor/handoff/GPPIPCManager.h"

namespace {

constexpr GStringPoolRow cTexts[] = {
    {30050000, "Could not create the semaphore (common resources lock)"},
    {30050001, "Could not lock the semaphore"},
    {30050002, "Could not unlock the semaphore"},
    {30050003, "Named semaphore already exist but could not unlink"},
    {30050004, "Launch"},
    {30050005, "Delete"},
    {30050006, "Make Drop"},
};

GWaitBudget sWaitBudget(GPPPrinterProcessorLayer::cLoadLimit);

}  // namespace

std::int32_t GPPPrinterProcessorLayer::sLayerInitCount = 0;

GWaitBudget& GPPPrinterProcessorLayer::GetWaitBudget() noexcept {
    return sWaitBudget;
}

void GPPPrinterProcessorLayer::Initialize() {
    if (sLayerInitCount == 0) Start();
    ++sLayerInitCount;
}

void GPPPrinterProcessorLayer::Finalize() noexcept {
    if (sLayerInitCount == 1) Stop();
    if (sLayerInitCount > 0) --sLayerInitCount;
}

void GPPPrinterProcessorLayer::Start() {
    GBasicFrameworkCoreLayer::Initialize();
    try {
        GPPIPCManager::AddReference(GIPCMessageQueueMgr::cNormal, &sWaitBudget);
    } catch (...) {
        GBasicFrameworkCoreLayer::Finalize();
        throw;
    }
    try {
        GStringPoolSupport::Register("enUS", "WinAnsiEncoding", cTexts, std::size(cTexts));
    } catch (...) {
        Stop();
        throw;
    }
}

void GPPPrinterProcessorLayer::Stop() noexcept {
    sWaitBudget.Refill(0);
    GStringPoolSupport::Unregister(cTexts);
    GPPIPCManager::ReleaseReference();
    GBasicFrameworkCoreLayer::Finalize();
}
