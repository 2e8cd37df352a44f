#include "monitor/handoff/GPPHandOffScope.h"

#include "framework/core/errors/GFirstFailure.h"
#include "monitor/handoff/GPPIPCManager.h"

GPPHandOffScope::GPPHandOffScope(GWaitBudget* budget) {
    GPPIPCManager::AddReference(GIPCMessageQueueMgr::cNormal, budget);
}

GPPHandOffScope::~GPPHandOffScope() {
    RunQuietly([] { GPPIPCManager::ReleaseReference(); });
}
