// A program that uses the framework out of the DLL: the two have a C++ run-time library each.

#include <new>

#include "framework/GFrameworkScope.h"
#include "framework/core/errors/GDebugSupport.h"
#include "framework/core/errors/GExceptionHandler.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/files/GFileSystem.h"
#include "framework/ipc/GWaitBudget.h"
#include "monitor/handoff/GPPHandOffScope.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "tests/WindowsTesting.h"

#include <objbase.h>

namespace {

struct NotingReporter : GErrorReporter {
    void Report(const GString& text) const override { sNote = TextOf(text); }
    static inline std::string sNote;
};

class MonitorDllClient : public testing::Test {
    GFrameworkScope mFramework;
};

// The COM of its threads and its messages are the program's own business.
TEST_F(MonitorDllClient, FindsNothingStartedButTheFramework) {
    ASSERT_NE(::GetModuleHandleW(L"QuillonPortMonitor64.dll"), nullptr);
    EXPECT_EQ(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    ::CoUninitialize();
    EXPECT_EQ(GPPIPCManager::GetInstance(), nullptr);
    GWaitBudget budget(1000);
    const GPPHandOffScope handOff(&budget);
    EXPECT_NE(GPPIPCManager::GetInstance(), nullptr);
}

TEST_F(MonitorDllClient, CatchesByTypeWhatTheDllThrows) {
    const GExceptionLocation where(GString("here"));
    ::SetLastError(87);
    EXPECT_THROW(PWin32SystemException::CheckForErrors(0), PWin32SystemException);
    try {
        ::SetLastError(87);
        PWin32SystemException::CheckHandle(nullptr);
    } catch (const GException& caught) {
        const auto& exception = dynamic_cast<const PWin32SystemException&>(caught);
        const auto kept = std::make_unique<PWin32SystemException>(exception);
        EXPECT_EQ(kept->GetSystemErrorCode(), 87);
        EXPECT_EQ(TextOf(kept->GetFullDescription()).find("here: "), 0u);
    }
    EXPECT_THROW(GBuffer().Allocate(0x7FFFFFFF), std::bad_alloc)
        << "a framework's failure, known as another's";
}

TEST_F(MonitorDllClient, HandlesWhatEitherHasThrown) {
    GErrorReporter::SetInstance(new NotingReporter);
    const std::unique_ptr<GExceptionHandler> handler = std::make_unique<GDefaultExceptionHandler>();
    const auto noteOf = [&](void (*fail)()) {
        try {
            fail();
        } catch (...) {
            handler->Handle();
        }
        return NotingReporter::sNote;
    };
    EXPECT_EQ(noteOf([] { throw GSimpleException(40010); }),
              "File or directory not found or incomplete path name");
    EXPECT_THAT(noteOf([] { GFileSystem::RemoveFile(GPathName("C:/no such folder/f")); }),
                testing::StartsWith("C:\\no such folder\\f: "));
    GErrorReporter::SetInstance(nullptr);
}

TEST_F(MonitorDllClient, IsInTheStackDumpOfTheDll) {
    const std::string dump = TextOf(GDebugSupport::GetStackDump());
    EXPECT_NE(dump.find("onitor64! "), std::string::npos) << dump;
    EXPECT_NE(dump.find(": monitor_dll_client_tests! "), std::string::npos) << dump;
    EXPECT_EQ(dump.find("Error: "), std::string::npos) << dump;
}

}  // namespace
