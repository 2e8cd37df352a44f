#pragma once

#include <string>

#include "framework/ipc/GIPCMessageQueueMgr.h"

/// MessagingCheck: looks from outside at the shared objects that every notification goes through.
///
/// Any local process can make them first, hold the lock or spoil a segment. Nobody is told of a job then.
class MessagingCheck {
public:
    /// What stands in the way of notifications, in one line: a lock that is held for two seconds, or an
    /// object that belongs to somebody who shuts others out, or is not what it should be. Empty when
    /// nothing does. Objects that are not there yet are fine.
    static std::wstring FindObstacle(GIPCMessageQueueMgr::ManagerType type = GIPCMessageQueueMgr::cNormal);
};
