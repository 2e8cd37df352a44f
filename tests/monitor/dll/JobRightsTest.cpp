// Whose rights and files a job uses on Windows, as far as one user alone can show it.

#include "framework/streams/GFileOutStream.h"
#include "monitor/entry/PWin32MonitorPlatform.h"
#include "monitor/spooling/JobFileMaker.h"
#include "platform/win32/files/PWin32FileOwner.h"
#include "tests/WindowsTesting.h"
#include "tests/monitor/dll/MonitorLibrary.h"
#include "tests/monitor/dll/TraceCapture.h"
#include "tests/monitor/spooling/JobFolder.h"
#include "tests/platform/SystemErrorOf.h"

#include <sddl.h>

namespace {

bool HasToken() {
    HANDLE token = nullptr;
    ::OpenThreadToken(::GetCurrentThread(), TOKEN_QUERY, TRUE, &token);
    return static_cast<bool>(PWin32ScopedHandle<PWin32KernelHandle>(token));
}

/// On a thread that acts as a user, so that the test's own stays as it is.
template <class Body>
void AsUser(Body body) {
    std::thread([&body] {
        ASSERT_TRUE(::ImpersonateSelf(SecurityImpersonation));
        ASSERT_TRUE(HasToken());
        body();
    }).join();
}

TEST(JobRights, PutTheUserAsideAndBack) {
    PWin32MonitorPlatform platform;
    void* token = &platform;
    ::SetLastError(4711);
    EXPECT_TRUE(platform.PutTokenAside(token));
    EXPECT_EQ(token, nullptr) << "the service itself";
    EXPECT_TRUE(platform.PutTokenBack(token));
    EXPECT_EQ(::GetLastError(), 4711u);
    AsUser([&] {
        ASSERT_TRUE(platform.PutTokenAside(token));
        EXPECT_FALSE(HasToken());
        EXPECT_TRUE(platform.PutTokenBack(token));
        EXPECT_TRUE(HasToken());
        ASSERT_TRUE(platform.PutTokenAside(token));
        PWin32ScopedHandle<PWin32KernelHandle>(token).Reset(nullptr);
        EXPECT_FALSE(platform.PutTokenBack(token)) << "lost, and told";
    });
}

TEST(JobRights, LeaveTheUserOnTheThreadAfterEachCallback) {
    MonitorLibrary library;
    AsUser([&] {
        EXPECT_TRUE(library.Print(L"as user.txt", "x"));
        EXPECT_TRUE(HasToken());
        EXPECT_FALSE(library.Start(L"refused.txt", 7, L"NUL"));
        EXPECT_TRUE(HasToken());
    });
    EXPECT_EQ(GetTestFolder().ContentOf("as user.ps"), "x");
}

std::string RightsOf(PSECURITY_DESCRIPTOR descriptor) {
    char* text = nullptr;
    ::ConvertSecurityDescriptorToStringSecurityDescriptorA(descriptor, SDDL_REVISION_1,
                                                           DACL_SECURITY_INFORMATION, &text, nullptr);
    const PWin32ScopedHandle<PWin32LocalBlock> owned(text);
    return text != nullptr ? text : "";
}

std::string RightsOf(const GPathName& path) {
    alignas(8) BYTE descriptor[4096] = {};
    DWORD size = 0;
    ::GetFileSecurityW(AsWide(path.GetWin32APIPathString()), DACL_SECURITY_INFORMATION, descriptor,
                       sizeof descriptor, &size);
    return RightsOf(descriptor);
}

/// Makes the job file with one byte in it; the system's code when that is refused.
long Make() {
    PWin32MonitorPlatform platform;
    const JobPath path(GString("Proof"), GString("a.txt"));
    return SystemErrorOf([&] { GFileOutStream(JobFileMaker(platform).Open(path)).Write(GBuffer("x")); });
}

TEST(JobRights, AreTheUsersAloneInFoldersThatTheJobMakes) {
    using testing::HasSubstr;
    EXPECT_THAT(RightsOf(PWin32FileOwner().GetFolderDescriptor()),
                testing::StartsWith("D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FA;;;S-1-5-"));
    const JobFolder folder;
    const std::string everybody = ";;;WD)";
    ASSERT_THAT(RightsOf(folder.Portable()), HasSubstr(everybody)) << "this machine shows no rights";
    ASSERT_EQ(Make(), 0);
    for (const GPathName& made :
         {folder.Portable(folder.Job("")).GetBranch(), folder.Portable(folder.Job(""))})
        EXPECT_THAT(RightsOf(made), testing::Not(HasSubstr(everybody))) << TextOf(made);
}

TEST(JobRights, TakeTheTemporaryFolderByAnyOfItsNamesAndWhatWasMadeBefore) {
    const JobFolder folder;
    const GString temp = folder.Portable().GetNativePathString();
    wchar_t shorter[MAX_PATH] = {};
    ASSERT_NE(::GetShortPathNameW(AsWide(temp), shorter, MAX_PATH), 0u);
    GString upper = temp;
    upper.ToUpper();
    ASSERT_EQ(Make(), 0);
    TraceCapture trace;
    for (const GString& name : {FromWide(shorter, ::lstrlenW(shorter)), upper, temp + GString("\\")}) {
        GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, GPathName::FromNative(name));
        EXPECT_EQ(Make(), 0) << TextOf(name);
    }
    EXPECT_EQ(trace.Take(), Words());
    EXPECT_EQ(folder.ContentOf("a.ps"), "x");
}

TEST(JobRights, RefuseAFileThatIsHeldOpenAndLeaveItAlone) {
    const JobFolder folder;
    ASSERT_EQ(Make(), 0);
    for (const DWORD share : {0, FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, FILE_SHARE_DELETE}) {
        SCOPED_TRACE(share);
        const auto holder = OpenSharing(folder.Standard(folder.Job("a.ps")), GENERIC_READ, share);
        ASSERT_TRUE(holder);
        EXPECT_EQ(Make(), ERROR_SHARING_VIOLATION);
    }
    EXPECT_EQ(folder.ContentOf("a.ps"), "x");
    EXPECT_FALSE(folder.Has(folder.Job("a.ps (set aside 1)")));
}

}  // namespace
