#pragma once

#include "framework/core/GExport.h"
#include "framework/ipc/GIPCMessageQueueMgr.h"
#include "framework/ipc/GShMemID.h"

class GWaitBudget;

/// GIPCRules: what a program decides about its GIPCManager. Those of the framework's own instance are the
/// defaults. Made between GShMemID::Initialize and Finalize.
struct QUILLON_EXPORT GIPCRules {
    /// The registries in which senders and receivers meet.
    GShMemID mRegistryID = GIPCMessageQueueMgr::GetRegistryID(GIPCMessageQueueMgr::cNormal);
    /// Whether processes also stand in, and are looked for in, the registry that all sessions share.
    bool mUsesGlobalRegistry = false;
    /// Whether a process counts as reached, and as listening, with one of its queues; otherwise every queue
    /// of it must be in order.
    bool mOneQueueIsEnough = false;
    /// For how many milliseconds sending once waits for the message to be taken; 0: not at all.
    long mTakenLimit = 0;
    /// How many messages are kept for one process, at most; the oldest ones go first.
    long mKeptPerProcess = 0x7FFFFFFF;
    /// Limits the waits for shared mutexes and outlives the manager; null: no limit.
    GWaitBudget* mBudget = nullptr;
};
