// Counts what the linker leads past this file: all blocks of the framework's allocator.
#include <gtest/gtest.h>

#include <tuple>

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/memory/GAllocator.h"
#include "framework/core/paths/GPathName.h"
#include "tests/core/TextForTests.h"

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
    void (Path::*const setters[])(const GString&) = {
        &Path::SetPortablePath, &Path::SetWin32PathString, &Path::SetUNCPathString,
        &Path::SetDIPathString, &Path::SetMachOPathString, &Path::SetCFMPathString,
        &Path::Append,          &Path::ReplaceLeaf,        &Path::ReplaceLeafWithoutExtension,
        &Path::ReplaceExtension};
    GString (Path::*const getters[])() const = {&Path::GetWin32PathString, &Path::GetWin32APIPathString,
                                                &Path::GetUNCPathString,   &Path::GetDIPathString,
                                                &Path::GetURLPathString,   &Path::GetMachOPathString,
                                                &Path::GetCFMPathString,   &Path::GetLeaf,
                                                &Path::GetExtension};
    GPathName (Path::*const parts[])() const = {&Path::GetBranch, &Path::GetRootPath, &Path::GetRelativePath};
    const std::u16string longPath = u"//srv/" + std::u16string(300, u'x') + u"/y.z";
    for (const std::u16string_view path : std::initializer_list<std::u16string_view>{
             u"C:/dir/File.txt", u"//srv/share/x", u"../a b/c", u"/Volumes/Data/x", u"\u00C4/\u00F6.x",
             u"name", u"", longPath}) {
        for (const GString& text : {GString("C:\\dir\\b.c"), Text(u"\u00E9/x"), Text(path)}) {
            SCOPED_TRACE(Readable(path) + ", " + Readable(Plain(GString(text))));
            const auto expectAtMost = [&](int most, const auto& use) {
                GPathName used(GString("xxx"));
                used.SetPortablePath(Text(path));
                const GString fresh(text);
                sBlockCount = 0;
                use(used, fresh);
                EXPECT_LE(sBlockCount, most);
            };
            for (const auto set : setters)
                expectAtMost(1, [&](Path& used, const GString& fresh) { (used.*set)(fresh); });
            for (const auto get : getters)
                expectAtMost(1, [&](Path& used, const GString&) { (used.*get)(); });
            for (const auto get : parts) expectAtMost(1, [&](Path& used, const GString&) { (used.*get)(); });
            expectAtMost(1, [](Path& used, const GString&) { Path copy(used); });
            expectAtMost(1, [](Path&, const GString& fresh) { Path built(fresh); });
            const GString inUTF8(text.GetBuffer(GUTF8Encoding::GetInstance()), GUTF8Encoding::GetInstance());
            expectAtMost(1, [&](Path&, const GString&) { Path built(inUTF8); });
            expectAtMost(1, [&](Path& used, const GString&) { used.SetPortablePath(inUTF8); });
            expectAtMost(1, [](Path& used, const GString&) { used / Path::cEmptyPathName; });
            expectAtMost(1, [](Path& used, const GString&) { used.Normalize(); });
            expectAtMost(1, [](Path& used, const GString&) { used.GetPartialPath(2); });
            expectAtMost(0, [](Path& used, const GString&) { EXPECT_TRUE(used == used); });
            expectAtMost(0, [](Path& used, const GString&) { used.GetHash(), used.GetNumberOfComponents(); });
            expectAtMost(0, [](Path& used, const GString&) { used.StartsWith(used); });
        }
    }
}
