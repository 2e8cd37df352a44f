// What only Windows answers.

#include "framework/system/GProcessInfo.h"
#include "framework/system/PSystem.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "platform/win32/system/PWinSessionInfo.h"
#include "tests/Testing.h"
#include "tests/files/TestFolder.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

TEST(PWinSystem, IsWindowsOfTheNTFamily) {
    EXPECT_EQ(PSystem::GetPlatformCode(), 2);
    EXPECT_TRUE(PSystem::IsNTOrBetter());
    EXPECT_FALSE(PSystem::IsWow64());
    EXPECT_EQ(PSystem::GetPathSeparator(), '\\');
}

TEST(PWinSystem, TheCodeFitsWhatTheSystemReports) {
    OSVERSIONINFOEXW info = {};
    info.dwOSVersionInfoSize = sizeof info;
    ASSERT_TRUE(::GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&info)));
    const bool server = info.wProductType != VER_NT_WORKSTATION;
    EXPECT_EQ(PSystem::IsWindowsServer(), server);
    if (info.dwMajorVersion == 6 && info.dwMinorVersion < 2) {
        EXPECT_EQ(PSystem::GetOSCode(), 3009 + 2 * static_cast<long>(info.dwMinorVersion) + (server ? 1 : 0));
    } else {
        EXPECT_TRUE(PSystem::GetOSCode() == 3000 || PSystem::GetOSCode() >= 3003);
    }
}

TEST(PWinSystem, TracingAndClosingAHandleLeaveTheLastErrorAlone) {
    ::SetLastError(4711);
    PSystem::Trace("narrow");
    EXPECT_EQ(::GetLastError(), 4711u);
    PSystem::Trace(L"wide");
    EXPECT_EQ(::GetLastError(), 4711u);
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
    EXPECT_FALSE(first);
    EXPECT_EQ(second.Get(), event);
    second = Handle(other);
    EXPECT_FALSE(isOpen(event));
    EXPECT_TRUE(isOpen(other));
    void* const released = second.Release();
    EXPECT_EQ(released, other);
    EXPECT_FALSE(second);
    EXPECT_TRUE(isOpen(other));
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

TEST(PWinSessionInfo, OldSystemsHaveNoSessions) {
    const std::tuple<long, bool> rows[] = {{3002, true}, {3003, false}, {3005, false}, {3007, false},
                                           {3008, true}, {3009, true},  {3000, true}};
    for (const auto& [code, hasSessions] : rows) {
        SCOPED_TRACE(code);
        PSystem::SetOSCode(code);
        PWinSessionInfo info;
        GBuffer path("left over");
        info.GetSessionPath(path, 3);
        EXPECT_STREQ(path.GetPtr(), hasSessions ? "Session\\3\\" : "");
        info.GetSessionPath(path, -1);
        EXPECT_STREQ(path.GetPtr(), hasSessions ? "Global\\" : "");
        if (!hasSessions) {
            EXPECT_EQ(info.GetCurrentSessionID(), -1);
            GTable<std::int32_t> ids;
            info.GetSessionIDs(ids);
            EXPECT_EQ(ids.GetCount(), 1);
        }
    }
    PSystem::SetOSCode(PSystem::cUnknownOSCode);
}

}  // namespace
