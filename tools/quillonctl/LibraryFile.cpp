#include "tools/quillonctl/LibraryFile.h"

#include <vector>

#include "framework/core/bytes/GBuffer.h"
#include "framework/files/GFile.h"
#include "framework/files/GFileOpenMode.h"
#include "framework/files/GFileSystem.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"
#include "tools/quillonctl/Product.h"

namespace {

GPathName PathOf(const std::wstring& native) {
    return GPathName::FromNative(NameFromWide(native));
}

std::wstring NativeOf(const GPathName& path) {
    return AsWide(path.GetNativePathString());
}

/// Runs a step of the file system, whose refusal becomes a failure of that action.
template <class Step>
void Try(const std::wstring& action, Step step) {
    try {
        step();
    } catch (const PWin32SystemException& failure) {
        throw SystemFailure(action, static_cast<unsigned long>(failure.GetSystemErrorCode()));
    }
}

// What stands at the target is replaced.
void Rename(const std::wstring& from, const std::wstring& to) {
    Try(L"Renaming " + from + L" to " + to, [&] { GFileSystem::ReplaceFile(PathOf(from), PathOf(to)); });
}

bool IsTaken(const PWin32SystemException& failure) {
    return failure.GetSystemErrorCode() == ERROR_ALREADY_EXISTS ||
           failure.GetSystemErrorCode() == ERROR_FILE_EXISTS;
}

}  // namespace

std::wstring LibraryFile::GetDeliveredPath() {
    GPathName path = GFileSystem::GetSpecialPath(GSpecialPath::cApplication);
    path.ReplaceLeaf(PathOf(Product::cLibraryName).GetLeaf());
    return NativeOf(path);
}

std::wstring LibraryFile::GetInstalledPath(const std::wstring& fileName) {
    // A monitor may be registered by its full path, too.
    if (fileName.find(L'\\') != std::wstring::npos) return fileName;
    return NativeOf(GFileSystem::GetSystemFolder()) + L'\\' + fileName;
}

bool LibraryFile::Exists(const std::wstring& path) {
    return GFileSystem::TryFileExists(PathOf(path));
}

bool LibraryFile::HaveSameContent(const std::wstring& onePath, const std::wstring& otherPath) {
    constexpr long cBlockBytes = 65536;
    GBuffer oneBlock;
    GBuffer otherBlock;
    try {
        GFile one(PathOf(onePath), GFileOpenMode::cRead);
        GFile other(PathOf(otherPath), GFileOpenMode::cRead);
        if (one.GetLength() != other.GetLength()) return false;
        while (one.Read(oneBlock, cBlockBytes) > 0)
            if (other.Read(otherBlock, oneBlock.GetLength()) != oneBlock.GetLength() ||
                oneBlock != otherBlock)
                return false;
        return true;
    } catch (const GException&) {
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
    const GPathName copy = PathOf(target);
    Try(L"Copying " + source + L" to " + target,
        [&] { GFileSystem::CopyAndRenameFile(PathOf(source), copy.GetBranch(), copy.GetLeaf()); });
}

std::wstring LibraryFile::MoveAside(const std::wstring& path) {
    constexpr long cMaxAttempts = 100;
    const GPathName file = PathOf(path);
    GPathName aside;
    Try(L"Renaming " + path, [&] {
        for (long attempt = 1; aside.IsEmpty(); ++attempt) {
            try {
                aside = GFileSystem::RenameFile(file, file.GetLeaf() + GString(".old") + GString(attempt));
            } catch (const PWin32SystemException& failure) {
                if (attempt == cMaxAttempts || !IsTaken(failure)) throw;
            }
        }
    });
    return NativeOf(aside);
}

void LibraryFile::PutBack(const std::wstring& aside, const std::wstring& target,
                          unsigned long waitMilliseconds) {
    // First of all the old file gets its name back. A loaded one at the target could not be replaced.
    const std::wstring spoilt = Exists(target) ? MoveAside(target) : std::wstring();
    Rename(aside, target);
    if (!spoilt.empty()) Discard(spoilt, waitMilliseconds);
}

bool LibraryFile::Discard(const std::wstring& aside, unsigned long waitMilliseconds) {
    constexpr DWORD cRetryMilliseconds = 250;
    for (DWORD waited = 0; !::DeleteFileW(aside.c_str()); waited += cRetryMilliseconds) {
        if (!Exists(aside)) return true;
        if (waited < waitMilliseconds) {
            ::Sleep(cRetryMilliseconds);
        } else if (::MoveFileExW(aside.c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT)) {
            return false;
        } else {
            throw SystemFailure(L"Removing " + aside);
        }
    }
    return !Exists(aside);
}

bool LibraryFile::Remove(const std::wstring& path, unsigned long waitMilliseconds) {
    if (!Exists(path)) return true;
    // Under another name first: a file that is open somewhere may keep its name when it is deleted.
    const std::wstring aside = MoveAside(path);
    try {
        return Discard(aside, waitMilliseconds);
    } catch (const Failure&) {
        Rename(aside, path);
        throw;
    }
}
