// Path names in every foreign form, and what is asked of a path.
#include "framework/core/paths/GPathName.h"
#include "fuzz/FuzzInput.h"

namespace {

void SetBy(std::uint8_t form, const GString& text, GPathName& path) {
    switch (form % 7) {
        case 0:
            path.SetNativePathString(text);
            break;
        case 1:
            path.SetUNCPathString(text);
            break;
        case 2:
            path.SetDIPathString(text);
            break;
        case 3:
            path.SetMachOPathString(text);
            break;
        case 4:
            path.SetCFMPathString(text);
            break;
        case 5:
            path.SetPortablePath(text);
            break;
        default:
            GPathName::CheckCrossPlatformString(text);
            break;
    }
}

void AskAll(const GPathName& path, const GPathName& base) {
    path.GetUNCPathString();
    path.GetDIPathString();
    path.GetURLPathString();
    path.GetMachOPathString();
    path.GetCFMPathString();
    path.GetMachOBranch();
    const GPathName way = path.GetRelativePathFrom(base);
    Require(way.IsRelative() || way == GPathName(path.GetNormalizedPortablePathFrom(path.GetPortablePath())),
            "a way is relative or the path itself");
    Require(path != base || path.GetHash() == base.GetHash(), "equal paths have one hash");
    path.GetExtension();
    path.GetPartialPath(path.GetNumberOfComponents() / 2);
    Require(path.StartsWith(path), "a path starts with itself");
    Require(path.GetBranch().GetPortablePath().GetLength() + path.GetLeaf().GetLength() ==
                path.GetPortablePath().GetLength(),
            "branch and leaf are the whole path");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const std::uint8_t form = input.TakeByte();
    const GPathName base(input.TakeText());
    Try([&] {
        GPathName path;
        SetBy(form, input.TakeRestAsText(), path);
        AskAll(path, base);
        const GPathName root = path.GetRootPath();
        path.Normalize();
        GPathName again = path;
        again.Normalize();
        // What was behind a component that went may read as a root now.
        Require(again.GetPortablePath() == path.GetPortablePath() || path.GetRootPath() != root,
                "a normalised path stays as it is");
        path.ReplaceExtension(GString("ps"));
    });
    return 0;
}
