#include "platform/win32/PWin32PathNameImp.h"

#include <algorithm>

#include "framework/core/GPathText.h"
#include "framework/core/GStringSupport.h"

namespace {

// From this length on the system's own limit is near: a folder must leave room for an 8.3 name.
constexpr std::size_t cLongPathLength = 247;

bool StartsWithNetworkRoot(GPathUnits path) {
    return GPathText::StartsWith(path, "//");
}

bool HasRootNameIn(GPathUnits path) {
    return path.size() >= 2 && (path[1] == ':' || StartsWithNetworkRoot(path) || path.back() == ':');
}

bool HasRootDirectoryIn(GPathUnits path) {
    if (path.empty()) return false;
    if (path.size() < 3) return path[0] == '/';
    if (StartsWithNetworkRoot(path)) return GPathText::Find(path, '/', 2) != GPathText::cNotFound;
    return path[0] == '/' || (path[1] == ':' && path[2] == '/');
}

std::size_t RootNameLengthIn(GPathUnits path) {
    const std::size_t length = path.size();
    if (length > 1 && path[1] == ':') return 2;
    if (length > 2 && StartsWithNetworkRoot(path)) return std::min(GPathText::Find(path, '/', 2), length);
    return length >= 2 && path.back() == ':' ? length : 0;
}

bool IsSeparator(unsigned short unit) {
    return unit == '/' || unit == '\\';
}

}  // namespace

PWin32PathNameImp::~PWin32PathNameImp() = default;

GString PWin32PathNameImp::GetWin32PathString() const {
    GString win32;
    ConvertPortableToWin32(GetCrossPlatformString(), win32);
    return win32;
}

GString PWin32PathNameImp::GetNativePathString() const {
    return GetWin32PathString();
}

GString PWin32PathNameImp::GetLegacyPlatformString() const {
    return GetWin32PathString();
}

GString PWin32PathNameImp::GetWin32APIPathString() const {
    const GPathUnits path = GPathText::UnitsOf(GetCrossPlatformString());
    if (path.size() < cLongPathLength) return GetWin32PathString();
    const bool network = IsSeparator(path[0]) && IsSeparator(path[1]);
    GUnitBuilder api(path.size() + 7);
    api.Add(network ? R"(\\?\UNC)" : R"(\\?\)");
    api.AddReplacing(path.subspan(network ? 1 : 0), '/', '\\');
    return api.Take();
}

void PWin32PathNameImp::SetRootName(const GString& native) {
    GString portable;
    ConvertWin32ToPortable(native, portable);
    SetCrossPlatformRootNameString(portable);
}

void PWin32PathNameImp::SetRootPath(const GString& native) {
    GString portable;
    ConvertWin32ToPortable(native, portable);
    SetCrossPlatformRootPathString(portable);
}

void PWin32PathNameImp::SetCrossPlatformRootNameString(const GString& portable) {
    SetCrossPlatformString(portable);
}

void PWin32PathNameImp::SetCrossPlatformRootPathString(const GString& portable) {
    SetCrossPlatformString(portable);
}

GString PWin32PathNameImp::GetCrossPlatformRootNameString() const {
    const GString& path = GetCrossPlatformString();
    return path.GetSubstring(0, GetRootNameLength(path));
}

GString PWin32PathNameImp::GetCrossPlatformRootDirectoryString() const {
    return HasRootDirectory() ? GString("/") : GString();
}

bool PWin32PathNameImp::HasRootName() const {
    return HasRootNameIn(GPathText::UnitsOf(GetCrossPlatformString()));
}

bool PWin32PathNameImp::HasRootDirectory() const {
    return HasRootDirectoryIn(GPathText::UnitsOf(GetCrossPlatformString()));
}

bool PWin32PathNameImp::HasRootPath() const {
    return HasRootName() || HasRootDirectory();
}

bool PWin32PathNameImp::IsRelative() const {
    return !HasRootName();
}

bool PWin32PathNameImp::Equals(const PWin32PathNameImp& other) const {
    return GStringSupport::IsEqualIgnoreCase(GetCrossPlatformString(), other.GetCrossPlatformString());
}

std::uint32_t PWin32PathNameImp::GetHash() const {
    GString lower = GetCrossPlatformString();
    lower.ToLower();
    return lower.GetHash();
}

long PWin32PathNameImp::GetRootNameLength(const GString& portable) {
    return static_cast<long>(RootNameLengthIn(GPathText::UnitsOf(portable)));
}

long PWin32PathNameImp::GetRootDirectoryLength(const GString& portable) {
    return HasRootDirectoryIn(GPathText::UnitsOf(portable)) ? 1 : 0;
}

long PWin32PathNameImp::GetStartPositionRelativePath(const GString& portable) {
    // "/ab:" counts both as a root name in whole and as starting at the root.
    return std::min(GetRootNameLength(portable) + GetRootDirectoryLength(portable), portable.GetLength());
}

long PWin32PathNameImp::GetLeafPosition(const GString& portable) {
    const GPathUnits path = GPathText::UnitsOf(portable);
    const auto length = static_cast<long>(path.size());
    if (path.empty() || path.back() == '/' || path.back() == ':') return length;
    const std::size_t slash = GPathText::FindLast(path, '/');
    if (slash == 1 && path[0] == '/') return length;
    // "Not found" plus one is the start.
    if (slash != GPathText::cNotFound) return static_cast<long>(slash + 1);
    return static_cast<long>(GPathText::FindLast(path, ':') + 1);
}

GString PWin32PathNameImp::Win32ToPortable(const GString& win32) {
    GPathUnits path = GPathText::UnitsOf(win32);
    // Seven units of "\\?\UNC\" leave one backslash in front of the server: other readers of paths
    // stored in this form count on the single slash.
    if (GPathText::StartsWith(path, R"(\\?\)"))
        path = path.subspan(GPathText::StartsWith(path, R"(\\?\UNC\)") ? 7 : 4);
    GUnitBuilder portable(path.size());
    portable.AddReplacing(path, '\\', '/');
    return portable.Take();
}

GString PWin32PathNameImp::PortableToWin32(const GString& portable) {
    if (portable.IsEmpty()) return GString(".");
    const GPathUnits path = GPathText::UnitsOf(portable);
    GUnitBuilder win32(path.size());
    win32.AddReplacing(path, '/', '\\');
    return win32.Take();
}
