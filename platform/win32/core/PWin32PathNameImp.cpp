#include "platform/win32/core/PWin32PathNameImp.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <string_view>

#include "framework/core/bytes/GByteHash.h"
#include "framework/core/paths/GPathText.h"

namespace {

// From this length on the system's own limit is near: a folder must leave room for an 8.3 name.
constexpr long cLongPathLength = 247;
// What GetWin32APIPathString puts into a long path.
constexpr std::size_t cLongPathPrefix = 6;

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
    GString api = GetWin32PathString();
    if (api.GetLength() < cLongPathLength) return api;
    const bool network = api[0] == '\\' && api[1] == '\\';
    // Unit by unit: PortableToWin32 has left room for them.
    long position = network ? 2 : 0;
    for (const char c : std::string_view(network ? R"(?\UNC\)" : R"(\\?\)"))
        api.Insert(position++, static_cast<unsigned short>(c));
    return api;
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
    const GPathUnits path = GPathText::UnitsOf(GetCrossPlatformString());
    return GPathText::MakeString(path.first(RootNameLengthIn(path)));
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
    return GPathText::IsEqualIgnoreCase(GPathText::UnitsOf(GetCrossPlatformString()),
                                        GPathText::UnitsOf(other.GetCrossPlatformString()));
}

std::uint32_t PWin32PathNameImp::GetHash() const {
    const GPathUnits path = GPathText::UnitsOf(GetCrossPlatformString());
    unsigned short lower[128];
    auto hash = static_cast<std::uint32_t>(2 * path.size());
    for (GPathUnits rest = path; !rest.empty();) {
        const GPathUnits part = rest.first(std::min(rest.size(), std::size(lower)));
        std::transform(part.begin(), part.end(), lower, PText::ToLower);
        const auto bytes = static_cast<std::uint32_t>(2 * part.size());
        // The hash of a text starts from its length and turns by four bits a byte: a part adds what is
        // left of its own hash without the length.
        hash = std::rotl(hash ^ bytes, static_cast<int>(4 * (bytes % 8))) ^
               GByteHash::Of(reinterpret_cast<const unsigned char*>(lower), static_cast<long>(bytes));
        rest = rest.subspan(part.size());
    }
    return hash;
}

long PWin32PathNameImp::GetRootNameLength(const GString& portable) {
    return static_cast<long>(RootNameLengthIn(GPathText::UnitsOf(portable)));
}

long PWin32PathNameImp::GetRootDirectoryLength(const GString& portable) {
    return HasRootDirectoryIn(GPathText::UnitsOf(portable)) ? 1 : 0;
}

long PWin32PathNameImp::GetStartPositionRelativePath(const GString& portable) {
    // "/ab:" counts both as a root name in whole and as starting at the root.
    const auto length = static_cast<long>(GPathText::UnitsOf(portable).size());
    return std::min(GetRootNameLength(portable) + GetRootDirectoryLength(portable), length);
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
    const GPathInput input(win32);
    GPathUnits path = input.GetUnits();
    // Seven units of "\\?\UNC\" leave one backslash in front of the server: other readers of paths
    // stored in this form count on the single slash.
    if (GPathText::StartsWith(path, R"(\\?\)"))
        path = path.subspan(GPathText::StartsWith(path, R"(\\?\UNC\)") ? 7 : 4);
    GUnitBuilder portable(path.size());
    portable.AddReplacing(path, '\\', '/');
    return portable.Take();
}

GString PWin32PathNameImp::PortableToWin32(const GString& portable) {
    const GPathInput input(portable);
    const GPathUnits path = input.GetUnits();
    const bool isLong = path.size() >= static_cast<std::size_t>(cLongPathLength);
    GUnitBuilder win32(path.size() + (isLong ? cLongPathPrefix : 1));
    if (path.empty()) win32.Add('.');
    win32.AddReplacing(path, '/', '\\');
    return win32.Take();
}
