#include "monitor/handoff/GPPHandOffScope.h"

#include "framework/core/errors/GFirstFailure.h"
#include "monitor/handoff/GPPIPCManager.h"

GPPHandOffScope::GPPHandOffScope() {
    GPPIPCManager::AddReference();
}

GPPHandOffScope::~GPPHandOffScope() {
    RunQuietly([] { GPPIPCManager::ReleaseReference(); });
}
