#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GTable.h"

/// GSessionInfo: which session this process is in, which ones there are, and under which path a
/// session's kernel objects are named.
///
/// A session's number is 0 (services) or above; -1 means unknown and stands for the machine-wide
/// name space. Nothing here throws for what the system refuses. Callable from any thread.
class QUILLON_EXPORT GSessionInfo {
public:
    GSessionInfo(const GSessionInfo&) = delete;
    GSessionInfo& operator=(const GSessionInfo&) = delete;
    virtual ~GSessionInfo();

    /// -1 when the system does not tell.
    virtual long GetCurrentSessionID() = 0;
    /// Replaces `ids` with -1 and the numbers of all sessions.
    virtual void GetSessionIDs(GTable<std::int32_t>& ids) = 0;
    /// Replaces `path` with the name space of `session`, ending in a backslash: `Session\1\`, or
    /// `Global\` for a negative one.
    virtual void GetSessionPath(GBuffer& path, long session) = 0;

    /// Never null; the platform's own is made on first use.
    static GSessionInfo* GetInstance();
    /// Takes ownership of `info` and deletes the one before. Null, and the framework's end, bring the
    /// platform's own back on the next use. Not while another thread uses the old one.
    static void SetInstance(GSessionInfo* info);

protected:
    GSessionInfo() = default;

private:
    static GSessionInfo* CreateDefault();  // supplied by the platform
};
