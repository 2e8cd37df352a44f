// Counts what the linker leads past this file: all blocks of the framework's allocator.
#include <gtest/gtest.h>

#include <functional>

#include "framework/core/GAllocator.h"
#include "framework/core/GPathName.h"
#include "tests/core/TestText.h"

namespace {

int sBlockCount = 0;

}  // namespace

extern "C" {
void* __real__ZN10GAllocator8AllocateEm(GAllocator*, std::size_t);
// Weak: a program in which nothing grows a block has none.
[[gnu::weak]] void* __real__ZN10GAllocator10ReallocateEPvmm(GAllocator*, void*, std::size_t, std::size_t);

void* __wrap__ZN10GAllocator8AllocateEm(GAllocator* allocator, std::size_t size) {
    ++sBlockCount;
    return __real__ZN10GAllocator8AllocateEm(allocator, size);
}

void* __wrap__ZN10GAllocator10ReallocateEPvmm(GAllocator* allocator, void* block, std::size_t oldSize,
                                              std::size_t size) {
    ++sBlockCount;
    return __real__ZN10GAllocator10ReallocateEPvmm(allocator, block, oldSize, size);
}
}

TEST(GPathNameAllocation, TakesOneBlockAResult) {
    using Path = GPathName;
    const struct {
        const char* what;
        std::function<void(Path&, const GString&)> use;
        int most;
    } rows[] = {
        {"is copied", [](Path& path, const GString&) { Path copy(path); }, 1},
        {"is built", [](Path&, const GString& text) { Path built(text); }, 1},
        {"is assigned a text", [](Path& path, const GString& text) { path.SetPortablePath(text); }, 1},
        {"from Win32", [](Path& path, const GString& text) { path.SetWin32PathString(text); }, 1},
        {"from UNC", [](Path& path, const GString& text) { path.SetUNCPathString(text); }, 1},
        {"from DI", [](Path& path, const GString& text) { path.SetDIPathString(text); }, 1},
        {"from Mach-O", [](Path& path, const GString& text) { path.SetMachOPathString(text); }, 1},
        {"from CFM", [](Path& path, const GString& text) { path.SetCFMPathString(text); }, 1},
        {"to Win32", [](Path& path, const GString&) { path.GetWin32PathString(); }, 1},
        {"to the system", [](Path& path, const GString&) { path.GetWin32APIPathString(); }, 1},
        {"to UNC", [](Path& path, const GString&) { path.GetUNCPathString(); }, 1},
        {"to DI", [](Path& path, const GString&) { path.GetDIPathString(); }, 1},
        {"to URL", [](Path& path, const GString&) { path.GetURLPathString(); }, 1},
        {"to Mach-O", [](Path& path, const GString&) { path.GetMachOPathString(); }, 1},
        {"to CFM", [](Path& path, const GString&) { path.GetCFMPathString(); }, 1},
        {"is appended to", [](Path& path, const GString& text) { path.Append(text); }, 1},
        {"is combined", [](Path& path, const GString&) { path / Path::cEmptyPathName; }, 1},
        {"gets a leaf", [](Path& path, const GString& text) { path.ReplaceLeaf(text); }, 1},
        {"gets a name", [](Path& path, const GString& text) { path.ReplaceLeafWithoutExtension(text); }, 1},
        {"gets an extension", [](Path& path, const GString& text) { path.ReplaceExtension(text); }, 1},
        {"is normalised", [](Path& path, const GString&) { path.Normalize(); }, 1},
        {"branch", [](Path& path, const GString&) { path.GetBranch(); }, 1},
        {"leaf", [](Path& path, const GString&) { path.GetLeaf(); }, 1},
        {"extension", [](Path& path, const GString&) { path.GetExtension(); }, 1},
        {"root path", [](Path& path, const GString&) { path.GetRootPath(); }, 1},
        {"relative path", [](Path& path, const GString&) { path.GetRelativePath(); }, 1},
        {"partial path", [](Path& path, const GString&) { path.GetPartialPath(2); }, 1},
        {"is compared", [](Path& path, const GString&) { EXPECT_TRUE(path == path); }, 0},
        {"is hashed", [](Path& path, const GString&) { path.GetHash(); }, 0},
        {"starts with", [](Path& path, const GString&) { path.StartsWith(path); }, 0},
        {"is counted", [](Path& path, const GString&) { path.GetNumberOfComponents(); }, 0},
    };
    const std::u16string longPath = u"//srv/" + std::u16string(300, u'x') + u"/y.z";
    for (const std::u16string_view path : std::initializer_list<std::u16string_view>{
             u"C:/dir/File.txt", u"//srv/share/x", u"../a b/c", u"/Volumes/Data/x", u"\u00C4/\u00F6.x",
             u"name", u"", longPath}) {
        for (const GString& text : {GString("C:\\dir\\b.c"), Text(u"\u00E9/x"), Text(path)}) {
            for (const auto& row : rows) {
                SCOPED_TRACE(Readable(path) + " " + row.what + ", " + Readable(Plain(GString(text))));
                GPathName used(GString("xxx"));
                used.SetPortablePath(Text(path));
                const GString fresh(text);
                sBlockCount = 0;
                row.use(used, fresh);
                EXPECT_LE(sBlockCount, row.most);
            }
        }
    }
}
