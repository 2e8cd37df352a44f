#pragma once

#include <optional>

#include "platform/win32/base/PWin32SpoolerApi.h"
#include "tests/WindowsTesting.h"
#include "tests/monitor/spooling/JobFolder.h"

/// Stands in for the global temporary folder in this process and its children. Chosen before the library is
/// loaded, which asks for it once.
struct TemporaryFolder final : testing::Environment {
    void SetUp() override {
        mFolder.emplace();
        for (const wchar_t* name : {L"TMP", L"TEMP"})
            ::SetEnvironmentVariableW(name, mFolder->Standard("").c_str());
    }
    void TearDown() override { mFolder.reset(); }
    std::optional<JobFolder> mFolder;
};
inline const auto* const sTemporary =
    static_cast<TemporaryFolder*>(testing::AddGlobalTestEnvironment(new TemporaryFolder));
inline const JobFolder& GetTestFolder() {
    return *sTemporary->mFolder;
}

/// The monitor's DLL as the spooler uses it, from loading to unloading.
struct MonitorLibrary {
    static constexpr const wchar_t* cPortName = L"QuillonPDFPort:";

    MonitorLibrary() : mModule(::LoadLibraryW(L"QuillonPortMonitor64.dll")) {
        if (!mModule) throw std::runtime_error("the monitor's library cannot be loaded");
        using Initialize = MONITOR2*(WINAPI*)(MONITORINIT*, HANDLE*);
        mTable = Find<Initialize>("InitializePrintMonitor2")(&mInit, &mMonitor);
    }
    HMODULE GetModule() const { return static_cast<HMODULE>(mModule.Get()); }
    /// What it exports under that name.
    template <class Pointer>
    Pointer Find(const char* name) const {
        void* const address = reinterpret_cast<void*>(::GetProcAddress(GetModule(), name));
        EXPECT_NE(address, nullptr) << name;
        return reinterpret_cast<Pointer>(address);
    }
    const MONITOR2& GetTable() const { return *mTable; }

    /// Each of these asserts nothing; the last error is the callback's.
    bool Open(const wchar_t* name = cPortName) {
        return mTable->pfnOpenPort(mMonitor, const_cast<wchar_t*>(name), &mPort);
    }
    bool Start(const wchar_t* title, DWORD jobID = 7, const wchar_t* printer = L"Proof") {
        DOC_INFO_1W info = {const_cast<wchar_t*>(title), nullptr, nullptr};
        return mTable->pfnStartDocPort(mPort, const_cast<wchar_t*>(printer), jobID, 1,
                                       reinterpret_cast<BYTE*>(&info));
    }
    bool Write(const std::string& data) {
        DWORD written = 0;
        return mTable->pfnWritePort(mPort, reinterpret_cast<BYTE*>(const_cast<char*>(data.data())),
                                    static_cast<DWORD>(data.size()), &written) &&
               written == data.size();
    }
    bool End() { return mTable->pfnEndDocPort(mPort); }
    /// A whole job, on the port that is open or is opened now; false when any step is refused.
    bool Print(const wchar_t* title, const std::string& data) {
        return (mPort != nullptr || Open()) && Start(title) && Write(data) && End();
    }

    MONITORINIT mInit = {};
    PWin32ScopedHandle<PWin32ModuleHandle> mModule;
    MONITOR2* mTable = nullptr;
    HANDLE mMonitor = nullptr, mPort = nullptr;
};
