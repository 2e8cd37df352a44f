#include "tests/monitor/dll/MonitorLibrary.h"

#include <optional>

namespace {

using Initialize = MONITOR2*(WINAPI*)(MONITORINIT*, HANDLE*);

/// Chosen before the library is loaded: it asks for the temporary folder once.
class TemporaryFolder final : public testing::Environment {
public:
    void SetUp() override {
        mFolder.emplace();
        const std::wstring path = mFolder->Standard("").wstring();
        ::SetEnvironmentVariableW(L"TMP", path.c_str());
        ::SetEnvironmentVariableW(L"TEMP", path.c_str());
    }
    void TearDown() override { mFolder.reset(); }

    std::optional<JobFolder> mFolder;
};

const auto* const sTemporary =
    static_cast<TemporaryFolder*>(testing::AddGlobalTestEnvironment(new TemporaryFolder));

}  // namespace

MonitorLibrary::MonitorLibrary() : mModule(::LoadLibraryW(L"QuillonPortMonitor64.dll")) {
    if (!mModule) throw std::runtime_error("the monitor's library cannot be loaded");
    const FARPROC entry = ::GetProcAddress(GetModule(), "InitializePrintMonitor2");
    mTable = reinterpret_cast<Initialize>(reinterpret_cast<void*>(entry))(&mInit, &mMonitor);
}

bool MonitorLibrary::Open(const wchar_t* name) {
    return mTable->pfnOpenPort(mMonitor, const_cast<wchar_t*>(name), &mPort);
}

bool MonitorLibrary::Start(const wchar_t* title, DWORD jobID, const wchar_t* printer) {
    DOC_INFO_1W info = {const_cast<wchar_t*>(title), nullptr, nullptr};
    return mTable->pfnStartDocPort(mPort, const_cast<wchar_t*>(printer), jobID, 1,
                                   reinterpret_cast<BYTE*>(&info));
}

bool MonitorLibrary::Write(const std::string& data) {
    DWORD written = 0;
    return mTable->pfnWritePort(mPort, reinterpret_cast<BYTE*>(const_cast<char*>(data.data())),
                                static_cast<DWORD>(data.size()), &written) &&
           written == data.size();
}

bool MonitorLibrary::Print(const wchar_t* title, const std::string& data) {
    return Start(title) && Write(data) && End();
}

const JobFolder& GetTestFolder() {
    return *sTemporary->mFolder;
}

bool IsClosed(const std::string& fileName) {
    const std::wstring path = GetTestFolder().Standard(JobFolder::Job(fileName)).wstring();
    return static_cast<bool>(PWin32ScopedHandle<PWin32FileHandle>(
        ::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)));
}
