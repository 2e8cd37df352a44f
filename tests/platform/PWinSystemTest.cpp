// What only Windows answers, and the rules that depend on its version.
#include "framework/system/PRegistryKey.h"
#include "framework/system/PSystem.h"
#include "platform/win32/ipc/PWin32IPMutexImp.h"
#include "platform/win32/system/PWinSessionInfo.h"
#include "tests/WindowsTesting.h"
#include "tests/tools/ChildProcess.h"

namespace {

TEST(PWinSystem, IsWindowsOfTheNTFamily) {
    EXPECT_EQ(PSystem::GetPlatformCode(), 2);
    EXPECT_TRUE(PSystem::IsNTOrBetter());
    EXPECT_FALSE(PSystem::IsWow64());
    EXPECT_EQ(PSystem::GetPathSeparator(), '\\');
}

TEST(PWinSystem, TracingAndClosingAHandleLeaveTheLastErrorAlone) {
    ::SetLastError(4711);
    PSystem::Trace("narrow");
    PSystem::Trace(L"wide");
    { const PWin32ScopedHandle<PWin32KernelHandle> bad(reinterpret_cast<void*>(0xBAD0)); }
    EXPECT_EQ(::GetLastError(), 4711u);
}

TEST(PWinSystem, AHandleHasOneOwner) {
    using Handle = PWin32ScopedHandle<PWin32KernelHandle>;
    const auto isOpen = [](void* handle) {
        DWORD flags = 0;
        return ::GetHandleInformation(handle, &flags) != 0;
    };
    void* const event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    void* const other = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    Handle first(event);
    Handle second(std::move(first));
    EXPECT_TRUE(!first && second.Get() == event);
    second = Handle(other);
    EXPECT_TRUE(!isOpen(event) && isOpen(other));
    void* const released = second.Release();
    EXPECT_TRUE(released == other && !second && isOpen(other));
    second.Reset(released);
    second.Reset(nullptr);
    EXPECT_FALSE(isOpen(other));
}

TEST(PWinSystem, ModulesAreNamedInFull) {
    PSystem::SetHInstance(::GetModuleHandleW(L"kernel32.dll"));
    EXPECT_EQ(TextOf(PSystem::GetDllPath().GetLeaf()), "kernel32.dll");
    EXPECT_TRUE(PSystem::GetDllPath().HasRootPath());
    PSystem::SetHInstance(reinterpret_cast<void*>(0x10));
    EXPECT_TRUE(PSystem::GetDllPath().IsEmpty());
    PSystem::SetHInstance(nullptr);
}

TEST(PWinSystem, OldSystemsHaveNoSessionsNorNameSpaces) {
    const std::tuple<long, bool, const char*> rows[] = {{3000, true, "Global\\"}, {3002, true, "Global\\"},
                                                        {3003, false, ""},        {3005, false, ""},
                                                        {3007, false, ""},        {3008, true, ""},
                                                        {3009, true, "Global\\"}, {3016, true, "Global\\"}};
    for (const auto& [code, hasSessions, mutexPath] : rows) {
        SCOPED_TRACE(code);
        PSystem::SetOSCode(code);
        PWinSessionInfo info;
        GBuffer path("left over");
        info.GetSessionPath(path, 3);
        EXPECT_STREQ(path.GetPtr(), hasSessions ? "Session\\3\\" : "");
        info.GetSessionPath(path, -1);
        EXPECT_STREQ(path.GetPtr(), hasSessions ? "Global\\" : "");
        EXPECT_EQ(BytesOf(PWin32IPMutexImp::GetMemoryPath()), mutexPath);
        EXPECT_EQ(PWin32IPMutexImp::GetMaxIDSize(), *mutexPath != 0 ? 253 : 260);
        if (hasSessions) continue;
        EXPECT_EQ(info.GetCurrentSessionID(), -1);
        GTable<std::int32_t> ids;
        info.GetSessionIDs(ids);
        EXPECT_EQ(ids.GetCount(), 1);
    }
    PSystem::SetOSCode(PSystem::cUnknownOSCode);
}

// Under each version that Wine can tell a program.
TEST(WindowsVersions, DecideOnNameSpacesAndMessagesArriveInEach) {
    const TestFolder folder;
    PRegistryKey key(HKEY_CURRENT_USER, "Software\\Wine\\AppDefaults\\IPCPeer.exe", KEY_ALL_ACCESS);
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
                      const ChildProcess peer(L"IPCPeer.exe version", folder.Standard("out"), L"NUL");
                      EXPECT_EQ(peer.WaitForExitCode(), 0);
                      EXPECT_EQ(folder.Take("out"), std::string(expected) + " 2 2\r\n");
                  });
    EXPECT_EQ(::RegDeleteKeyW(HKEY_CURRENT_USER, AsWide(key.GetPath())), ERROR_SUCCESS);
}

}  // namespace
