// The rules that depend on the version of Windows, under each version that Wine can tell a program.

#include "framework/system/PRegistryKey.h"
#include "tests/WindowsTesting.h"
#include "tests/tools/ChildProcess.h"

namespace {

constexpr const char* cPath = "Software\\Wine\\AppDefaults\\IPCPeer.exe";

TEST(WindowsVersions, DecideOnNameSpacesAndMessagesArriveInEach) {
    const TestFolder folder;
    PRegistryKey key(HKEY_CURRENT_USER, cPath, KEY_ALL_ACCESS);
    key.Create("", 0, nullptr);
    // In Wine 8 "win7" is the server of its version, and "win2008r2" is not.
    ForEachRow<2>({"win98 -> 0 global 'Session\\2\\'", "win2k -> 3003 local ''", "winxp -> 3005 local ''",
                   "winxp64 -> 3007 local ''", "win2003 -> 3008 local 'Session\\2\\'",
                   "vista -> 3009 global 'Session\\2\\'", "win2008 -> 3010 global 'Session\\2\\'",
                   "win2008r2 -> 3011 global 'Session\\2\\'", "win7 -> 3012 global 'Session\\2\\'",
                   "win8 -> 3013 global 'Session\\2\\'", "win81 -> 3013 global 'Session\\2\\'",
                   "win10 -> 3013 global 'Session\\2\\'"},
                  [&](auto version, auto expected) {
                      ASSERT_TRUE(key.SetString("Version", GString(std::string(version).c_str()), 1));
                      const ChildProcess peer(L"IPCPeer.exe version", folder.Standard("out").wstring(),
                                              L"NUL");
                      EXPECT_EQ(peer.WaitForExitCode(), 0);
                      EXPECT_EQ(folder.Take("out"), std::string(expected) + " 2 2\r\n");
                  });
    EXPECT_TRUE(PRegistryKey(HKEY_CURRENT_USER, "Software\\Wine\\AppDefaults", KEY_ALL_ACCESS)
                    .RemoveKey("IPCPeer.exe"));
}

}  // namespace
