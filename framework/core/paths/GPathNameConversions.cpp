// The native forms of GPathName.
#include <array>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/paths/GPathText.h"

namespace {

constexpr std::string_view cVolumes = "/Volumes/";

GPathUnits WithoutSlashes(GPathUnits units) {
    while (!units.empty() && units.front() == '/') units = units.subspan(1);
    return units;
}

/// A portable path as a Mac sees it: the name of a volume and what lies below, or no volume at all.
struct VolumePath {
    GPathUnits mVolume;
    GPathUnits mRest;  // without '/' in front; the whole path when there is no volume
};

VolumePath SplitVolume(GPathUnits path) {
    if (path.size() >= 2 && path[1] == ':' && GPathText::IsASCIILetter(path[0]))
        return {path.first(1), WithoutSlashes(path.subspan(2))};
    if (path.size() > 2 && path.back() == ':' && path[0] != '/') return {path.first(path.size() - 1), {}};
    if (path.size() > cVolumes.size() && GPathText::StartsWith(path, cVolumes)) {
        const GPathUnits below = path.subspan(cVolumes.size());
        const std::size_t end = std::min(GPathText::Find(below, '/'), below.size());
        if (end > 0) return {below.first(end), WithoutSlashes(below.subspan(end))};
    }
    return {{}, path};
}

bool IsDrive(GPathUnits volume) {
    return volume.size() == 1 && GPathText::IsASCIILetter(volume[0]);
}

/// In the names of the two systems '/' and ':' change places.
void AddMacName(GUnitBuilder& out, GPathUnits name) {
    for (const unsigned short unit : name) out.Add(unit == ':' ? '/' : unit == '/' ? ':' : unit);
}

GString PortableToCFM(GPathUnits path) {
    const VolumePath parts = SplitVolume(path);
    GUnitBuilder cfm(path.size() + 2);
    AddMacName(cfm, parts.mVolume);
    cfm.Add(':');
    // Every name ends in a ':', every further ':' is a step upwards.
    const std::size_t root = cfm.GetCount();
    bool endsInName = false;
    for (std::size_t position = 0;;) {
        const GPathUnits component = GPathText::NextComponent(parts.mRest, position);
        if (component.empty()) break;
        if (GPathText::IsEqual(component, ".")) continue;
        endsInName = !GPathText::IsEqual(component, "..");
        if (endsInName) AddMacName(cfm, component);
        cfm.Add(':');
    }
    if (endsInName && parts.mRest.back() != '/') cfm.CutTo(cfm.GetCount() - 1);
    const bool nameAlone = parts.mVolume.empty() && endsInName &&
                           GPathText::Find(cfm.GetUnits(), ':', root) == GPathText::cNotFound;
    GString text = cfm.Take();
    if (nameAlone) text.Remove(0, static_cast<long>(root));
    return text;
}

void AddCFMNames(GUnitBuilder& portable, GPathUnits names) {
    for (bool first = true; !names.empty(); first = false) {
        const std::size_t end = std::min(GPathText::Find(names, ':'), names.size());
        if (!first) portable.Add('/');
        if (end == 0) {
            portable.Add("..");
        } else {
            AddMacName(portable, names.first(end));
        }
        names = names.subspan(std::min(end + 1, names.size()));
    }
}

GString CFMToPortable(GPathUnits cfm) {
    // The longest growth is a ':' that becomes "../".
    GUnitBuilder portable(3 * cfm.size() + cVolumes.size() + 2);
    const std::size_t colon = GPathText::Find(cfm, ':');
    if (colon == GPathText::cNotFound) {
        AddMacName(portable, cfm);
        return portable.Take();
    }
    const GPathUnits volume = cfm.first(colon);
    const GPathUnits names = cfm.subspan(colon + 1);
    if (IsDrive(volume)) {
        portable.Add(volume);
        portable.Add(":/");
    } else if (!volume.empty()) {
        portable.Add(cVolumes);
        AddMacName(portable, volume);
        if (!names.empty()) portable.Add('/');
    }
    AddCFMNames(portable, names);
    return portable.Take();
}

/// Counts what a GUnitBuilder will be given.
class UnitCounter {
public:
    void Add(unsigned short) noexcept { ++mCount; }
    void Add(std::string_view ascii) noexcept { mCount += ascii.size(); }
    std::size_t GetCount() const noexcept { return mCount; }

private:
    std::size_t mCount = 0;
};

/// What RFC 3986 allows in the path of a URL as it is; in the name of a host all but ':' and '@'.
constexpr std::array<bool, 0x80> MakePlainInURL() {
    constexpr std::string_view cPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=:@/";
    std::array<bool, 0x80> plain = {};
    for (const unsigned char c : cPlain) plain[c] = true;
    return plain;
}

bool IsPlainInURL(std::uint32_t codePoint) {
    static constexpr std::array<bool, 0x80> cPlain = MakePlainInURL();
    return codePoint < cPlain.size() && cPlain[codePoint];
}

template <class Out>
void AddPercent(Out& out, std::uint32_t byte) {
    constexpr char cDigits[] = "0123456789ABCDEF";
    out.Add('%');
    out.Add(static_cast<unsigned short>(cDigits[byte >> 4 & 15]));
    out.Add(static_cast<unsigned short>(cDigits[byte & 15]));
}

template <class Out>
void AddToURL(Out& out, std::uint32_t codePoint, bool inHost) {
    const bool reserved = inHost && (codePoint == ':' || codePoint == '@');
    if (IsPlainInURL(codePoint) && !reserved) return out.Add(static_cast<unsigned short>(codePoint));
    if (codePoint < 0x80) return AddPercent(out, codePoint);
    const int following = codePoint < 0x800 ? 1 : codePoint < 0x10000 ? 2 : 3;
    constexpr std::uint32_t cLeads[] = {0, 0xC0, 0xE0, 0xF0};
    AddPercent(out, cLeads[following] | codePoint >> (6 * following));
    for (int i = following - 1; i >= 0; --i) AddPercent(out, 0x80 | (codePoint >> (6 * i) & 0x3F));
}

template <class Out>
void WriteURL(Out& out, GPathUnits path) {
    constexpr std::uint32_t cReplacementCharacter = 0xFFFD;
    std::size_t hostEnd = 0;
    if (GPathText::StartsWith(path, "//")) {
        out.Add("file:");
        hostEnd = GPathText::Find(path, '/', 2);
    } else {
        out.Add(GPathText::StartsWith(path, "/") ? "file://" : "file:///");
    }
    for (std::size_t i = 0; i < path.size(); ++i) {
        const std::uint32_t unit = path[i];
        const bool pair = GUnicodeCharacters::IsHighSurrogate(path[i]) && i + 1 < path.size() &&
                          GUnicodeCharacters::IsLowSurrogate(path[i + 1]);
        if (pair) {
            AddToURL(out, 0x10000 + ((unit & 0x3FF) << 10) + (path[++i] & 0x3FFU), false);
        } else {
            const bool half = unit >= 0xD800 && unit <= 0xDFFF;
            AddToURL(out, half ? cReplacementCharacter : unit, i < hostEnd);
        }
    }
}

bool StartsWithURLScheme(GPathUnits path) {
    return GPathText::StartsWith(path, "http://") || GPathText::StartsWith(path, "ftp://");
}

GString JoinUnits(std::string_view front, GPathUnits first, std::string_view middle, GPathUnits second) {
    GUnitBuilder joined(front.size() + first.size() + middle.size() + second.size());
    joined.Add(front);
    joined.Add(first);
    joined.Add(middle);
    joined.Add(second);
    return joined.Take();
}

GString UNCToPortable(const GString& text) {
    const GPathInput input(text);
    GPathUnits unc = input.GetUnits();
    const bool longNetwork = GPathText::StartsWith(unc, R"(\\?\UNC\)");
    if (longNetwork) {
        unc = unc.subspan(7);
    } else if (GPathText::StartsWith(unc, R"(\\?\)")) {
        unc = unc.subspan(4);
    }
    GUnitBuilder portable(unc.size() + 1);
    if (longNetwork) portable.Add('/');
    portable.AddReplacing(unc, '\\', '/');
    return portable.Take();
}

GString DIToPortable(const GString& text) {
    const GPathInput input(text);
    const GPathUnits di = input.GetUnits();
    if (GPathText::IsEqual(di, "./")) return GString();
    if (GPathText::IsEqual(di, "../")) return GString("..");
    if (!GPathText::StartsWith(di, "/")) return GPathText::MakeString(di);
    if (di.size() == 2 || (di.size() > 2 && di[2] == '/'))
        return JoinUnits("", di.subspan(1, 1), ":", di.subspan(2));
    if (di.size() > 1 && di[1] == '/') return GPathText::MakeString(di.subspan(1));
    return JoinUnits("/", di, "", {});
}

GString PortableToDI(const GString& portable) {
    const GPathInput input(portable);
    const GPathUnits path = input.GetUnits();
    if (path.empty()) return GString("./");
    if (GPathText::IsEqual(path, "..")) return GString("../");
    if (path.size() > 1 && path[1] == ':') return JoinUnits("/", path.first(1), "", path.subspan(2));
    if (GPathText::StartsWith(path, "//")) return GPathText::MakeString(path.subspan(1));
    if (path[0] == '/') return JoinUnits("/", path, "", {});
    return GPathText::MakeString(path);
}

}  // namespace

void GPathName::ConvertPortableToWin32(const GString& portable, GString& win32) const {
    win32 = PortableToWin32(portable);
}

void GPathName::ConvertWin32ToPortable(const GString& win32, GString& portable) const {
    portable = Win32ToPortable(win32);
}

void GPathName::ConvertPortableToMachO(const GString& portable, GString& machO) const {
    const GPathInput input(portable);
    const GPathUnits path = input.GetUnits();
    const VolumePath parts = SplitVolume(path);
    if (parts.mVolume.empty() || path[0] == '/') {
        machO = portable;
    } else {
        machO = JoinUnits(cVolumes, parts.mVolume, parts.mRest.empty() ? "" : "/", parts.mRest);
    }
}

void GPathName::ConvertMachOToPortable(const GString& machO, GString& portable) const {
    const GPathInput input(machO);
    const GPathUnits path = input.GetUnits();
    const VolumePath parts = SplitVolume(path);
    if (GPathText::StartsWith(path, cVolumes) && IsDrive(parts.mVolume)) {
        portable = JoinUnits("", parts.mVolume, ":/", parts.mRest);
    } else {
        portable = machO;
    }
}

void GPathName::ConvertPortableToCFM(const GString& portable, GString& cfm) const {
    const GPathInput input(portable);
    const GPathUnits path = input.GetUnits();
    const bool noVolume = GPathText::StartsWith(path, "/") && SplitVolume(path).mVolume.empty();
    if (path.empty() || noVolume) {
        cfm = portable;
    } else {
        cfm = PortableToCFM(path);
    }
}

void GPathName::ConvertCFMToPortable(const GString& cfm, GString& portable) const {
    const GPathInput input(cfm);
    const GPathUnits path = input.GetUnits();
    if (GPathText::StartsWith(path, "/")) {
        portable = cfm;
    } else {
        portable = CFMToPortable(path);
    }
}

void GPathName::ConvertPortableToUNIX(const GString& portable, GString& out) const {
    out = portable;
}

void GPathName::ConvertUNIXToPortable(const GString& path, GString& portable) const {
    portable = path;
}

void GPathName::SetWin32PathString(const GString& path) {
    GString portable;
    ConvertWin32ToPortable(path, portable);
    Store(std::move(portable));
}

void GPathName::SetNativePathString(const GString& path) {
    SetWin32PathString(path);
}

void GPathName::SetLegacyPlatformString(const GString& path) {
    SetWin32PathString(path);
}

void GPathName::SetUNCPathString(const GString& path) {
    Store(UNCToPortable(path));
}

void GPathName::SetDIPathString(const GString& path) {
    if (StartsWithURLScheme(GPathInput(path).GetUnits()))
        throw GSimpleException(GExceptionID::cURLNotSupported);
    Store(DIToPortable(path));
}

void GPathName::SetMachOPathString(const GString& path) {
    GString portable;
    ConvertMachOToPortable(path, portable);
    Store(std::move(portable));
}

void GPathName::SetCFMPathString(const GString& path) {
    GString portable;
    ConvertCFMToPortable(path, portable);
    Store(std::move(portable));
}

GString GPathName::GetUNCPathString() const {
    return PortableToWin32(mPath);
}

GString GPathName::GetDIPathString() const {
    return PortableToDI(mPath);
}

GString GPathName::GetURLPathString() const {
    const GPathUnits path = GPathText::UnitsOf(mPath);
    UnitCounter counter;
    WriteURL(counter, path);
    GUnitBuilder url(counter.GetCount());
    WriteURL(url, path);
    return url.Take();
}

GString GPathName::GetMachOPathString() const {
    GString machO;
    ConvertPortableToMachO(mPath, machO);
    return machO;
}

GString GPathName::GetCFMPathString() const {
    GString cfm;
    ConvertPortableToCFM(mPath, cfm);
    return cfm;
}

GString GPathName::GetMachOBranch() const {
    return GetBranch().GetMachOPathString();
}

void GPathName::ConvertNativeToPortable(const GString& native, GString& portable) {
    portable = Win32ToPortable(native);
}

void GPathName::ConvertPortableToNative(const GString& portable, GString& native) {
    native = PortableToWin32(portable);
}

void GPathName::ConvertUNCSpecToPortable(const GString& unc, GString& portable) {
    portable = UNCToPortable(unc);
}

void GPathName::ConvertPortableToUNCSpec(const GString& portable, GString& unc) {
    unc = PortableToWin32(portable);
}

void GPathName::ConvertDISpecToPortable(const GString& di, GString& portable) {
    portable = DIToPortable(di);
}

void GPathName::ConvertPortableToDISpec(const GString& portable, GString& di) {
    di = PortableToDI(portable);
}
