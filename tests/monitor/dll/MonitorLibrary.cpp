#include "tests/monitor/dll/MonitorLibrary.h"

#include <optional>

#include "tests/files/TestFolder.h"

namespace {

using Initialize = MONITOR2*(WINAPI*)(MONITORINIT*, HANDLE*);

/// Chosen before the library is loaded: it asks for the temporary folder once.
class TemporaryFolder final : public testing::Environment {
public:
    void SetUp() override {
        mFolder.emplace();
        const std::wstring path = GetTestFolder();
        ::SetEnvironmentVariableW(L"TMP", path.c_str());
        ::SetEnvironmentVariableW(L"TEMP", path.c_str());
    }
    void TearDown() override { mFolder.reset(); }

    std::optional<TestFolder> mFolder;
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

bool MonitorLibrary::Write(const std::string& data, DWORD& written) {
    return mTable->pfnWritePort(mPort, reinterpret_cast<BYTE*>(const_cast<char*>(data.data())),
                                static_cast<DWORD>(data.size()), &written);
}

bool MonitorLibrary::Write(const std::string& data) {
    DWORD written = 0;
    return Write(data, written) && written == data.size();
}

bool MonitorLibrary::Print(const wchar_t* title, const std::string& data) {
    return Start(title) && Write(data) && End();
}

std::wstring GetTestFolder() {
    return sTemporary->mFolder->Standard("").wstring();
}

std::wstring GetJobPath(const std::wstring& fileName) {
    wchar_t user[256];
    DWORD length = 256;
    ::GetUserNameW(user, &length);
    return GetTestFolder() + user + L"\\Proof\\" + fileName;
}

std::string ReadFileBytes(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    if (!file) return "(no file)";
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

bool IsClosed(const std::wstring& path) {
    return static_cast<bool>(PWin32ScopedHandle<PWin32FileHandle>(
        ::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)));
}
