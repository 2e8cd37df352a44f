#include <gtest/gtest.h>

#include <string>

#include "framework/core/GException.h"
#include "framework/core/GPathName.h"
#include "tests/core/TestText.h"

namespace {

GPathName Path(std::u16string_view portable) {
    return GPathName(Text(portable));
}

std::u16string Plain(const GPathName& path) {
    return Plain(path.GetPortablePath());
}

std::u16string Repeated(char16_t unit, std::size_t count) {
    return std::u16string(count, unit);
}

struct FormRow {
    std::u16string_view portable, form;
};

}  // namespace

TEST(GPathNameConversions, ReadsWin32Paths) {
    const struct {
        std::u16string_view win32, portable;
    } rows[] = {
        {u"C:\\dir\\file.txt", u"C:/dir/file.txt"},
        {u"\\\\?\\C:\\x", u"C:/x"},
        {u"\\\\?\\UNC\\srv\\s\\x", u"/srv/s/x"},
        {u"\\\\?\\unc\\srv", u"unc/srv"},
        {u"\\\\?\\UNC", u"UNC"},
        {u"\\\\?\\", u""},
        {u"\\\\?", u"//?"},
        {u"\\\\srv\\share", u"//srv/share"},
        {u"C:/already", u"C:/already"},
        {u"", u""},
        {u".", u"."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.win32));
        GPathName path;
        path.SetWin32PathString(Text(row.win32));
        EXPECT_EQ(Plain(path), row.portable);
        path.SetNativePathString(Text(row.win32));
        EXPECT_EQ(Plain(path), row.portable);
        EXPECT_EQ(Plain(GPathName::FromNative(Text(row.win32))), row.portable);
        GString converted;
        GPathName::ConvertNativeToPortable(Text(row.win32), converted);
        EXPECT_EQ(Plain(converted), row.portable);
    }
}

TEST(GPathNameConversions, WritesWin32Paths) {
    const FormRow rows[] = {
        {u"C:/dir/file.txt", u"C:\\dir\\file.txt"}, {u"", u"."}, {u"//srv/s", u"\\\\srv\\s"}, {u"a", u"a"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.portable));
        EXPECT_EQ(Plain(Path(row.portable).GetWin32PathString()), row.form);
        EXPECT_EQ(Plain(Path(row.portable).GetNativePathString()), row.form);
        EXPECT_EQ(Plain(Path(row.portable).GetLegacyPlatformString()), row.form);
        EXPECT_EQ(Plain(Path(row.portable).GetWin32APIPathString()), row.form);
    }
}

TEST(GPathNameConversions, GivesTheSystemLongPathsLiterally) {
    const struct {
        const char* what;
        std::u16string portable, api;
    } rows[] = {
        {"the longest plain one", u"C:/" + Repeated(u'x', 243), u"C:\\" + Repeated(u'x', 243)},
        {"the shortest long one", u"C:/" + Repeated(u'x', 244), u"\\\\?\\C:\\" + Repeated(u'x', 244)},
        {"the longest plain share", u"//s/" + Repeated(u'x', 242), u"\\\\s\\" + Repeated(u'x', 242)},
        {"the shortest long share", u"//s/" + Repeated(u'x', 243), u"\\\\?\\UNC\\s\\" + Repeated(u'x', 243)},
        {"a long share", u"//srv/s/" + Repeated(u'y', 292), u"\\\\?\\UNC\\srv\\s\\" + Repeated(u'y', 292)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(Plain(Path(row.portable).GetWin32APIPathString()), row.api);
    }
}

TEST(GPathNameConversions, KeepsBothSlashesOfUNCPaths) {
    const struct {
        std::u16string_view unc, portable, back;
    } rows[] = {
        {u"\\\\srv\\share\\x", u"//srv/share/x", u"\\\\srv\\share\\x"},
        {u"\\\\?\\UNC\\srv\\s", u"//srv/s", u"\\\\srv\\s"},
        {u"\\\\?\\C:\\x", u"C:/x", u"C:\\x"},
        {u"", u"", u"."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.unc));
        GPathName path;
        path.SetUNCPathString(Text(row.unc));
        EXPECT_EQ(Plain(path), row.portable);
        EXPECT_EQ(Plain(path.GetUNCPathString()), row.back);
        GString spec;
        GPathName::ConvertUNCSpecToPortable(Text(row.unc), spec);
        EXPECT_EQ(Plain(spec), row.portable);
        GPathName::ConvertPortableToUNCSpec(spec, spec);
        EXPECT_EQ(Plain(spec), row.back);
    }
}

TEST(GPathNameConversions, ReadsDeviceIndependentPaths) {
    const struct {
        std::u16string_view di, portable;
    } rows[] = {
        {u"/C/Program Files/x", u"C:/Program Files/x"},
        {u"/C", u"C:"},
        {u"/C/", u"C:/"},
        {u"/srv/share/x", u"//srv/share/x"},
        {u"//x", u"/x"},
        {u"/", u"//"},
        {u"./", u""},
        {u"../", u".."},
        {u"a/b", u"a/b"},
        {u"../a", u"../a"},
        {u"", u""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.di));
        GPathName path;
        path.SetDIPathString(Text(row.di));
        EXPECT_EQ(Plain(path), row.portable);
        GString spec;
        GPathName::ConvertDISpecToPortable(Text(row.di), spec);
        EXPECT_EQ(Plain(spec), row.portable);
    }
}

TEST(GPathNameConversions, WritesDeviceIndependentPaths) {
    const FormRow rows[] = {
        {u"", u"./"},
        {u"..", u"../"},
        {u"C:/dir", u"/C/dir"},
        {u"C:", u"/C"},
        {u"//srv/s", u"/srv/s"},
        {u"/dir", u"//dir"},
        {u"dir/file", u"dir/file"},
        {u"Data:", u"Data:"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.portable));
        EXPECT_EQ(Plain(Path(row.portable).GetDIPathString()), row.form);
        GString spec;
        GPathName::ConvertPortableToDISpec(Text(row.portable), spec);
        EXPECT_EQ(Plain(spec), row.form);
    }
}

TEST(GPathNameConversions, RefusesURLsAsDeviceIndependentPaths) {
    GPathName path = Path(u"before");
    for (const std::u16string_view url : {u"http://x/y", u"ftp://x"}) {
        SCOPED_TRACE(Readable(url));
        try {
            path.SetDIPathString(Text(url));
            ADD_FAILURE() << "was taken";
        } catch (const GSimpleException& exception) {
            EXPECT_EQ(exception.GetExceptionID(), 40090);
        }
        EXPECT_EQ(Plain(path), u"before");
    }
    for (const std::u16string_view other : {u"a/http://x", u"https://x", u"HTTP://x", u"http:/x"}) {
        SCOPED_TRACE(Readable(other));
        path.SetDIPathString(Text(other));
        EXPECT_EQ(Plain(path), other);
    }
}

TEST(GPathNameConversions, WritesURLs) {
    const FormRow rows[] = {
        {u"C:/dir/a b.txt", u"file:///C:/dir/a%20b.txt"},
        {u"//server/share/x", u"file://server/share/x"},
        {u"/dir/x", u"file:///dir/x"},
        {u"dir/x", u"file:///dir/x"},
        {u"", u"file:///"},
        {u"C:/100%#?.txt", u"file:///C:/100%25%23%3F.txt"},
        {u"/-._~!$&'()*+,;=:@azAZ09", u"file:///-._~!$&'()*+,;=:@azAZ09"},
        {u"/[\"<>\\^`{|}]", u"file:///%5B%22%3C%3E%5C%5E%60%7B%7C%7D%5D"},
        {u"/\x01\x7F", u"file:///%01%7F"},
        {u"/\u0080\u07FF", u"file:///%C2%80%DF%BF"},
        {u"/\u0800\uFFFF", u"file:///%E0%A0%80%EF%BF%BF"},
        {u"/\U00010000\U0010FFFF", u"file:///%F0%90%80%80%F4%8F%BF%BF"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.portable));
        EXPECT_EQ(Plain(Path(row.portable).GetURLPathString()), row.form);
    }
    const std::u16string halves = {u'/', 0xD800, u'x', 0xDC00, 0xD801};
    EXPECT_EQ(Plain(Path(halves).GetURLPathString()), u"file:///%EF%BF%BDx%EF%BF%BD%EF%BF%BD");
}

TEST(GPathNameConversions, HangsVolumesUnderOneFolderForMachO) {
    const struct {
        std::u16string_view portable, machO, back;
    } rows[] = {
        {u"C:/x/y", u"/Volumes/C/x/y", u"C:/x/y"},
        {u"C:/", u"/Volumes/C", u"C:/"},
        {u"C:x", u"/Volumes/C/x", u"C:/x"},
        {u"Data:", u"/Volumes/Data", u"/Volumes/Data"},
        {u"/Volumes/Data/x", u"/Volumes/Data/x", u"/Volumes/Data/x"},
        {u"/Volumes/", u"/Volumes/", u"/Volumes/"},
        {u"/Users/x", u"/Users/x", u"/Users/x"},
        {u"//srv/x", u"//srv/x", u"//srv/x"},
        {u"a/b", u"a/b", u"a/b"},
        {u"", u"", u""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.portable));
        EXPECT_EQ(Plain(Path(row.portable).GetMachOPathString()), row.machO);
        GPathName path;
        path.SetMachOPathString(Text(row.machO));
        EXPECT_EQ(Plain(path), row.back);
    }
    EXPECT_EQ(Plain(Path(u"C:/x/y").GetMachOBranch()), u"/Volumes/C/x/");
}

TEST(GPathNameConversions, WritesCFMPaths) {
    const FormRow rows[] = {
        {u"/Volumes/Data/dir/file", u"Data:dir:file"},
        {u"/Volumes/Data", u"Data:"},
        {u"Data:", u"Data:"},
        {u"C:/dir/file", u"C:dir:file"},
        {u"C:/", u"C:"},
        {u"a/b", u":a:b"},
        {u"a/b/", u":a:b:"},
        {u"file", u"file"},
        {u"dir/", u":dir:"},
        {u"../x", u"::x"},
        {u"../../x", u":::x"},
        {u"a/../b", u":a::b"},
        {u"..", u"::"},
        {u"a/..", u":a::"},
        {u".", u":"},
        {u"./a/./b", u":a:b"},
        {u"d/a:b", u":d:a/b"},
        {u"/dir/x", u"/dir/x"},
        {u"//srv/x", u"//srv/x"},
        {u"", u""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.portable));
        EXPECT_EQ(Plain(Path(row.portable).GetCFMPathString()), row.form);
    }
}

TEST(GPathNameConversions, ReadsCFMPaths) {
    const struct {
        std::u16string_view cfm, portable;
    } rows[] = {
        {u"Data:dir:file", u"/Volumes/Data/dir/file"},
        {u"Data:", u"/Volumes/Data"},
        {u"Data:dir:", u"/Volumes/Data/dir"},
        {u"C:dir:file", u"C:/dir/file"},
        {u"C:", u"C:/"},
        {u":a:b", u"a/b"},
        {u":", u""},
        {u"::", u".."},
        {u"::x", u"../x"},
        {u":::", u"../.."},
        {u":a::b", u"a/../b"},
        {u":a::", u"a/.."},
        {u"file", u"file"},
        {u"a/b", u"a:b"},
        {u":d:a/b", u"d/a:b"},
        {u"/dir/x", u"/dir/x"},
        {u"", u""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.cfm));
        GPathName path;
        path.SetCFMPathString(Text(row.cfm));
        EXPECT_EQ(Plain(path), row.portable);
    }
    GPathName deep;
    deep.SetCFMPathString(Text(Repeated(u':', 5000)));
    EXPECT_EQ(deep.GetNumberOfComponents(), 4999);
}

TEST(GPathNameConversions, SetsARootAlone) {
    GPathName path = Path(u"D:/elsewhere");
    path.SetRootName(Text(u"\\\\srv"));
    EXPECT_EQ(Plain(path), u"//srv");
    path.SetRootPath(Text(u"C:\\"));
    EXPECT_EQ(Plain(path), u"C:/");
    path.SetCrossPlatformRootNameString(Text(u"Data:"));
    EXPECT_EQ(Plain(path), u"Data:");
    path.SetCrossPlatformRootPathString(Text(u"//srv/"));
    EXPECT_EQ(Plain(path), u"//srv/");
}

TEST(GPathNameConversions, PassesUNIXPathsUnchanged) {
    GString out;
    Path(u"").ConvertPortableToUNIX(Text(u"/a/C:\\b"), out);
    EXPECT_EQ(Plain(out), u"/a/C:\\b");
    Path(u"").ConvertUNIXToPortable(Text(u"/a\\b"), out);
    EXPECT_EQ(Plain(out), u"/a\\b");
}

TEST(GPathNameConversions, ConvertsATextIntoItself) {
    GString text = Text(u"C:\\dir\\x");
    const GPathName any;
    any.ConvertWin32ToPortable(text, text);
    EXPECT_EQ(Plain(text), u"C:/dir/x");
    any.ConvertPortableToMachO(text, text);
    EXPECT_EQ(Plain(text), u"/Volumes/C/dir/x");
    any.ConvertMachOToPortable(text, text);
    any.ConvertPortableToCFM(text, text);
    EXPECT_EQ(Plain(text), u"C:dir:x");
    any.ConvertCFMToPortable(text, text);
    any.ConvertPortableToWin32(text, text);
    EXPECT_EQ(Plain(text), u"C:\\dir\\x");
}
