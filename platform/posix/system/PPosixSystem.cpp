#include "framework/system/PSystem.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <thread>

namespace {

std::atomic<std::int32_t> sOSCode = PSystem::cUnknownOSCode;
std::atomic<void*> sModule = nullptr;

// "00:1a:2b:3c:4d:5e" as six bytes.
GBuffer ParseAddress(const std::string& text) {
    unsigned parts[6] = {};
    GBuffer address;
    if (std::sscanf(text.c_str(), "%2x:%2x:%2x:%2x:%2x:%2x", &parts[0], &parts[1], &parts[2], &parts[3],
                    &parts[4], &parts[5]) != 6) {
        return address;
    }
    for (const unsigned part : parts) address += static_cast<unsigned char>(part);
    return address;
}

}  // namespace

long PSystem::GetOSCode() {
    const std::int32_t code = sOSCode;
    return code == cUnknownOSCode ? 0 : code;
}

void PSystem::SetOSCode(long code) {
    sOSCode = static_cast<std::int32_t>(code);
}

long PSystem::GetPlatformCode() {
    return cPlatformUNIX;
}

bool PSystem::IsWindowsServer() {
    return false;
}

bool PSystem::IsNTOrBetter() {
    return GetOSCode() != 0;
}

bool PSystem::IsWow64() {
    return false;
}

bool PSystem::GetNetworkName(GString& name) {
    char text[HOST_NAME_MAX + 1] = {};
    name.Clear();
    if (::gethostname(text, sizeof text - 1) != 0) return false;
    name = GString::FromUTF8(text);
    return true;
}

bool PSystem::GetLogonName(GString& name) {
    name.Clear();
    const struct passwd* const user = ::getpwuid(::geteuid());
    if (user == nullptr) return false;
    name = GString::FromUTF8(user->pw_name);
    return true;
}

bool PSystem::GetEtherAddress(GTable<GBuffer>& addresses) {
    addresses.Clear();
    std::error_code error;
    for (const auto& adapter : std::filesystem::directory_iterator("/sys/class/net", error)) {
        std::ifstream file(adapter.path() / "address");
        std::string text;
        if (!std::getline(file, text)) continue;
        const GBuffer address = ParseAddress(text);
        if (!address.IsEmpty()) addresses.Append(address);
    }
    return !error;
}

long PSystem::GetNumberOfProcessors() {
    return static_cast<long>(std::thread::hardware_concurrency());
}

void PSystem::SetHInstance(void* module) {
    sModule = module;
}

void* PSystem::GetHInstance() {
    return sModule;
}

GPathName PSystem::GetDllPath() {
    return GetApplicationPath();
}

GPathName PSystem::GetApplicationPath() {
    char path[PATH_MAX] = {};
    if (::readlink("/proc/self/exe", path, sizeof path - 1) < 0) return GPathName();
    return GPathName(GString::FromUTF8(path));
}

void PSystem::Sleep(double seconds) {
    constexpr double cMaxSeconds = std::numeric_limits<std::int32_t>::max() / 1000.0;
    if (!(seconds > 0)) return;
    std::this_thread::sleep_for(std::chrono::duration<double>(std::min(seconds, cMaxSeconds)));
}

void PSystem::MilliSleep(long milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(std::max(milliseconds, 0L)));
}

unsigned short PSystem::GetPathSeparator() {
    return '/';
}

void PSystem::Trace(const wchar_t* text) noexcept {
    if (text != nullptr) std::fprintf(stderr, "%ls\n", text);
}

void PSystem::Trace(const char* text) noexcept {
    if (text != nullptr) std::fprintf(stderr, "%s\n", text);
}
