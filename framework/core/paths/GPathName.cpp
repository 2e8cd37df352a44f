#include "framework/core/paths/GPathName.h"

#include <typeinfo>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/paths/GPathText.h"
#include "framework/core/paths/GValidFileName.h"

namespace {

/// The components of a path that is being normalised, behind a root that stays as it is.
class NormalizedComponents {
public:
    NormalizedComponents(GUnitBuilder& out, GPathUnits root) : mOut(out), mStart(root.size()) {
        mOut.Add(root);
    }

    void Take(GPathUnits component) {
        if (GPathText::IsEqual(component, ".")) return;
        if (GPathText::IsEqual(component, "..") && LastCanBeUndone()) {
            RemoveLast();
        } else {
            if (mCount++ > 0) mOut.Add('/');
            mOut.Add(component);
        }
    }

private:
    GPathUnits GetAll() const { return mOut.GetUnits().subspan(mStart); }

    std::size_t GetLastPosition() const { return mCount > 1 ? GPathText::FindLast(GetAll(), '/') + 1 : 0; }

    bool LastCanBeUndone() const {
        if (mCount == 0) return false;
        const GPathUnits last = GetAll().subspan(GetLastPosition());
        return !last.empty() && !GPathText::IsEqual(last, "..");
    }

    void RemoveLast() {
        const std::size_t position = GetLastPosition();
        mOut.CutTo(mStart + (position > 0 ? position - 1 : 0));
        --mCount;
    }

    GUnitBuilder& mOut;
    std::size_t mStart;
    std::size_t mCount = 0;
};

/// How far two paths go the same way: the positions behind their last common components.
struct CommonWay {
    std::size_t mInPath;
    std::size_t mInBase;
};

CommonWay FindCommonWay(GPathUnits path, GPathUnits base, std::size_t start) {
    CommonWay way = {start, start};
    for (CommonWay next = way;; way = next) {
        const GPathUnits ours = GPathText::NextComponent(path, next.mInPath);
        const GPathUnits theirs = GPathText::NextComponent(base, next.mInBase);
        if (ours.empty() || theirs.empty() || !GPathText::IsEqualIgnoreCase(ours, theirs)) return way;
    }
}

constexpr std::size_t cNoWay = static_cast<std::size_t>(-1);

/// How many steps lead from the end of `base` up to `position`; cNoWay when it steps up itself.
std::size_t CountStepsUp(GPathUnits base, std::size_t position) {
    std::size_t steps = 0;
    for (;; ++steps) {
        const GPathUnits component = GPathText::NextComponent(base, position);
        if (component.empty()) return steps;
        if (GPathText::IsEqual(component, "..")) return cNoWay;
    }
}

GString MakeWay(std::size_t stepsUp, GPathUnits rest) {
    while (!rest.empty() && rest.front() == '/') rest = rest.subspan(1);
    GUnitBuilder way(3 * stepsUp + rest.size());
    for (std::size_t i = 0; i < stepsUp; ++i) way.Add("../");
    way.Add(rest);
    if (rest.empty() && stepsUp > 0) way.CutTo(3 * stepsUp - 1);
    return way.Take();
}

}  // namespace

const GPathName GPathName::cEmptyPathName;

GPathName::GPathName(const GString& portable) : mPath(GPathText::MakeUnicode(portable)) {}

GPathName::GPathName(GString&& portable) : mPath(std::move(portable)) {
    if (!mPath.IsEmpty()) mPath.EnsureUnicode();
}

GPathName::~GPathName() = default;

GPathName GPathName::FromNative(const GString& native) {
    return GPathName(Win32ToPortable(native));
}

void GPathName::SetCrossPlatformString(const GString& portable) {
    if (&portable != &mPath) mPath = GPathText::MakeUnicode(portable);
}

const GString& GPathName::GetCrossPlatformString() const {
    return mPath;
}

const GString& GPathName::GetPortablePath() const {
    return mPath;
}

void GPathName::SetPortablePath(const GString& portable) {
    SetCrossPlatformString(portable);
}

// Stores a text that was made for this path. A derived class hears of it, while the old path is still
// there, and may store something else or nothing.
void GPathName::Store(GString&& portable) {
    if (typeid(*this) == typeid(GPathName)) {
        mPath = std::move(portable);  // nobody overrides the setter: no copy is needed
    } else {
        SetCrossPlatformString(portable);
    }
}

/// Up to `count` units from `start`, both within the path; a negative count gives the rest.
GString GPathName::Part(long start, long count) const {
    const GPathUnits rest = GPathText::UnitsOf(mPath).subspan(static_cast<std::size_t>(start));
    return GPathText::MakeString(count < 0 ? rest : rest.first(static_cast<std::size_t>(count)));
}

GPathName GPathName::GetRootName() const {
    return GPathName(GetCrossPlatformRootNameString());
}

GPathName GPathName::GetRootDirectory() const {
    return GPathName(GetCrossPlatformRootDirectoryString());
}

GPathName GPathName::GetRootPath() const {
    return GPathName(Part(0, GetStartPositionRelativePath(mPath)));
}

GPathName GPathName::GetRelativePath() const {
    return GPathName(Part(GetStartPositionRelativePath(mPath), -1));
}

bool GPathName::IsRootNameAlone() const {
    return HasRootName() && GetRootNameLength(mPath) == mPath.GetLength();
}

GPathName GPathName::GetRelativePathFrom(const GPathName& base) const {
    GString target = GetNormalizedPortablePathFrom(mPath);
    const GString origin = GetNormalizedPortablePathFrom(base.mPath);
    const GPathUnits path = GPathText::UnitsOf(target);
    const GPathUnits from = GPathText::UnitsOf(origin);
    const auto root = static_cast<std::size_t>(GetStartPositionRelativePath(target));
    const auto fromRoot = static_cast<std::size_t>(GetStartPositionRelativePath(origin));
    if (!GPathText::IsEqualIgnoreCase(path.first(root), from.first(fromRoot)))
        return GPathName(std::move(target));

    const CommonWay common = FindCommonWay(path, from, root);
    const std::size_t stepsUp = CountStepsUp(from, common.mInBase);
    if (stepsUp == cNoWay) return GPathName(std::move(target));
    GPathName way(MakeWay(stepsUp, path.subspan(common.mInPath)));
    const bool leadsThere = way.IsEmpty() || (way.IsRelative() && !base.IsRootNameAlone());
    return leadsThere ? way : GPathName(std::move(target));
}

GPathName GPathName::GetBranch() const {
    return GPathName(Part(0, GetLeafPosition(mPath)));
}

GString GPathName::GetLeaf() const {
    return Part(GetLeafPosition(mPath), -1);
}

/// The position of the last dot of the leaf; -1 without an extension.
long GPathName::GetExtensionPosition() const {
    const long leaf = GetLeafPosition(mPath);
    const GPathUnits units = GPathText::UnitsOf(mPath).subspan(static_cast<std::size_t>(leaf));
    if (GPathText::IsEqual(units, ".") || GPathText::IsEqual(units, "..")) return -1;
    const std::size_t dot = GPathText::FindLast(units, '.');
    return dot == GPathText::cNotFound ? -1 : leaf + static_cast<long>(dot);
}

GString GPathName::GetLeafWithoutExtension() const {
    const long leaf = GetLeafPosition(mPath);
    const long dot = GetExtensionPosition();
    return Part(leaf, dot < 0 ? -1 : dot - leaf);
}

GString GPathName::GetExtension() const {
    const long dot = GetExtensionPosition();
    return dot < 0 ? GString() : Part(dot + 1, -1);
}

GPathName GPathName::GetPartialPath(long count) const {
    const GPathUnits path = GPathText::UnitsOf(mPath);
    auto end = static_cast<std::size_t>(GetStartPositionRelativePath(mPath));
    for (std::size_t next = end; count > 0; --count, end = next)
        if (GPathText::NextComponent(path, next).empty()) break;
    return GPathName(Part(0, static_cast<long>(end)));
}

long GPathName::GetNumberOfComponents() const {
    const GPathUnits path = GPathText::UnitsOf(mPath);
    auto position = static_cast<std::size_t>(GetStartPositionRelativePath(mPath));
    long count = 0;
    while (!GPathText::NextComponent(path, position).empty()) ++count;
    return count;
}

bool GPathName::IsEmpty() const {
    return mPath.IsEmpty();
}

bool GPathName::HasBranch() const {
    return GetLeafPosition(mPath) > 0;
}

bool GPathName::HasLeaf() const {
    return static_cast<std::size_t>(GetLeafPosition(mPath)) < GPathText::UnitsOf(mPath).size();
}

bool GPathName::HasExtension() const {
    return GetExtensionPosition() >= 0;
}

bool GPathName::StartsWith(const GPathName& start) const {
    const GPathUnits path = GPathText::UnitsOf(mPath);
    const GPathUnits prefix = GPathText::UnitsOf(start.mPath);
    auto root = static_cast<std::size_t>(GetStartPositionRelativePath(mPath));
    auto prefixRoot = static_cast<std::size_t>(GetStartPositionRelativePath(start.mPath));
    // A root name alone says nothing about the root directory.
    if (prefixRoot == prefix.size() && !start.HasRootDirectory())
        root = static_cast<std::size_t>(GetRootNameLength(mPath));
    if (prefix.empty()) return true;
    if (!GPathText::IsEqualIgnoreCase(path.first(root), prefix.first(prefixRoot))) return false;
    const CommonWay way = FindCommonWay(path, prefix, root);
    std::size_t rest = way.mInBase;
    return GPathText::NextComponent(prefix, rest).empty();
}

GString GPathName::Join(const GString& base, const GString& component) {
    if (component.IsEmpty()) return base;
    if (base.IsEmpty()) return GPathText::MakeUnicode(component);
    const GPathUnits front = GPathText::UnitsOf(base);
    const GPathInput input(component);
    const GPathUnits back = input.GetUnits();
    GUnitBuilder joined(front.size() + 1 + back.size());
    joined.Add(front);
    if (!front.empty() && front.back() != '/') joined.Add('/');
    joined.Add(back);
    return joined.Take();
}

void GPathName::Append(const GString& component) {
    if (!component.IsEmpty()) Store(Join(mPath, component));
}

GPathName& GPathName::operator/=(const GPathName& relative) {
    if (!relative.IsRelative()) throw GSimpleException(GExceptionID::cPathNotRelative);
    Append(relative.mPath);
    return *this;
}

GPathName operator/(const GPathName& base, const GPathName& relative) {
    if (!relative.IsRelative()) throw GSimpleException(GExceptionID::cPathNotRelative);
    return GPathName(GPathName::Join(base.GetPortablePath(), relative.GetPortablePath()));
}

void GPathName::ReplaceLeaf(const GString& leaf) {
    const GPathUnits branch =
        GPathText::UnitsOf(mPath).first(static_cast<std::size_t>(GetLeafPosition(mPath)));
    const GPathInput input(leaf);
    const GPathUnits name = input.GetUnits();
    GUnitBuilder path(branch.size() + 1 + name.size());
    path.Add(branch);
    const bool hostAlone = GPathText::StartsWith(branch, "//") && !HasRootDirectory();
    if (hostAlone && !name.empty()) path.Add('/');
    path.Add(name);
    Store(path.Take());
}

void GPathName::ReplaceLeafWithoutExtension(const GString& name) {
    const long dot = GetExtensionPosition();
    if (dot < 0) return ReplaceLeaf(name);
    const GPathUnits path = GPathText::UnitsOf(mPath);
    const GPathInput input(name);
    const GPathUnits stem = input.GetUnits();
    GUnitBuilder result(path.size() + stem.size());
    result.Add(path.first(static_cast<std::size_t>(GetLeafPosition(mPath))));
    result.Add(stem);
    result.Add(path.subspan(static_cast<std::size_t>(dot)));
    Store(result.Take());
}

void GPathName::ReplaceExtension(const GString& extension) {
    if (!HasLeaf()) return;
    const long dot = GetExtensionPosition();
    GPathUnits path = GPathText::UnitsOf(mPath);
    if (dot >= 0) path = path.first(static_cast<std::size_t>(dot));
    const GPathInput input(extension);
    const GPathUnits added = input.GetUnits();
    GUnitBuilder result(path.size() + 1 + added.size());
    result.Add(path);
    if (!added.empty() && added.front() != '.') result.Add('.');
    result.Add(added);
    Store(result.Take());
}

GString GPathName::GetNormalizedPortablePathFrom(const GString& portable) const {
    const GPathUnits path = GPathText::UnitsOf(portable);
    auto position = static_cast<std::size_t>(GetStartPositionRelativePath(portable));
    GUnitBuilder normalized(path.size());
    NormalizedComponents components(normalized, path.first(position));
    for (;; ++position) {
        const std::size_t end = std::min(GPathText::Find(path, '/', position), path.size());
        components.Take(path.subspan(position, end - position));
        if (end == path.size()) return normalized.Take();
        position = end;
    }
}

void GPathName::Normalize() {
    if (!mPath.IsEmpty()) Store(GetNormalizedPortablePathFrom(mPath));
}

void GPathName::Clear() {
    Store(GString());
}

bool operator==(const GPathName& a, const GPathName& b) {
    return a.Equals(b);
}

bool operator!=(const GPathName& a, const GPathName& b) {
    return !a.Equals(b);
}

void GPathName::CreateValidFileName(GString& name, long maxLength, unsigned short replacement) {
    name = GValidFileName(GPathInput(name).GetUnits(), maxLength, replacement).Get();
}

void GPathName::CheckCrossPlatformString(const GString& portable) {
    const GPathInput input(portable);
    for (const unsigned short unit : input.GetUnits())
        if (unit == 0 || unit == '\\') throw GSimpleException(GExceptionID::cInvalidPath);
}
