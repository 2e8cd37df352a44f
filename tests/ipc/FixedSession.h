#pragma once

#include <string>

#include "framework/system/GSessionInfo.h"

/// Says that this process runs in a session, on a machine with the sessions 0 and 1.
class FixedSession : public GSessionInfo {
public:
    explicit FixedSession(long session) : mSession(session) {}

    long GetCurrentSessionID() override { return mSession; }
    void GetSessionIDs(GTable<std::int32_t>& ids) override { ids = {-1, 0, 1}; }
    void GetSessionPath(GBuffer& path, long session) override {
        path = session < 0 ? GBuffer("Global\\")
                           : GBuffer(("Session\\" + std::to_string(session) + "\\").c_str());
    }

private:
    long mSession;
};
