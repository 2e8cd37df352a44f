#include "framework/core/paths/GPathName.h"

#include "tests/core/ThrownBy.h"
#include "tests/core/paths/PathForTests.h"

namespace {

std::u16string Without(char16_t unit, std::u16string_view text) {
    std::u16string result(text);
    std::erase(result, unit);
    return result;
}

}  // namespace

TEST(GPathName, TakesARootApart) {
    for (const std::u16string_view row :
         {u"||", u"||dir/file", u"||:", u"|/|", u"|/|dir", u"C:||", u"C:|/|", u"C:|/|dir/file", u"C:||file",
          u"//server||", u"//e\u0301|/|", u"//server|/|share/x", u"Data:||", u"||Data:file", u"a/b:||",
          u"|/|/", u"//|/|x", u"/:|/|", u"//.|/|pipe/x"}) {
        SCOPED_TRACE(Readable(row));
        const auto [rootName, rootDirectory, relative] = CellsOf<3>(row, u"|");
        const GPathName path = Path(Without(u'|', row));
        EXPECT_EQ(Plain(path.GetRootName()), rootName);
        EXPECT_EQ(Plain(path.GetCrossPlatformRootNameString()), rootName);
        EXPECT_EQ(Plain(path.GetRootDirectory()), rootDirectory);
        EXPECT_EQ(path.HasRootDirectory(), !rootDirectory.empty());
        EXPECT_EQ(Plain(path.GetRelativePath()), relative);
        const std::size_t length = rootName.size() + rootDirectory.size();
        EXPECT_EQ(GPathName::GetStartPositionRelativePath(path.GetPortablePath()), static_cast<long>(length));
        EXPECT_EQ(Plain(path.GetRootPath()), Without(u'|', row).substr(0, length));
        // Two slashes promise the name of a host, even where it is missing.
        const bool hasRootName = !rootName.empty() || row == u"|/|/";
        EXPECT_EQ(path.HasRootName(), hasRootName);
        EXPECT_EQ(path.IsRelative(), !hasRootName);
        EXPECT_EQ(path.HasRootPath(), hasRootName || !rootDirectory.empty());
    }
    const GPathName both = Path(u"/ab:");  // a root name in whole, and a path from the root
    EXPECT_EQ(Plain(both.GetRootName()), u"/ab:");
    EXPECT_TRUE(both.HasRootDirectory());
    EXPECT_EQ(Plain(both.GetRootPath()) + Plain(both.GetRelativePath()), u"/ab:");
}

TEST(GPathName, TakesALeafApart) {
    for (const std::u16string_view row :
         {u"||", u"|file|", u"C:/dir/|file|.txt", u"/|x|", u"a/|b|", u"dir/||", u"C:||", u"C:|x|.y",
          u"//srv||", u"//srv/|share|", u"Data:|file|", u"d.ir/|a:b|", u"|a.tar|.gz", u"d/||.foo", u"|a|.",
          u"|.|", u"a/|..|", u"|..|.", u"o\u0308/|e\u0301|.a\u0308"}) {
        SCOPED_TRACE(Readable(row));
        const auto [branch, stem, dotExtension] = CellsOf<3>(row, u"|");
        const GPathName path = Path(Without(u'|', row));
        const std::u16string leaf = std::u16string(stem) + std::u16string(dotExtension);
        EXPECT_EQ(Plain(path.GetBranch()), branch);
        EXPECT_EQ(path.HasBranch(), !branch.empty());
        EXPECT_EQ(Plain(path.GetLeaf()), leaf);
        EXPECT_EQ(path.HasLeaf(), !leaf.empty());
        EXPECT_EQ(Plain(path.GetLeafWithoutExtension()), stem);
        EXPECT_EQ(path.HasExtension(), !dotExtension.empty());
        EXPECT_EQ(Plain(path.GetExtension()), dotExtension.substr(dotExtension.empty() ? 0 : 1));
    }
}

TEST(GPathName, CountsComponentsAndCutsBehindThem) {
    // A bar stands where a path is cut behind no component, one, two, ...
    for (const std::u16string_view row :
         {u"|", u"C:/|a|/b|/c|", u"|a|//b|/", u"//srv/|share|/x|", u"C:|", u"/|x|", u"//srv|"}) {
        SCOPED_TRACE(Readable(row));
        const GPathName path = Path(Without(u'|', row));
        long count = -1;
        for (std::size_t bar = row.find(u'|'); bar != row.npos; bar = row.find(u'|', bar + 1))
            EXPECT_EQ(Plain(path.GetPartialPath(++count)), Without(u'|', row.substr(0, bar)));
        EXPECT_EQ(path.GetNumberOfComponents(), count);
        EXPECT_EQ(Plain(path.GetPartialPath(count + 1)), Without(u'|', row.substr(0, row.rfind(u'|'))));
        EXPECT_EQ(Plain(path.GetPartialPath(-1)), row.substr(0, row.find(u'|')));
    }
}

TEST(GPathName, AppendsRelativePathsBehindOneSlash) {
    ForEachRow<3>({u"C:/a -> b -> C:/a/b", u"C:/a/ -> b -> C:/a/b", u" -> b -> b", u"a ->  -> a", u" ->  -> ",
                   u"a -> /b -> a//b", u"C: -> x/y -> C:/x/y", u"a -> \U0001F600 -> a/\U0001F600"},
                  [&](auto base, auto component, auto result) {
                      GPathName path = Path(base);
                      path.Append(Text(component));
                      EXPECT_EQ(Plain(path), result);
                      EXPECT_EQ(Plain(Path(base) / Path(component)), result);
                      path = Path(base);
                      EXPECT_EQ(Plain(path /= Path(component)), result);
                  });
    GPathName path = Path(u"a/b");
    path.Append(path.GetPortablePath());
    EXPECT_EQ(Plain(path), u"a/b/a/b");
    for (const std::u16string_view rooted : {u"C:/b", u"C:", u"//srv/x", u"Data:"}) {
        EXPECT_EQ(ThrownBy([&] { path /= Path(rooted); }), 40066) << Readable(rooted);
        EXPECT_EQ(ThrownBy([&] { path / Path(rooted); }), 40066) << Readable(rooted);
        EXPECT_EQ(Plain(path), u"a/b/a/b");
    }
}

TEST(GPathName, ReplacesTheLeafOrAPartOfIt) {
    const auto expect = [](void (GPathName::*replace)(const GString&),
                           std::initializer_list<std::u16string_view> rows) {
        ForEachRow<3>(rows, [&](auto text, auto part, auto result) {
            GPathName path = Path(text);
            (path.*replace)(Text(part));
            EXPECT_EQ(Plain(path), result);
        });
    };
    expect(&GPathName::ReplaceLeaf,
           {u"d/a.txt -> b.c -> d/b.c", u"d/a.txt ->  -> d/", u"d/ -> b -> d/b", u"d/.. -> b -> d/b",
            u"C: -> b -> C:b", u"//srv -> b -> //srv/b", u"//srv/ -> b -> //srv/b", u" -> b -> b"});
    expect(&GPathName::ReplaceLeafWithoutExtension,
           {u"d/a.txt -> b.c -> d/b.c.txt", u"d/a.txt ->  -> d/.txt", u"d.x/a -> b -> d.x/b",
            u"a.tar.gz -> b -> b.gz", u"d/ -> b -> d/b", u"//srv -> b -> //srv/b", u" -> b -> b"});
    expect(&GPathName::ReplaceExtension,
           {u"d/a.txt -> ps -> d/a.ps", u"d/a.txt -> .ps -> d/a.ps", u"d/a.txt ->  -> d/a",
            u"d.x/a -> ps -> d.x/a.ps", u"a.tar.gz -> ps -> a.tar.ps", u"d/ -> ps -> d/",
            u"d/.. -> ps -> d/...ps", u"C: -> ps -> C:", u"//srv -> ps -> //srv", u" -> ps -> "});
}

TEST(GPathName, NormalizesAsText) {
    const auto normalized = [](std::u16string_view text) {
        GPathName path = Path(text);
        path.Normalize();
        EXPECT_EQ(Plain(path.GetNormalizedPortablePathFrom(Text(text))), Plain(path));
        return Plain(path);
    };
    ForEachRow<2>({u"C:/a/./b/../c -> C:/a/c", u"a/.. -> ", u"a/../.. -> ..", u"a/b/../../../c -> ../c",
                   u"C:/. -> C:/", u"./ -> ", u"a/./ -> a/", u"a/b/.. -> a", u"a/b/../ -> a/",
                   u"//srv/share/../x -> //srv/x", u"a/.../.. -> a", u"..a/.. -> ", u"C:a/../b -> C:b",
                   u"a/..//b -> /b", u"/.//b -> //b", u"./C:./b -> C:./b", u"\u00E9/\U0001F600/.. -> \u00E9"},
                  [&](auto text, auto result) { EXPECT_EQ(normalized(text), result); });
    for (const std::u16string_view text : {u"", u"../x", u"../../x", u"a//../b", u"C:/../a", u"//srv/.."})
        EXPECT_EQ(normalized(text), text) << Readable(text);
    std::u16string deep = u"C:";
    for (int i = 0; i < 20000; ++i) deep += u"/d";
    for (int i = 0; i < 19999; ++i) deep += u"/..";
    EXPECT_EQ(normalized(deep), u"C:/d");
}

TEST(GPathName, FindsTheWayFromABase) {
    ForEachRow<3>({u"C:/a/b -> C:/a/c -> ../b", u"C:/a/b -> C:/a/ -> b", u"C:/A/b -> c:/a/C/d -> ../../b",
                   u"C:/a -> C:/a -> ", u"C:/a -> C:/a/b/c -> ../..", u"C:/a/b -> C:/ab -> ../a/b",
                   // None leads out of another root or place.
                   u"C:/a -> D:/a -> C:/a", u"C:/a -> C:a -> C:/a", u"C:/a -> a -> C:/a",
                   u"//srv/s/x -> //SRV/s/y/z -> ../../x", u"//srv/s/x -> //other/s -> //srv/s/x",
                   u"a/b -> a/c -> ../b", u"x -> ../y -> x", u"../x -> y -> ../../x",
                   u"C:/a/./b/../c -> C:/a/d/.. -> c", u"C:/a/D:/x -> C:/a -> C:/a/D:/x", u"C:b -> C: -> C:b",
                   u"C: -> C: -> ", u"C:b -> C:. -> b", u"C:b -> C:a -> ../b",
                   u"C:/a/D:/x -> C:/b -> ../a/D:/x", u"C:/a/Data: -> C:/a -> C:/a/Data:", u" ->  -> "},
                  [&](auto path, auto base, auto way) {
                      EXPECT_EQ(Plain(Path(path).GetRelativePathFrom(Path(base))), way);
                  });
}

TEST(GPathName, StartsWithWholeComponents) {
    ForEachRow<2>(
        {u"C:/dir/x -> c:/DIR", u"C:/dir/x -> C:/dir/", u"C:/dir -> C:/", u"C:/dir -> C:", u"C:dir -> C:",
         u"a/b -> a", u"/a -> /", u"//srv/share -> //srv", u" -> ", u"\u00C4/x -> \u00E4"},
        [](auto path, auto start) { EXPECT_TRUE(Path(path).StartsWith(Path(start))); });
    ForEachRow<2>({u"C:/dir/x -> C:/di", u"C:/dir -> C:/dir/x", u"C:dir -> C:/", u"/a/b -> a", u"a/b -> /a",
                   u"a -> /", u"//server/x -> //srv", u"//srv/share -> /"},
                  [](auto path, auto start) { EXPECT_FALSE(Path(path).StartsWith(Path(start))); });
}

TEST(GPathName, ComparesAndHashesAsItsTextInSmallLetters) {
    std::u16string upper = u"\u00C4", lower = u"\u00E4";
    for (int i = 0; i < 520; ++i) {
        ASSERT_TRUE(Path(upper) == Path(lower) && !(Path(upper) != Path(lower))) << i;
        ASSERT_EQ(Path(upper).GetHash(), Text(lower).GetHash()) << i;
        upper += static_cast<char16_t>(u'A' + i % 26);
        lower += static_cast<char16_t>(u'a' + i % 26);
    }
    EXPECT_EQ(GPathName().GetHash(), GString().GetHash());
    ForEachRow<2>({u"a -> b", u"a -> a/", u"a -> ", u"C:/a -> C:\\a"}, [&](auto a, auto b) {
        EXPECT_TRUE(Path(a) != Path(b) && !(Path(a) == Path(b)));
        EXPECT_NE(Path(a).GetHash(), Path(b).GetHash());
    });
}

/// A path that only notes what it was to become, and what it was just then, and that shouts in the system's
/// form.
class UnwillingPath : public GPathName {
public:
    explicit UnwillingPath(std::u16string_view path) : GPathName(Text(path)) {}
    void SetCrossPlatformString(const GString& portable) override {
        mWanted = Plain(portable) + u" instead of " + Plain(GetPortablePath());
    }
    void ConvertPortableToWin32(const GString& portable, GString& win32) const override {
        GPathName::ConvertPortableToWin32(portable, win32);
        win32.ToUpper();
    }
    void ConvertWin32ToPortable(const GString& win32, GString& portable) const override {
        GPathName::ConvertWin32ToPortable(win32, portable);
        portable.ToLower();
    }
    std::u16string mWanted;
};

TEST(GPathName, ChangesOnlyThroughItsSetterAndIsReadAndWrittenByADerivedClass) {
    const std::tuple<void (*)(GPathName&), const char16_t*> rows[] = {
        {[](GPathName& p) { p.SetPortablePath(Text(u"x")); }, u"x"},
        {[](GPathName& p) { p.SetWin32PathString(Text(u"X\\y")); }, u"x/y"},
        {[](GPathName& p) { p.SetUNCPathString(Text(u"\\\\s")); }, u"//s"},
        {[](GPathName& p) { p.SetDIPathString(Text(u"/D")); }, u"D:"},
        {[](GPathName& p) { p.SetMachOPathString(Text(u"/Volumes/D")); }, u"D:/"},
        {[](GPathName& p) { p.SetCFMPathString(Text(u":x")); }, u"x"},
        {[](GPathName& p) { p.SetRootName(Text(u"D:")); }, u"d:"},
        {[](GPathName& p) { p.Append(Text(u"x")); }, u"C:/a/./b.c/x"},
        {[](GPathName& p) { p /= Path(u"x"); }, u"C:/a/./b.c/x"},
        {[](GPathName& p) { p.ReplaceLeaf(Text(u"x")); }, u"C:/a/./x"},
        {[](GPathName& p) { p.ReplaceLeafWithoutExtension(Text(u"x")); }, u"C:/a/./x.c"},
        {[](GPathName& p) { p.ReplaceExtension(Text(u"x")); }, u"C:/a/./b.x"},
        {[](GPathName& p) { p.Normalize(); }, u"C:/a/b.c"},
        {[](GPathName& p) { p.Clear(); }, u""}};
    for (const auto& [change, wanted] : rows) {
        UnwillingPath path(u"C:/a/./b.c");
        change(path);
        EXPECT_EQ(path.mWanted, wanted + std::u16string(u" instead of C:/a/./b.c"));
        EXPECT_EQ(Plain(path), u"C:/a/./b.c");
    }
    for (const auto& [length, prefix] : {std::pair(243, u""), {244, u"\\\\?\\"}}) {
        const auto count = static_cast<std::size_t>(length);
        const UnwillingPath path(u"C:/" + Repeated(u'y', count));
        EXPECT_EQ(Plain(path.GetWin32APIPathString()), prefix + (u"C:\\" + Repeated(u'Y', count)));
    }
}

TEST(GPathName, TakesTextOfAnyEncodingAndIsAValue) {
    for (const GString& text : {GString("c.d"), GString::FromUTF8("c.d"), Text(u"c.d")}) {
        GPathName path(text);
        EXPECT_EQ(Plain(path), u"c.d");
        path.SetPortablePath(GString("C:/a"));
        const GPathName copy = path;
        path /= GPathName(text);
        path.Append(text);
        EXPECT_EQ(Plain(path) + Plain(copy), u"C:/a/c.d/c.dC:/a");
        path.SetPortablePath(text);
        path.Append(GString(std::string(300, 'x').c_str()));
        EXPECT_EQ(Plain(path), u"c.d/" + std::u16string(300, u'x'));
    }
    EXPECT_EQ(Plain(GPathName(GString::FromUTF8("\xC3\xA9/x"))), u"\u00E9/x");
    EXPECT_EQ(Plain(GPathName(GString("\xFF/x"))), u"@/x");
}

TEST(GPathName, ChecksPortableText) {
    const std::pair<std::u16string_view, long> rows[] = {
        {u"", 0}, {u"C:/a", 0}, {u"a:b|c?", 0}, {u"a\\b", 40068}, {u"a\0b"sv, 40068}};
    for (const auto& [text, id] : rows)
        EXPECT_EQ(ThrownBy([&] { GPathName::CheckCrossPlatformString(Text(text)); }), id) << Readable(text);
}
