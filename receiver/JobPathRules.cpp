#include "receiver/JobPathRules.h"

#include <algorithm>

#include "framework/core/paths/GPathName.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"

namespace {

bool IsASCIILetter(wchar_t unit) {
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

// What the system looks at to find a device stands before the first dot, without blanks at its end.
bool IsDeviceName(std::wstring_view name) {
    std::wstring_view base = name.substr(0, name.find(L'.'));
    while (base.ends_with(L' ')) base.remove_suffix(1);
    if (base.empty()) return false;
    const GString wanted = FromWide(base);
    GString valid = wanted;
    GPathName::CreateValidFileName(valid, -1, '_');
    return valid != wanted;
}

bool IsPlainName(std::wstring_view name) {
    constexpr std::wstring_view cRefused = L"<>:\"/|?*";
    if (name.empty() || name.ends_with(L'.') || name.ends_with(L' ') || IsDeviceName(name)) return false;
    return std::ranges::none_of(
        name, [&](wchar_t unit) { return unit < L' ' || cRefused.find(unit) != cRefused.npos; });
}

}  // namespace

bool JobPathRules::IsPlain(std::wstring_view path) {
    if (path.size() < 4 || !IsASCIILetter(path[0]) || path.substr(1, 2) != L":\\") return false;
    for (std::size_t start = 3; start <= path.size();) {
        const std::size_t end = std::min(path.find(L'\\', start), path.size());
        if (!IsPlainName(path.substr(start, end - start))) return false;
        start = end + 1;
    }
    return true;
}

bool JobPathRules::IsOnLocalDrive(std::wstring_view path) {
    const UINT type = ::GetDriveTypeW(std::wstring(path.substr(0, 3)).c_str());
    return type == DRIVE_FIXED || type == DRIVE_RAMDISK || type == DRIVE_REMOVABLE;
}

bool JobPathRules::IsBelow(const std::wstring& path, const std::wstring& folder) {
    const std::wstring start = folder.ends_with(L'\\') ? folder : folder + L'\\';
    const auto length = static_cast<int>(start.size());
    return path.size() > start.size() &&
           ::CompareStringOrdinal(path.c_str(), length, start.c_str(), length, TRUE) == CSTR_EQUAL;
}
