#pragma once

#include "framework/system/GSessionInfo.h"

/// PWinSessionInfo: the sessions as the terminal services tell them.
class PWinSessionInfo : public GSessionInfo {
public:
    /// Asks for the session of this process once.
    PWinSessionInfo();

    long GetCurrentSessionID() override;
    void GetSessionIDs(GTable<std::int32_t>& ids) override;
    void GetSessionPath(GBuffer& path, long session) override;

private:
    std::int32_t mSession = -1;
};
