#include "tests/monitor/dll/MonitorLibrary.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using Initialize = MONITOR2*(WINAPI*)(MONITORINIT*, HANDLE*);

/// Chosen before the library is loaded: it asks for the temporary folder once.
class TestFolder final : public testing::Environment {
public:
    void SetUp() override {
        wchar_t temp[MAX_PATH];
        ::GetTempPathW(MAX_PATH, temp);
        sPath = std::wstring(temp) + L"quillon-monitor-" + std::to_wstring(::GetCurrentProcessId());
        ::CreateDirectoryW(sPath.c_str(), nullptr);
        sPath += L'\\';
        ::SetEnvironmentVariableW(L"TMP", sPath.c_str());
        ::SetEnvironmentVariableW(L"TEMP", sPath.c_str());
    }

    static std::wstring sPath;
};

std::wstring TestFolder::sPath;

[[maybe_unused]] testing::Environment* const sEnvironment = testing::AddGlobalTestEnvironment(new TestFolder);

PWin32ScopedHandle<PWin32FileHandle> OpenToRead(const std::wstring& path, DWORD share) {
    return PWin32ScopedHandle<PWin32FileHandle>(
        ::CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

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
    return TestFolder::sPath;
}

std::wstring GetJobPath(const std::wstring& fileName) {
    wchar_t user[256];
    DWORD length = 256;
    ::GetUserNameW(user, &length);
    return GetTestFolder() + user + L"\\Proof\\" + fileName;
}

std::string ReadFileBytes(const std::wstring& path) {
    const auto file = OpenToRead(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    if (!file) return "(no file)";
    LARGE_INTEGER size{};
    ::GetFileSizeEx(file.Get(), &size);
    std::string content(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD count = 0;
    ::ReadFile(file.Get(), content.data(), static_cast<DWORD>(content.size()), &count, nullptr);
    content.resize(count);
    return content;
}

bool IsClosed(const std::wstring& path) {
    return static_cast<bool>(OpenToRead(path, 0));
}

std::string MakeData(std::size_t size, std::uint32_t seed) {
    std::string data(size, '\0');
    for (char& byte : data) {
        seed = seed * 1103515245 + 12345;
        byte = static_cast<char>(seed >> 16);
    }
    return data;
}
