#include "examples/PrinterProcessorWin/HandOffScope.h"

#include "framework/GBasicFrameworkCoreLayer.h"
#include "framework/core/errors/GException.h"
#include "monitor/handoff/GPPIPCManager.h"

HandOffScope::HandOffScope() {
    GBasicFrameworkCoreLayer::Initialize();
    try {
        GPPIPCManager::AddReference();
    } catch (...) {
        GBasicFrameworkCoreLayer::Finalize();
        throw;
    }
}

HandOffScope::~HandOffScope() {
    try {
        GPPIPCManager::ReleaseReference();
    } catch (const GException&) {
        // The process ends; its registration is cleaned up by whoever meets it next.
    }
    GBasicFrameworkCoreLayer::Finalize();
}
