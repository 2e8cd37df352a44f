#include "framework/core/GPathName.h"

#include <gtest/gtest.h>

#include <string>

#include "framework/core/GException.h"
#include "tests/core/TestText.h"

namespace {

GPathName Path(std::u16string_view portable) {
    return GPathName(Text(portable));
}

std::u16string Plain(const GPathName& path) {
    return Plain(path.GetPortablePath());
}

template <class Call>
long ThrownBy(Call call) {
    try {
        call();
    } catch (const GSimpleException& exception) {
        return exception.GetExceptionID();
    }
    return 0;
}

}  // namespace

TEST(GPathName, TakesARootApart) {
    const struct {
        std::u16string_view path, rootName, rootDirectory, relative;
    } rows[] = {
        {u"", u"", u"", u""},
        {u"dir/file", u"", u"", u"dir/file"},
        {u":", u"", u"", u":"},
        {u"/", u"", u"/", u""},
        {u"/dir", u"", u"/", u"dir"},
        {u"C:", u"C:", u"", u""},
        {u"C:/", u"C:", u"/", u""},
        {u"C:/dir/file", u"C:", u"/", u"dir/file"},
        {u"C:file", u"C:", u"", u"file"},
        {u"//server", u"//server", u"", u""},
        {u"//server/", u"//server", u"/", u""},
        {u"//server/share/x", u"//server", u"/", u"share/x"},
        {u"Data:", u"Data:", u"", u""},
        {u"Data:file", u"", u"", u"Data:file"},
        {u"a/b:", u"a/b:", u"", u""},
        {u"//", u"", u"/", u"/"},
        {u"///x", u"//", u"/", u"x"},
        {u"/:", u"/:", u"/", u""},
        {u"/ab:", u"/ab:", u"/", u""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.path));
        const GPathName path = Path(row.path);
        EXPECT_EQ(Plain(path.GetRootName()), row.rootName);
        EXPECT_EQ(Plain(path.GetCrossPlatformRootNameString()), row.rootName);
        EXPECT_EQ(Plain(path.GetRootDirectory()), row.rootDirectory);
        EXPECT_EQ(path.HasRootDirectory(), !row.rootDirectory.empty());
        EXPECT_EQ(Plain(path.GetRelativePath()), row.relative);
        EXPECT_EQ(Plain(path.GetRootPath()) + Plain(path.GetRelativePath()), row.path);
        // Two slashes promise the name of a host, even where it is missing.
        const bool hasRootName = !row.rootName.empty() || row.path == u"//";
        EXPECT_EQ(path.HasRootName(), hasRootName);
        EXPECT_EQ(path.IsRelative(), !hasRootName);
        EXPECT_EQ(path.HasRootPath(), hasRootName || !row.rootDirectory.empty());
    }
}

TEST(GPathName, TakesALeafApart) {
    const struct {
        std::u16string_view path, branch, leaf, stem, extension;
        bool hasExtension;
    } rows[] = {
        {u"", u"", u"", u"", u"", false},
        {u"file", u"", u"file", u"file", u"", false},
        {u"C:/dir/file.txt", u"C:/dir/", u"file.txt", u"file", u"txt", true},
        {u"/x", u"/", u"x", u"x", u"", false},
        {u"a/b", u"a/", u"b", u"b", u"", false},
        {u"dir/", u"dir/", u"", u"", u"", false},
        {u"C:", u"C:", u"", u"", u"", false},
        {u"C:x.y", u"C:", u"x.y", u"x", u"y", true},
        {u"//srv", u"//srv", u"", u"", u"", false},
        {u"//srv/share", u"//srv/", u"share", u"share", u"", false},
        {u"Data:file", u"Data:", u"file", u"file", u"", false},
        {u"d.ir/a:b", u"d.ir/", u"a:b", u"a:b", u"", false},
        {u"a.tar.gz", u"", u"a.tar.gz", u"a.tar", u"gz", true},
        {u"d/.foo", u"d/", u".foo", u"", u"foo", true},
        {u"a.", u"", u"a.", u"a", u"", true},
        {u".", u"", u".", u".", u"", false},
        {u"a/..", u"a/", u"..", u"..", u"", false},
        {u"...", u"", u"...", u"..", u"", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.path));
        const GPathName path = Path(row.path);
        EXPECT_EQ(Plain(path.GetBranch()), row.branch);
        EXPECT_EQ(path.HasBranch(), !row.branch.empty());
        EXPECT_EQ(Plain(path.GetLeaf()), row.leaf);
        EXPECT_EQ(path.HasLeaf(), !row.leaf.empty());
        EXPECT_EQ(Plain(path.GetLeafWithoutExtension()), row.stem);
        EXPECT_EQ(Plain(path.GetExtension()), row.extension);
        EXPECT_EQ(path.HasExtension(), row.hasExtension);
    }
}

TEST(GPathName, CountsComponentsAndCutsBehindThem) {
    const struct {
        std::u16string_view path;
        long count;
        std::u16string_view none, one, two, many;
    } rows[] = {
        {u"", 0, u"", u"", u"", u""},
        {u"C:/a/b/c", 3, u"C:/", u"C:/a", u"C:/a/b", u"C:/a/b/c"},
        {u"a//b/", 2, u"", u"a", u"a//b", u"a//b"},
        {u"//srv/share/x", 2, u"//srv/", u"//srv/share", u"//srv/share/x", u"//srv/share/x"},
        {u"C:", 0, u"C:", u"C:", u"C:", u"C:"},
        {u"/x", 1, u"/", u"/x", u"/x", u"/x"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.path));
        const GPathName path = Path(row.path);
        EXPECT_EQ(path.GetNumberOfComponents(), row.count);
        EXPECT_EQ(Plain(path.GetPartialPath(-1)), row.none);
        EXPECT_EQ(Plain(path.GetPartialPath(0)), row.none);
        EXPECT_EQ(Plain(path.GetPartialPath(1)), row.one);
        EXPECT_EQ(Plain(path.GetPartialPath(2)), row.two);
        EXPECT_EQ(Plain(path.GetPartialPath(99)), row.many);
    }
}

TEST(GPathName, AppendsBehindOneSlash) {
    const struct {
        std::u16string_view path, component, result;
    } rows[] = {
        {u"C:/a", u"b", u"C:/a/b"},
        {u"C:/a/", u"b", u"C:/a/b"},
        {u"", u"b", u"b"},
        {u"a", u"", u"a"},
        {u"", u"", u""},
        {u"a", u"/b", u"a//b"},
        {u"C:", u"x/y", u"C:/x/y"},
        {u"a", u"\U0001F600", u"a/\U0001F600"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.path) + " + " + Readable(row.component));
        GPathName path = Path(row.path);
        path.Append(Text(row.component));
        EXPECT_EQ(Plain(path), row.result);
        EXPECT_EQ(Plain(Path(row.path) / Path(row.component)), row.result);
        path = Path(row.path);
        EXPECT_EQ(Plain(path /= Path(row.component)), row.result);
    }
    GPathName path = Path(u"a/b");
    path.Append(path.GetPortablePath());
    EXPECT_EQ(Plain(path), u"a/b/a/b");
}

TEST(GPathName, CombinesWithRelativePathsOnly) {
    GPathName path = Path(u"C:/a");
    for (const std::u16string_view other : {u"C:/b", u"C:", u"//srv/x", u"Data:"}) {
        SCOPED_TRACE(Readable(other));
        EXPECT_EQ(ThrownBy([&] { path /= Path(other); }), 40066);
        EXPECT_EQ(ThrownBy([&] { path / Path(other); }), 40066);
        EXPECT_EQ(Plain(path), u"C:/a");
    }
}

TEST(GPathName, ReplacesTheLeafOrAPartOfIt) {
    const struct {
        std::u16string_view path, name, withLeaf, withName, extension, withExtension;
    } rows[] = {
        {u"d/a.txt", u"b", u"d/b", u"d/b.txt", u"ps", u"d/a.ps"},
        {u"d/a.txt", u"b.c", u"d/b.c", u"d/b.c.txt", u".ps", u"d/a.ps"},
        {u"d/a.txt", u"", u"d/", u"d/.txt", u"", u"d/a"},
        {u"d.x/a", u"b", u"d.x/b", u"d.x/b", u"ps", u"d.x/a.ps"},
        {u"a.tar.gz", u"b", u"b", u"b.gz", u"ps", u"a.tar.ps"},
        {u"d/", u"b", u"d/b", u"d/b", u"ps", u"d/"},
        {u"d/..", u"b", u"d/b", u"d/b", u"ps", u"d/...ps"},
        {u"C:", u"b", u"C:b", u"C:b", u"ps", u"C:"},
        {u"//srv", u"b", u"//srv/b", u"//srv/b", u"ps", u"//srv"},
        {u"//srv/", u"b", u"//srv/b", u"//srv/b", u"ps", u"//srv/"},
        {u"", u"b", u"b", u"b", u"ps", u""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.path));
        GPathName path = Path(row.path);
        path.ReplaceLeaf(Text(row.name));
        EXPECT_EQ(Plain(path), row.withLeaf);
        path = Path(row.path);
        path.ReplaceLeafWithoutExtension(Text(row.name));
        EXPECT_EQ(Plain(path), row.withName);
        path = Path(row.path);
        path.ReplaceExtension(Text(row.extension));
        EXPECT_EQ(Plain(path), row.withExtension);
    }
}

TEST(GPathName, NormalizesAsText) {
    const struct {
        std::u16string_view path, result;
    } rows[] = {
        {u"", u""},
        {u"C:/a/./b/../c", u"C:/a/c"},
        {u"../x", u"../x"},
        {u"a//../b", u"a//../b"},
        {u"a/..", u""},
        {u"a/../..", u".."},
        {u"a/b/../../../c", u"../c"},
        {u"C:/../a", u"C:/../a"},
        {u"C:/.", u"C:/"},
        {u"./", u""},
        {u"a/./", u"a/"},
        {u"a/b/..", u"a"},
        {u"a/b/../", u"a/"},
        {u"//srv/share/../x", u"//srv/x"},
        {u"a/.../..", u"a"},
        {u"..a/..", u""},
        {u"C:a/../b", u"C:b"},
        {u"a/..//b", u"/b"},
        {u"/.//b", u"//b"},
        {u"./C:./b", u"C:./b"},
        {u"\u00E9/\U0001F600/..", u"\u00E9"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.path));
        GPathName path = Path(row.path);
        EXPECT_EQ(Plain(path.GetNormalizedPortablePathFrom(Text(row.path))), row.result);
        path.Normalize();
        EXPECT_EQ(Plain(path), row.result);
    }
    std::u16string deep = u"C:";
    for (int i = 0; i < 20000; ++i) deep += u"/d";
    for (int i = 0; i < 19999; ++i) deep += u"/..";
    GPathName path = Path(deep);
    path.Normalize();
    EXPECT_EQ(Plain(path), u"C:/d");
}

TEST(GPathName, FindsTheWayFromABase) {
    const struct {
        std::u16string_view path, base, way;
    } rows[] = {
        {u"C:/a/b", u"C:/a/c", u"../b"},
        {u"C:/a/b", u"C:/a/", u"b"},
        {u"C:/A/b", u"c:/a/C/d", u"../../b"},
        {u"C:/a", u"C:/a", u""},
        {u"C:/a", u"C:/a/b/c", u"../.."},
        {u"C:/a/b", u"C:/ab", u"../a/b"},
        {u"C:/a", u"D:/a", u"C:/a"},
        {u"C:/a", u"C:a", u"C:/a"},
        {u"C:/a", u"a", u"C:/a"},
        {u"//srv/s/x", u"//SRV/s/y/z", u"../../x"},
        {u"//srv/s/x", u"//other/s", u"//srv/s/x"},
        {u"a/b", u"a/c", u"../b"},
        {u"x", u"../y", u"x"},
        {u"../x", u"y", u"../../x"},
        {u"C:/a/./b/../c", u"C:/a/d/..", u"c"},
        {u"C:/a/D:/x", u"C:/a", u"C:/a/D:/x"},
        {u"C:/a/D:/x", u"C:/b", u"../a/D:/x"},
        {u"C:/a/Data:", u"C:/a", u"C:/a/Data:"},
        {u"", u"", u""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.path) + " from " + Readable(row.base));
        EXPECT_EQ(Plain(Path(row.path).GetRelativePathFrom(Path(row.base))), row.way);
    }
}

TEST(GPathName, StartsWithWholeComponents) {
    const struct {
        std::u16string_view path, start;
        bool result;
    } rows[] = {
        {u"C:/dir/x", u"c:/DIR", true},
        {u"C:/dir/x", u"C:/dir/", true},
        {u"C:/dir/x", u"C:/di", false},
        {u"C:/dir", u"C:/dir/x", false},
        {u"C:/dir", u"C:/", true},
        {u"C:/dir", u"C:", true},
        {u"C:dir", u"C:", true},
        {u"C:dir", u"C:/", false},
        {u"/a/b", u"a", false},
        {u"a/b", u"/a", false},
        {u"a/b", u"a", true},
        {u"/a", u"/", true},
        {u"a", u"/", false},
        {u"//srv/share", u"//srv", true},
        {u"//server/x", u"//srv", false},
        {u"//srv/share", u"/", false},
        {u"", u"", true},
        {u"\u00C4/x", u"\u00E4", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.path) + " with " + Readable(row.start));
        EXPECT_EQ(Path(row.path).StartsWith(Path(row.start)), row.result);
    }
}

TEST(GPathName, ComparesWithoutRegardToCase) {
    const struct {
        std::u16string_view a, b;
        bool equal;
    } rows[] = {
        {u"c:/Dir/A.txt", u"C:/dir/a.TXT", true},
        {u"\u00C4", u"\u00E4", true},
        {u"a", u"b", false},
        {u"a", u"a/", false},
        {u"", u"", true},
        {u"a", u"", false},
        {u"C:/a", u"C:\\a", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.a) + " and " + Readable(row.b));
        EXPECT_EQ(Path(row.a) == Path(row.b), row.equal);
        EXPECT_EQ(Path(row.a) != Path(row.b), !row.equal);
        EXPECT_EQ(Path(row.a).GetHash() == Path(row.b).GetHash(), row.equal);
    }
}

TEST(GPathName, HashesAsItsTextInSmallLetters) {
    std::u16string upper;
    std::u16string lower;
    for (int i = 0; i < 520; ++i) {
        SCOPED_TRACE(i);
        const GPathName path = Path(upper);
        ASSERT_EQ(path.GetHash(), Text(lower).GetHash());
        ASSERT_EQ(Plain(path), upper);
        upper += static_cast<char16_t>(u'A' + i % 26);
        lower += static_cast<char16_t>(u'a' + i % 26);
    }
}

/// A path that takes no "x", and shouts when it is written for the system.
class ParticularPath : public GPathName {
public:
    void SetCrossPlatformString(const GString& portable) override {
        if (portable.FindFirst('x') >= 0) throw GSimpleException(GExceptionID::cInvalidPath);
        GPathName::SetCrossPlatformString(portable);
    }
    void ConvertPortableToWin32(const GString& portable, GString& win32) const override {
        GPathName::ConvertPortableToWin32(portable, win32);
        win32.ToUpper();
    }
    void ConvertWin32ToPortable(const GString& win32, GString& portable) const override {
        GPathName::ConvertWin32ToPortable(win32, portable);
        portable.ToLower();
    }
};

TEST(GPathName, LeavesRulesToADerivedClass) {
    ParticularPath path;
    path.SetWin32PathString(Text(u"C:\\ABC"));
    EXPECT_EQ(Plain(path), u"c:/abc");
    EXPECT_EQ(ThrownBy([&] { path.Append(Text(u"x")); }), 40068);
    EXPECT_EQ(Plain(path), u"c:/abc");
    EXPECT_EQ(Plain(path.GetWin32APIPathString()), u"C:\\ABC");
    path.Append(Text(std::u16string(239, u'y')));
    EXPECT_EQ(Plain(path.GetWin32APIPathString()), u"C:\\ABC\\" + std::u16string(239, u'Y'));
    path.Append(Text(u"z"));
    EXPECT_EQ(Plain(path.GetWin32APIPathString()), u"\\\\?\\C:\\ABC\\" + std::u16string(239, u'Y') + u"\\Z");
}

TEST(GPathName, IsAValue) {
    GPathName path = Path(u"C:/a");
    GPathName copy = path;
    copy.Append(Text(u"b"));
    EXPECT_EQ(Plain(path), u"C:/a");
    path.Clear();
    EXPECT_TRUE(path.IsEmpty());
    EXPECT_EQ(Plain(copy), u"C:/a/b");
    EXPECT_TRUE(GPathName::cEmptyPathName.IsEmpty());
}

TEST(GPathName, ChecksPortableText) {
    for (const std::u16string_view good : {u"", u"C:/a", u"a:b|c?"}) {
        SCOPED_TRACE(Readable(good));
        EXPECT_EQ(ThrownBy([&] { GPathName::CheckCrossPlatformString(Text(good)); }), 0);
    }
    for (const std::u16string_view bad : {std::u16string_view(u"a\\b"), std::u16string_view(u"a\0b", 3)}) {
        SCOPED_TRACE(Readable(bad));
        EXPECT_EQ(ThrownBy([&] { GPathName::CheckCrossPlatformString(Text(bad)); }), 40068);
    }
}
