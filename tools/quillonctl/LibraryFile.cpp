#include "tools/quillonctl/LibraryFile.h"

#include <cstring>
#include <vector>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "tools/machine/Failure.h"
#include "tools/quillonctl/Product.h"

namespace {

using FileHandle = PWin32ScopedHandle<PWin32FileHandle>;

FileHandle OpenForReading(const std::wstring& path) {
    return FileHandle(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

// Fills the block as far as the file goes; -1 when reading fails.
long long ReadBlock(HANDLE file, std::vector<char>& block) {
    std::size_t length = 0;
    while (length < block.size()) {
        DWORD taken = 0;
        const auto wanted = static_cast<DWORD>(block.size() - length);
        if (!::ReadFile(file, block.data() + length, wanted, &taken, nullptr)) return -1;
        if (taken == 0) break;
        length += taken;
    }
    return static_cast<long long>(length);
}

std::wstring GetModulePath() {
    std::wstring path(32768, L'\0');
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || length >= path.size()) throw SystemFailure(L"Finding this program's folder");
    path.resize(length);
    return path;
}

}  // namespace

std::wstring LibraryFile::GetDeliveredPath() {
    const std::wstring program = GetModulePath();
    return program.substr(0, program.find_last_of(L'\\') + 1) + Product::cLibraryName;
}

std::wstring LibraryFile::GetInstalledPath(const std::wstring& fileName) {
    // A monitor may be registered by its full path, too.
    if (fileName.find(L'\\') != std::wstring::npos) return fileName;
    wchar_t folder[MAX_PATH];
    const UINT length = ::GetSystemDirectoryW(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) throw SystemFailure(L"Finding the system folder");
    return std::wstring(folder) + L'\\' + fileName;
}

bool LibraryFile::Exists(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool LibraryFile::HaveSameContent(const std::wstring& onePath, const std::wstring& otherPath) {
    const FileHandle one = OpenForReading(onePath);
    const FileHandle other = OpenForReading(otherPath);
    if (!one || !other) return false;
    constexpr std::size_t cBlockBytes = 65536;
    std::vector<char> oneBlock(cBlockBytes);
    std::vector<char> otherBlock(cBlockBytes);
    for (;;) {
        const long long length = ReadBlock(one.Get(), oneBlock);
        if (length < 0 || length != ReadBlock(other.Get(), otherBlock)) return false;
        if (length == 0) return true;
        if (std::memcmp(oneBlock.data(), otherBlock.data(), static_cast<std::size_t>(length)) != 0)
            return false;
    }
}

std::optional<std::wstring> LibraryFile::FindFault(const std::wstring& path) {
    // By its full path, so that another one of that name, which the spooler has loaded, is not taken for it.
    const PWin32ScopedHandle<PWin32ModuleHandle> module(
        ::LoadLibraryExW(path.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES));
    if (!module)
        return L"It cannot be loaded into a 64-bit program. " + DescribeSystemError(::GetLastError());
    constexpr const char* cEntryPoint = "InitializePrintMonitor2";
    if (::GetProcAddress(static_cast<HMODULE>(module.Get()), cEntryPoint) == nullptr)
        return L"It is no print port monitor.";
    if (!GetVersion(path)) return L"It has no version.";
    return std::nullopt;
}

std::optional<std::wstring> LibraryFile::GetVersion(const std::wstring& path) {
    const DWORD size = ::GetFileVersionInfoSizeW(path.c_str(), nullptr);
    std::vector<BYTE> resource(size);
    VS_FIXEDFILEINFO* info = nullptr;
    UINT length = 0;
    if (size == 0 || !::GetFileVersionInfoW(path.c_str(), 0, size, resource.data()) ||
        !::VerQueryValueW(resource.data(), L"\\", reinterpret_cast<void**>(&info), &length) ||
        length < sizeof(VS_FIXEDFILEINFO)) {
        return std::nullopt;
    }
    std::wstring version;
    for (const DWORD word : {info->dwFileVersionMS, info->dwFileVersionLS}) {
        version += (version.empty() ? L"" : L".") + std::to_wstring(HIWORD(word)) + L'.' +
                   std::to_wstring(LOWORD(word));
    }
    return version;
}

void LibraryFile::Copy(const std::wstring& source, const std::wstring& target) {
    if (!::CopyFileW(source.c_str(), target.c_str(), TRUE)) {
        throw SystemFailure(L"Copying " + source + L" to " + target);
    }
}

std::wstring LibraryFile::MoveAside(const std::wstring& path) {
    constexpr int cMaxAttempts = 100;
    for (int attempt = 1; attempt <= cMaxAttempts; ++attempt) {
        const std::wstring aside = path + L".old" + std::to_wstring(attempt);
        if (::MoveFileExW(path.c_str(), aside.c_str(), 0)) return aside;
        const DWORD error = ::GetLastError();
        if (error != ERROR_ALREADY_EXISTS && error != ERROR_FILE_EXISTS) break;
    }
    throw SystemFailure(L"Renaming " + path);
}

void LibraryFile::MoveBack(const std::wstring& aside, const std::wstring& target) {
    if (!::MoveFileExW(aside.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        throw SystemFailure(L"Renaming " + aside + L" to " + target);
    }
}

bool LibraryFile::Remove(const std::wstring& path) {
    if (!Exists(path)) return true;
    // Under another name first: a file that is open somewhere may keep its name when it is deleted.
    const std::wstring aside = MoveAside(path);
    if (::DeleteFileW(aside.c_str()) || ::MoveFileExW(aside.c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT)) {
        return !Exists(aside);
    }
    const Failure failure = SystemFailure(L"Removing " + path);
    MoveBack(aside, path);
    throw failure;
}
