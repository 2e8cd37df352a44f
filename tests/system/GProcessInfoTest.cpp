#include "framework/system/GProcessInfo.h"

#include "framework/system/GSessionInfo.h"
#include "tests/files/TestFolder.h"

namespace {

GProcessInfo& Processes() {
    return *GProcessInfo::GetInstance();
}

TEST(GProcessInfo, FindsItselfByItsWholeNameOnly) {
    const auto own = static_cast<std::int32_t>(Processes().GetCurrentProcessID());
    const GString name = Processes().GetApplicationPath().GetLeaf();
    GString upper(name);
    upper.ToUpper();
    const GString others[] = {upper, name.GetSubstring(1, -1), name + GString("x"), GString(),
                              Processes().GetApplicationPath().GetNativePathString()};
    for (const bool currentUserOnly : {false, true}) {
        SCOPED_TRACE(currentUserOnly);
        GTable<std::int32_t> ids = {-5};
        Processes().GetProcessIDs(name, ids, currentUserOnly);
        EXPECT_GE(ids.Find(own), 0);
        EXPECT_EQ(ids.Find(-5), -1);
        GTable<GString> names;
        Processes().GetProcessNames(names, currentUserOnly);
        EXPECT_GE(names.Find(name), 0);
        for (const GString& other : others) {
            Processes().GetProcessIDs(other, ids, currentUserOnly);
            EXPECT_EQ(ids.GetCount(), 0) << TextOf(other);
        }
    }
}

TEST(GProcessInfo, KnowsWhoIsRunningAndItsChildren) {
    EXPECT_TRUE(Processes().GetChildProcessIDs(Processes().GetCurrentProcessID()).IsEmpty());
    EXPECT_TRUE(Processes().GetChildProcessIDs(0x7FFFFFF1).IsEmpty());
    EXPECT_TRUE(Processes().IsProcessRunning(Processes().GetCurrentProcessID()));
    const GTable<std::int32_t> running = Processes().GetRunningProcessIDs();
    EXPECT_TRUE(running.Has(static_cast<std::int32_t>(Processes().GetCurrentProcessID())));
    EXPECT_FALSE(running.Has(0x7FFFFFF1));
    for (const long never : {0x7FFFFFF1L, -1L, -2L})
        EXPECT_FALSE(Processes().IsProcessRunning(never)) << never;
}

TEST(GProcessInfo, TellsTheMemory) {
    const unsigned long long total = Processes().GetTotalPhysicalMemory();
    const unsigned long long available = Processes().GetAvailablePhysicalMemory();
    EXPECT_TRUE(total > 64ull << 20 && available > 0 && available < total) << available << " of " << total;
    const unsigned long long own = Processes().GetOwnMemory();
    EXPECT_TRUE(own > 64ull << 10 && own < 1ull << 46) << own;
}

TEST(GSessionInfo, NamesTheNameSpacesOfSessionsBehindTheWholeMachine) {
    const std::pair<long, const char*> rows[] = {
        {-1, "Global\\"}, {-2, "Global\\"}, {0, "Session\\0\\"}, {2147483647, "Session\\2147483647\\"}};
    for (const auto& [session, expected] : rows) {
        GBuffer path("left over");
        GSessionInfo::GetInstance()->GetSessionPath(path, session);
        EXPECT_STREQ(path.GetPtr(), expected);
    }
    GTable<std::int32_t> ids{5};
    GSessionInfo::GetInstance()->GetSessionIDs(ids);
    ASSERT_GE(ids.GetCount(), 1);
    EXPECT_EQ(ids[0], -1);
    EXPECT_FALSE(ids.Has(5));
}

}  // namespace
