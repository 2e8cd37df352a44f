#include "framework/system/PSystem.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <limits>
#include <memory>

#include "framework/system/GOSVersion.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32LastErrorKeeper.h"

#include <iphlpapi.h>

namespace {

std::atomic<std::int32_t> sOSCode = PSystem::cUnknownOSCode;
std::atomic<void*> sModule = nullptr;

template <class Function>
Function FindKernelFunction(const char* name) {
    const HMODULE kernel = ::GetModuleHandleW(L"kernel32.dll");
    if (kernel == nullptr) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(kernel, name)));
}

bool IsExactly(DWORD major, DWORD minor) {
    OSVERSIONINFOEXW wanted = {};
    wanted.dwOSVersionInfoSize = sizeof wanted;
    wanted.dwMajorVersion = major;
    wanted.dwMinorVersion = minor;
    const ULONGLONG conditions = ::VerSetConditionMask(::VerSetConditionMask(0, VER_MAJORVERSION, VER_EQUAL),
                                                       VER_MINORVERSION, VER_EQUAL);
    return ::VerifyVersionInfoW(&wanted, VER_MINORVERSION | VER_MAJORVERSION | VER_SERVICEPACKMAJOR,
                                conditions) != 0;
}

bool ReadVersion(GOSVersion& version) {
    OSVERSIONINFOA info = {};
    static_assert(sizeof info == 148);
    info.dwOSVersionInfoSize = sizeof info;
    if (!::GetVersionExA(&info)) return false;
    version.platformID = static_cast<long>(info.dwPlatformId);
    version.major = static_cast<long>(info.dwMajorVersion);
    version.minor = static_cast<long>(info.dwMinorVersion);
    version.isServer = PSystem::IsWindowsServer();
    version.isExactly62 = IsExactly(6, 2);
    version.isExactly63 = IsExactly(6, 3);
    return true;
}

GPathName GetModulePath(void* module) {
    constexpr DWORD cUnits = 32766;
    const auto path = std::make_unique<wchar_t[]>(cUnits);
    const DWORD length = ::GetModuleFileNameW(static_cast<HMODULE>(module), path.get(), cUnits);
    if (length == 0) return GPathName();
    return GPathName::FromNative(NameFromWide(path.get(), static_cast<long>(length)));
}

SYSTEM_INFO GetMachineInfo() {
    SYSTEM_INFO info = {};
    if (const auto getNative = FindKernelFunction<decltype(&::GetNativeSystemInfo)>("GetNativeSystemInfo")) {
        getNative(&info);
    } else {
        ::GetSystemInfo(&info);
    }
    return info;
}

// The list of adapters in a block of its own; null when the system does not tell. The list may grow
// between the question for its size and the question for it, hence the rounds.
std::unique_ptr<unsigned char[]> GetAdapters(ULONG& result) {
    constexpr int cRounds = 4;
    ULONG size = 0;
    std::unique_ptr<unsigned char[]> block;
    result = ERROR_BUFFER_OVERFLOW;
    for (int round = 0; round < cRounds && result == ERROR_BUFFER_OVERFLOW; ++round) {
        block = std::make_unique<unsigned char[]>(size);
        result = ::GetAdaptersInfo(reinterpret_cast<IP_ADAPTER_INFO*>(block.get()), &size);
    }
    return block;
}

}  // namespace

long PSystem::GetOSCode() {
    const std::int32_t cached = sOSCode.load(std::memory_order_relaxed);
    if (cached != cUnknownOSCode) return cached;
    GOSVersion version;
    if (!ReadVersion(version)) return 0;
    const long code = version.GetOSCode();
    sOSCode.store(static_cast<std::int32_t>(code), std::memory_order_relaxed);
    return code;
}

void PSystem::SetOSCode(long code) {
    sOSCode.store(static_cast<std::int32_t>(code), std::memory_order_relaxed);
}

long PSystem::GetPlatformCode() {
    return cPlatformWindows;
}

bool PSystem::IsWindowsServer() {
    OSVERSIONINFOEXW info = {};
    info.dwOSVersionInfoSize = sizeof info;
    if (!::GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&info))) return false;
    // Systems before NT leave the product type empty.
    return info.dwPlatformId == VER_PLATFORM_WIN32_NT && info.wProductType != VER_NT_WORKSTATION;
}

bool PSystem::IsNTOrBetter() {
    return GetOSCode() != 0;
}

bool PSystem::IsWow64() {
    const auto isWow64 = FindKernelFunction<decltype(&::IsWow64Process)>("IsWow64Process");
    BOOL answer = FALSE;
    return isWow64 != nullptr && isWow64(::GetCurrentProcess(), &answer) && answer;
}

bool PSystem::GetNetworkName(GString& name) {
    wchar_t text[255] = {};
    DWORD length = 255;
    name.Clear();
    if (!::GetComputerNameExW(ComputerNameDnsHostname, text, &length)) return false;
    if (length > 0 && text[length - 1] == 0) --length;
    name = FromWide(text, static_cast<long>(length));
    return true;
}

bool PSystem::GetLogonName(GString& name) {
    wchar_t text[255] = {};
    DWORD length = 255;
    name.Clear();
    if (!::GetUserNameW(text, &length)) return false;
    name = FromWide(text, static_cast<long>(length) - 1);  // the count includes the terminating zero
    return true;
}

bool PSystem::GetEtherAddress(GTable<GBuffer>& addresses) {
    addresses.Clear();
    ULONG result = 0;
    const std::unique_ptr<unsigned char[]> adapters = GetAdapters(result);
    if (result == ERROR_NO_DATA) return true;
    if (result != ERROR_SUCCESS) return false;
    const auto* adapter = reinterpret_cast<const IP_ADAPTER_INFO*>(adapters.get());
    for (; adapter != nullptr; adapter = adapter->Next) {
        const auto length = std::min<UINT>(adapter->AddressLength, MAX_ADAPTER_ADDRESS_LENGTH);
        addresses.Append(GBuffer(adapter->Address, static_cast<long>(length)));
    }
    return true;
}

long PSystem::GetNumberOfProcessors() {
    return static_cast<long>(GetMachineInfo().dwNumberOfProcessors);
}

void PSystem::SetHInstance(void* module) {
    sModule = module;
}

void* PSystem::GetHInstance() {
    return sModule;
}

GPathName PSystem::GetDllPath() {
    return GetModulePath(sModule);
}

GPathName PSystem::GetApplicationPath() {
    return GetModulePath(nullptr);
}

void PSystem::Sleep(double seconds) {
    // The longest wait that is not "for ever".
    constexpr double cMaxMilliseconds = std::numeric_limits<std::int32_t>::max();
    if (!(seconds > 0)) return;
    ::Sleep(static_cast<DWORD>(std::min(seconds * 1000, cMaxMilliseconds)));
}

void PSystem::MilliSleep(long milliseconds) {
    ::Sleep(static_cast<DWORD>(std::max(milliseconds, 0L)));
}

unsigned short PSystem::GetPathSeparator() {
    return '\\';
}

void PSystem::Trace(const wchar_t* text) noexcept {
    const PWin32LastErrorKeeper lastError;
    if (text != nullptr) ::OutputDebugStringW(text);
}

void PSystem::Trace(const char* text) noexcept {
    const PWin32LastErrorKeeper lastError;
    if (text != nullptr) ::OutputDebugStringA(text);
}
