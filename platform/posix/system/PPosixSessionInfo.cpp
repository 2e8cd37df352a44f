#include "framework/system/GSessionInfo.h"

namespace {

// Sessions are an affair of Windows: here there is the machine-wide name space alone.
class PPosixSessionInfo : public GSessionInfo {
public:
    long GetCurrentSessionID() override { return -1; }

    void GetSessionIDs(GTable<std::int32_t>& ids) override {
        ids.Clear();
        ids.Append(-1);
    }

    void GetSessionPath(GBuffer& path, long session) override {
        if (session < 0) {
            path.Set("Global\\");
            return;
        }
        path.Set("Session\\");
        path += GBuffer(session);
        path += "\\";
    }
};

}  // namespace

GSessionInfo* GSessionInfo::CreateDefault() {
    return new PPosixSessionInfo;
}
