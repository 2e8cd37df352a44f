// The header must do without this name: compilers for UNIX define it, unless told to keep to the standard.
#undef unix
#define unix 1
#include "framework/core/paths/GPathName.h"
#undef unix

#include "framework/core/errors/GException.h"
#include "tests/core/paths/PathForTests.h"

namespace {

struct Form {
    void (GPathName::*set)(const GString&);
    GString (GPathName::*get)() const;
    void (*read)(const GString&, GString&);
    void (*write)(const GString&, GString&);
};

/// Each row has a path in that form, what it is read as, and what that is written as.
void ExpectForms(const Form& form, std::initializer_list<std::u16string_view> rows) {
    ForEachRow<3>(rows, [&](auto foreign, auto portable, auto back) {
        GPathName path = Path(u"before");
        (path.*form.set)(Text(foreign));
        EXPECT_EQ(Plain(path), portable);
        EXPECT_EQ(Plain((path.*form.get)()), back);
        GString text = Text(foreign);
        form.read(text, text);
        EXPECT_EQ(Plain(text), portable);
        form.write(text, text);
        EXPECT_EQ(Plain(text), back);
    });
}

/// Each row has a portable path, that form of it, and what that is read as.
void ExpectThereAndBack(auto get, auto write, auto set, auto read,
                        std::initializer_list<std::u16string_view> rows) {
    ForEachRow<3>(rows, [&](auto portable, auto foreign, auto back) {
        GString text = Text(portable);
        GPathName path(text);
        EXPECT_EQ(Plain((path.*get)()), foreign);
        (path.*write)(text, text);
        (path.*set)(text);
        (path.*read)(text, text);
        EXPECT_TRUE(text == path.GetPortablePath()) << "in place, too";
        EXPECT_EQ(Plain(path), back);
    });
}

}  // namespace

TEST(GPathNameConversions, ReadsAndWritesWin32PathsAndTheNamesOfShares) {
    const Form form = {&GPathName::SetWin32PathString, &GPathName::GetWin32PathString,
                       GPathName::ConvertNativeToPortable, GPathName::ConvertPortableToNative};
    ExpectForms(
        form, {u"C:\\dir\\file.txt -> C:/dir/file.txt -> C:\\dir\\file.txt", u"\\\\?\\C:\\x -> C:/x -> C:\\x",
               u"\\\\?\\UNC\\srv\\s\\x -> /srv/s/x -> \\srv\\s\\x", u"\\\\?\\unc\\srv -> unc/srv -> unc\\srv",
               u"\\\\?\\UNC -> UNC -> UNC", u"\\\\?\\ ->  -> .", u"\\\\? -> //? -> \\\\?",
               u"\\\\.\\pipe\\x -> //./pipe/x -> \\\\.\\pipe\\x",
               u"\\\\srv\\share -> //srv/share -> \\\\srv\\share", u"C:/already -> C:/already -> C:\\already",
               u"C:x -> C:x -> C:x", u" ->  -> .", u". -> . -> ."});
    const Form share = {&GPathName::SetUNCPathString, &GPathName::GetUNCPathString,
                        GPathName::ConvertUNCSpecToPortable, GPathName::ConvertPortableToUNCSpec};
    // Which keeps both slashes.
    ExpectForms(share, {u"\\\\srv\\share\\x -> //srv/share/x -> \\\\srv\\share\\x",
                        u"\\\\srv -> //srv -> \\\\srv", u"\\\\?\\UNC\\srv\\s -> //srv/s -> \\\\srv\\s",
                        u"\\\\?\\UNC\\ -> // -> \\\\", u"\\\\?\\C:\\x -> C:/x -> C:\\x", u" ->  -> ."});
}

TEST(GPathNameConversions, HoldsTheNativeFormToBeWin32) {
    const std::tuple<void (GPathName::*)(const GString&), const char16_t*, const char16_t*> rows[] = {
        {&GPathName::SetNativePathString, u"\\\\srv\\b", u"//srv/b"},
        {&GPathName::SetLegacyPlatformString, u"c\\d", u"c/d"},
        {&GPathName::SetRootName, u"\\\\srv", u"//srv"},
        {&GPathName::SetRootPath, u"C:\\", u"C:/"},
        {&GPathName::SetCrossPlatformRootNameString, u"Data:", u"Data:"},
        {&GPathName::SetCrossPlatformRootPathString, u"//srv/", u"//srv/"}};
    for (const auto& [set, native, portable] : rows) {
        GPathName path = GPathName::FromNative(Text(u"be\\fore"));
        EXPECT_EQ(Plain(path), u"be/fore");
        (path.*set)(Text(native));
        EXPECT_EQ(Plain(path), portable);
        if (native[0] == u'/') continue;
        EXPECT_EQ(Plain(path.GetNativePathString()), native);
        EXPECT_EQ(Plain(path.GetLegacyPlatformString()), native);
    }
}

TEST(GPathNameConversions, GivesTheSystemLongPathsLiterally) {
    const std::tuple<const char*, std::u16string, std::u16string> rows[] = {
        {"none", u"", u"."},
        {"a short one", u"C:/x/y", u"C:\\x\\y"},
        {"the longest plain one", u"C:/" + Repeated(u'x', 243), u"C:\\" + Repeated(u'x', 243)},
        {"the shortest long one", u"C:/" + Repeated(u'x', 244), u"\\\\?\\C:\\" + Repeated(u'x', 244)},
        {"the longest plain share", u"//s/" + Repeated(u'x', 242), u"\\\\s\\" + Repeated(u'x', 242)},
        {"the shortest long share", u"//s/" + Repeated(u'x', 243), u"\\\\?\\UNC\\s\\" + Repeated(u'x', 243)},
        {"a long share", u"//srv/s/" + Repeated(u'y', 292), u"\\\\?\\UNC\\srv\\s\\" + Repeated(u'y', 292)}};
    for (const auto& [what, portable, api] : rows)
        EXPECT_EQ(Plain(Path(portable).GetWin32APIPathString()), api) << what;
}

TEST(GPathNameConversions, ReadsAndWritesDeviceIndependentPaths) {
    const Form form = {&GPathName::SetDIPathString, &GPathName::GetDIPathString,
                       GPathName::ConvertDISpecToPortable, GPathName::ConvertPortableToDISpec};
    ExpectForms(form, {u"/C/Program Files/x -> C:/Program Files/x -> /C/Program Files/x", u"/C -> C: -> /C",
                       u"/C/ -> C:/ -> /C/", u"/srv/share/x -> //srv/share/x -> /srv/share/x",
                       u"//x -> /x -> //x", u"// -> /: -> //", u"///x -> /:/x -> ///x", u"/ -> // -> /",
                       u"./ ->  -> ./", u"../ -> .. -> ../", u"a/b -> a/b -> a/b", u"../a -> ../a -> ../a",
                       u"./a -> ./a -> ./a", u"Data: -> Data: -> Data:", u" ->  -> ./"});
}

TEST(GPathNameConversions, RefusesURLsAsDeviceIndependentPaths) {
    GPathName path;
    for (const std::u16string_view other : {u"a/http://x", u"https://x", u"HTTP://x", u"http:/x"}) {
        path.SetDIPathString(Text(other));
        EXPECT_EQ(Plain(path), other);
        for (const char* url : {"http://x/y", "ftp://x"})
            EXPECT_THROW(path.SetDIPathString(GString(url)), GSimpleException);
        EXPECT_EQ(Plain(path), other);
    }
}

TEST(GPathNameConversions, WritesURLs) {
    ForEachRow<2>(
        {u"C:/dir/a b.txt -> file:///C:/dir/a%20b.txt", u"//server/share/x -> file://server/share/x",
         u"//a@b:80/c@d:e -> file://a%40b%3A80/c@d:e", u"//srv:x -> file://srv%3Ax",
         u"/dir/x -> file:///dir/x", u"dir/x -> file:///dir/x", u" -> file:///",
         u"C:/100%#?.txt -> file:///C:/100%25%23%3F.txt", u"/a%2Fb%00% -> file:///a%252Fb%2500%25",
         u"/-._~!$&'()*+,;=:@azAZ09 -> file:///-._~!$&'()*+,;=:@azAZ09",
         u"/[\"<>\\^`{|}] -> file:///%5B%22%3C%3E%5C%5E%60%7B%7C%7D%5D", u"/\x01\x7F -> file:///%01%7F",
         u"/\u0080\u07FF -> file:///%C2%80%DF%BF", u"/\u0800\uFFFF -> file:///%E0%A0%80%EF%BF%BF",
         u"/\U00010000\U0010FFFF -> file:///%F0%90%80%80%F4%8F%BF%BF",
         u"/\xD800x\xDC00\xD801 -> file:///%EF%BF%BDx%EF%BF%BD%EF%BF%BD"},
        [&](auto portable, auto url) { EXPECT_EQ(Plain(Path(portable).GetURLPathString()), url); });
}

TEST(GPathNameConversions, HangsVolumesUnderOneFolderForMachO) {
    ExpectThereAndBack(
        &GPathName::GetMachOPathString, &GPathName::ConvertPortableToMachO, &GPathName::SetMachOPathString,
        &GPathName::ConvertMachOToPortable,
        {u"C:/x/y -> /Volumes/C/x/y -> C:/x/y", u"C:/ -> /Volumes/C -> C:/", u"C:x -> /Volumes/C/x -> C:/x",
         u"Data: -> /Volumes/Data -> /Volumes/Data", u"/Volumes/Data/x -> /Volumes/Data/x -> /Volumes/Data/x",
         u"/Volumes/ -> /Volumes/ -> /Volumes/", u"/Volumes//x -> /Volumes//x -> /Volumes//x",
         u"/Users/x -> /Users/x -> /Users/x", u"//srv/x -> //srv/x -> //srv/x", u"a/b -> a/b -> a/b",
         u" ->  -> "});
    EXPECT_EQ(Plain(Path(u"C:/x/y").GetMachOBranch()), u"/Volumes/C/x/");
}

TEST(GPathNameConversions, WritesAndReadsCFMPaths) {
    ExpectThereAndBack(
        &GPathName::GetCFMPathString, &GPathName::ConvertPortableToCFM, &GPathName::SetCFMPathString,
        &GPathName::ConvertCFMToPortable,
        {u"/Volumes/Data/dir/file -> Data:dir:file -> /Volumes/Data/dir/file",
         u"/Volumes/Data/dir/ -> Data:dir: -> /Volumes/Data/dir",
         u"/Volumes/Data/../x -> Data::x -> /Volumes/Data/../x", u"/Volumes/Data -> Data: -> /Volumes/Data",
         u"Data: -> Data: -> /Volumes/Data", u"//srv/x -> //srv/x -> //srv/x",
         u"C:/dir/file -> C:dir:file -> C:/dir/file", u"C:/ -> C: -> C:/", u"file -> file -> file",
         u"dir/ -> :dir: -> dir", u"../../x -> :::x -> ../../x", u"a/../b -> :a::b -> a/../b",
         u".. -> :: -> ..", u"a/.. -> :a:: -> a/..", u". -> : -> ", u"./a/./b -> :a:b -> a/b",
         u"d/a:b -> :d:a/b -> d/a:b", u" ->  -> "});
    GPathName path;
    path.SetCFMPathString(Text(u"ab/c"));
    EXPECT_EQ(Plain(path), u"ab:c");
    path.SetCFMPathString(Text(Repeated(u':', 5000)));
    EXPECT_EQ(path.GetNumberOfComponents(), 4999);
}

TEST(GPathNameConversions, TheUNIXFormIsThePortableOne) {
    GString text = Text(u"C:/dir\\x");
    GPathName().ConvertPortableToUNIX(text, text);
    GPathName().ConvertUNIXToPortable(text, text);
    EXPECT_EQ(Plain(text), u"C:/dir\\x");
}
