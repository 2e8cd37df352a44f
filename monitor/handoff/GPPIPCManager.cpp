#include "monitor/handoff/GPPIPCManager.h"

#include <utility>

#include "framework/core/errors/GFirstFailure.h"

GPPIPCManager* GPPIPCManager::sInstance = nullptr;
long GPPIPCManager::sReferences = 0;

void GPPIPCManager::AddReference(ManagerType type, GWaitBudget* budget) {
    if (sReferences == 0) sInstance = std::make_unique<GPPIPCManager>(type, budget).release();
    ++sReferences;
}

void GPPIPCManager::ReleaseReference() {
    if (sReferences == 0 || --sReferences > 0) return;
    const std::unique_ptr<GPPIPCManager> owner(std::exchange(sInstance, nullptr));
}

GPPIPCManager* GPPIPCManager::GetInstance() noexcept {
    return sInstance;
}

GShMemID GPPIPCManager::GetRegistryID(ManagerType type) {
    return GIPCMessageQueueMgr::GetRegistryID(type) + GShMemID("_PP");
}

GIPCRules GPPIPCManager::MakeRules(ManagerType type, GWaitBudget* budget) {
    GIPCRules rules;
    rules.mRegistryID = GetRegistryID(type);
    rules.mUsesGlobalRegistry = true;
    rules.mOneQueueIsEnough = true;
    rules.mTakenLimit = cTakenLimit;
    rules.mKeptPerProcess = cMaxDelayedPerTarget;
    rules.mBudget = budget;
    return rules;
}

GPPIPCManager::GPPIPCManager(ManagerType type, GWaitBudget* budget) : GIPCManager(MakeRules(type, budget)) {
    OpenRegistries();
}

GPPIPCManager::~GPPIPCManager() {
    RunQuietly([this] { ForceProcessPendingMessages(); });
}
