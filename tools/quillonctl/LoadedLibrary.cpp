#include "tools/quillonctl/LoadedLibrary.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "framework/core/containers/GTable.h"
#include "framework/system/GProcessInfo.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "tools/machine/Failure.h"
#include "tools/quillonctl/SpoolerList.h"

#include <psapi.h>

namespace {

using KernelHandle = PWin32ScopedHandle<PWin32KernelHandle>;

constexpr std::size_t cPageBytes = 4096;
using Header = std::vector<unsigned char>;

// The linker's sum over the file stands in its header. The loader changes the address that the file wishes
// for.
void ForgetAddress(Header& header) {
    constexpr std::size_t cAddress =
        offsetof(IMAGE_NT_HEADERS64, OptionalHeader) + offsetof(IMAGE_OPTIONAL_HEADER64, ImageBase);
    std::uint32_t start = 0;
    std::memcpy(&start, header.data() + offsetof(IMAGE_DOS_HEADER, e_lfanew), sizeof start);
    if (start > header.size() - sizeof(IMAGE_NT_HEADERS64)) return;
    std::fill_n(header.begin() + static_cast<std::ptrdiff_t>(start + cAddress), sizeof(ULONGLONG), 0);
}

// What of the headers is in the first page; what lies behind them there may differ.
std::size_t GetLength(const Header& header) {
    std::uint32_t start = 0;
    std::memcpy(&start, header.data() + offsetof(IMAGE_DOS_HEADER, e_lfanew), sizeof start);
    if (start > header.size() - sizeof(IMAGE_NT_HEADERS64)) return header.size();
    IMAGE_NT_HEADERS64 found{};
    std::memcpy(&found, header.data() + start, sizeof found);
    return std::min<std::size_t>(found.OptionalHeader.SizeOfHeaders, header.size());
}

Header ReadFile(const std::wstring& path) {
    const PWin32ScopedHandle<PWin32FileHandle> file(::CreateFileW(
        path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr));
    Header header(cPageBytes);
    DWORD read = 0;
    if (!file || !::ReadFile(file.Get(), header.data(), cPageBytes, &read, nullptr) || read != cPageBytes)
        throw SystemFailure(L"Reading " + path);
    return header;
}

// An administrator may look into the system's processes, when he asks for it.
void AllowDebugging() {
    HANDLE opened = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES, &opened)) return;
    const KernelHandle token(opened);
    TOKEN_PRIVILEGES wish{};
    wish.PrivilegeCount = 1;
    wish.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    if (::LookupPrivilegeValueW(nullptr, L"SeDebugPrivilege", &wish.Privileges[0].Luid))
        ::AdjustTokenPrivileges(token.Get(), FALSE, &wish, 0, nullptr, nullptr);
}

KernelHandle OpenSpooler() {
    GTable<std::int32_t> processes;
    GProcessInfo::GetInstance()->GetProcessIDs("spoolsv.exe", processes, false);
    if (processes.GetCount() == 0)
        throw Failure(
            L"No process of the print spooler is to be seen. Run this from an administrator's prompt.");
    AllowDebugging();
    KernelHandle process(
        ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, static_cast<DWORD>(processes[0])));
    if (!process) throw SystemFailure(L"Looking into the print spooler's process");
    return process;
}

std::vector<HMODULE> GetModules(const KernelHandle& process) {
    std::vector<HMODULE> modules(1024);
    const auto size = static_cast<DWORD>(modules.size() * sizeof(HMODULE));
    DWORD needed = 0;
    if (!::EnumProcessModules(process.Get(), modules.data(), size, &needed))
        throw SystemFailure(L"Listing what the print spooler has loaded");
    modules.resize(std::min<std::size_t>(needed, size) / sizeof(HMODULE));
    return modules;
}

}  // namespace

bool LoadedLibrary::IsSame(void* process, const void* module, const std::wstring& path) {
    Header onDisk = ReadFile(path);
    Header loaded(cPageBytes);
    if (!::ReadProcessMemory(process, module, loaded.data(), loaded.size(), nullptr))
        throw SystemFailure(L"Reading the loaded library");
    ForgetAddress(onDisk);
    ForgetAddress(loaded);
    const std::size_t length = GetLength(onDisk);
    return std::equal(onDisk.begin(), onDisk.begin() + static_cast<std::ptrdiff_t>(length), loaded.begin());
}

LoadedLibrary::State LoadedLibrary::FindInSpooler(const std::wstring& path) {
    const std::wstring leaf = path.substr(path.find_last_of(L'\\') + 1);
    const KernelHandle spooler = OpenSpooler();
    for (const HMODULE module : GetModules(spooler)) {
        wchar_t name[MAX_PATH] = L"";
        ::GetModuleBaseNameW(spooler.Get(), module, name, std::size(name));
        if (IsSameName(name, leaf)) return IsSame(spooler.Get(), module, path) ? State::cSame : State::cOther;
    }
    return State::cNone;
}
