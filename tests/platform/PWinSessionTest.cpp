// Run with a stand-in for the terminal services, which says: session 2 of 0, 1, 2 and 65536.
#include <gtest/gtest.h>

#include "framework/system/PSystem.h"
#include "platform/win32/system/PWinProcessInfo.h"
#include "platform/win32/system/PWinSessionInfo.h"

namespace {

TEST(PWinSessionInfo, ListsTheMachineAndThenEverySessionAndKnowsItsOwn) {
    EXPECT_EQ(PWinSessionInfo().GetCurrentSessionID(), 2);
    GTable<std::int32_t> ids;
    PWinSessionInfo().GetSessionIDs(ids);
    EXPECT_TRUE(ids == (GTable<std::int32_t>{-1, 0, 1, 2, 65536}));
}

TEST(PWinProcessInfo, FindsItselfAmongTheUsersProcesses) {
    PWinProcessInfo processes;
    GTable<std::int32_t> ids;
    processes.GetProcessIDs(processes.GetApplicationPath().GetLeaf(), ids, true);
    EXPECT_GE(ids.Find(static_cast<std::int32_t>(processes.GetCurrentProcessID())), 0);
}

}  // namespace
