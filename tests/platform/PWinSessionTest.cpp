// Run with a stand-in for the terminal services, which says: session 2 of 0, 1, 2 and 65536.
#include <gtest/gtest.h>

#include "framework/system/PSystem.h"
#include "platform/win32/system/PWinProcessInfo.h"
#include "platform/win32/system/PWinSessionInfo.h"

namespace {

TEST(PWinSessionInfo, TakesItsSessionFromTheTerminalServices) {
    EXPECT_EQ(PWinSessionInfo().GetCurrentSessionID(), 2);
}

TEST(PWinSessionInfo, ListsTheMachineAndThenEverySession) {
    GTable<std::int32_t> ids;
    PWinSessionInfo().GetSessionIDs(ids);
    const std::int32_t expected[] = {-1, 0, 1, 2, 65536};
    ASSERT_EQ(ids.GetCount(), 5);
    for (long i = 0; i < 5; ++i) EXPECT_EQ(ids[i], expected[i]);
}

TEST(PWinProcessInfo, FindsItselfAmongTheUsersProcesses) {
    PWinProcessInfo processes;
    GTable<std::int32_t> ids;
    processes.GetProcessIDs(processes.GetApplicationPath().GetLeaf(), ids, true);
    EXPECT_GE(ids.Find(static_cast<std::int32_t>(processes.GetCurrentProcessID())), 0);
}

}  // namespace
