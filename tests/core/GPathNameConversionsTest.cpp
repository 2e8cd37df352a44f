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

/// A path in a foreign form, what it is read as, and what that is written as.
struct FormRow {
    std::u16string_view form, portable, back;
};

struct Form {
    void (GPathName::*set)(const GString&);
    GString (GPathName::*get)() const;
    void (*read)(const GString&, GString&);
    void (*write)(const GString&, GString&);
};

void ExpectForms(const Form& form, std::initializer_list<FormRow> rows) {
    for (const FormRow& row : rows) {
        SCOPED_TRACE(Readable(row.form));
        GPathName path = Path(u"before");
        (path.*form.set)(Text(row.form));
        EXPECT_EQ(Plain(path), row.portable);
        EXPECT_EQ(Plain((path.*form.get)()), row.back);
        GString text = Text(row.form);
        form.read(text, text);
        EXPECT_EQ(Plain(text), row.portable);
        form.write(text, text);
        EXPECT_EQ(Plain(text), row.back);
    }
}

}  // namespace

TEST(GPathNameConversions, ReadsAndWritesWin32Paths) {
    const Form form = {&GPathName::SetWin32PathString, &GPathName::GetWin32PathString,
                       GPathName::ConvertNativeToPortable, GPathName::ConvertPortableToNative};
    ExpectForms(form, {
                          {u"C:\\dir\\file.txt", u"C:/dir/file.txt", u"C:\\dir\\file.txt"},
                          {u"\\\\?\\C:\\x", u"C:/x", u"C:\\x"},
                          {u"\\\\?\\UNC\\srv\\s\\x", u"/srv/s/x", u"\\srv\\s\\x"},
                          {u"\\\\?\\unc\\srv", u"unc/srv", u"unc\\srv"},
                          {u"\\\\?\\UNC", u"UNC", u"UNC"},
                          {u"\\\\?\\", u"", u"."},
                          {u"\\\\?", u"//?", u"\\\\?"},
                          {u"\\\\.\\pipe\\x", u"//./pipe/x", u"\\\\.\\pipe\\x"},
                          {u"\\\\srv\\share", u"//srv/share", u"\\\\srv\\share"},
                          {u"C:/already", u"C:/already", u"C:\\already"},
                          {u"C:x", u"C:x", u"C:x"},
                          {u"", u"", u"."},
                          {u".", u".", u"."},
                      });
}

TEST(GPathNameConversions, HoldsTheNativeFormToBeWin32) {
    GPathName path = GPathName::FromNative(Text(u"C:\\a"));
    EXPECT_EQ(Plain(path), u"C:/a");
    path.SetNativePathString(Text(u"\\\\srv\\b"));
    EXPECT_EQ(Plain(path), u"//srv/b");
    EXPECT_EQ(Plain(path.GetNativePathString()), u"\\\\srv\\b");
    path.SetLegacyPlatformString(Text(u"c\\d"));
    EXPECT_EQ(Plain(path), u"c/d");
    EXPECT_EQ(Plain(path.GetLegacyPlatformString()), u"c\\d");
    path.SetRootName(Text(u"\\\\srv"));
    EXPECT_EQ(Plain(path), u"//srv");
    path.SetRootPath(Text(u"C:\\"));
    EXPECT_EQ(Plain(path), u"C:/");
    path.SetCrossPlatformRootNameString(Text(u"Data:"));
    EXPECT_EQ(Plain(path), u"Data:");
    path.SetCrossPlatformRootPathString(Text(u"//srv/"));
    EXPECT_EQ(Plain(path), u"//srv/");
}

TEST(GPathNameConversions, GivesTheSystemLongPathsLiterally) {
    const struct {
        const char* what;
        std::u16string portable, api;
    } rows[] = {
        {"none", u"", u"."},
        {"a short one", u"C:/x/y", u"C:\\x\\y"},
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
    const Form form = {&GPathName::SetUNCPathString, &GPathName::GetUNCPathString,
                       GPathName::ConvertUNCSpecToPortable, GPathName::ConvertPortableToUNCSpec};
    ExpectForms(form, {
                          {u"\\\\srv\\share\\x", u"//srv/share/x", u"\\\\srv\\share\\x"},
                          {u"\\\\srv", u"//srv", u"\\\\srv"},
                          {u"\\\\?\\UNC\\srv\\s", u"//srv/s", u"\\\\srv\\s"},
                          {u"\\\\?\\UNC\\", u"//", u"\\\\"},
                          {u"\\\\?\\C:\\x", u"C:/x", u"C:\\x"},
                          {u"", u"", u"."},
                      });
}

TEST(GPathNameConversions, ReadsAndWritesDeviceIndependentPaths) {
    const Form form = {&GPathName::SetDIPathString, &GPathName::GetDIPathString,
                       GPathName::ConvertDISpecToPortable, GPathName::ConvertPortableToDISpec};
    ExpectForms(form, {
                          {u"/C/Program Files/x", u"C:/Program Files/x", u"/C/Program Files/x"},
                          {u"/C", u"C:", u"/C"},
                          {u"/C/", u"C:/", u"/C/"},
                          {u"/srv/share/x", u"//srv/share/x", u"/srv/share/x"},
                          {u"//x", u"/x", u"//x"},
                          {u"//", u"/:", u"//"},
                          {u"///x", u"/:/x", u"///x"},
                          {u"/", u"//", u"/"},
                          {u"./", u"", u"./"},
                          {u"../", u"..", u"../"},
                          {u"a/b", u"a/b", u"a/b"},
                          {u"../a", u"../a", u"../a"},
                          {u"./a", u"./a", u"./a"},
                          {u"Data:", u"Data:", u"Data:"},
                          {u"", u"", u"./"},
                      });
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
    const struct {
        std::u16string_view portable, url;
    } rows[] = {
        {u"C:/dir/a b.txt", u"file:///C:/dir/a%20b.txt"},
        {u"//server/share/x", u"file://server/share/x"},
        {u"//a@b:80/c@d:e", u"file://a%40b%3A80/c@d:e"},
        {u"//srv:x", u"file://srv%3Ax"},
        {u"/dir/x", u"file:///dir/x"},
        {u"dir/x", u"file:///dir/x"},
        {u"", u"file:///"},
        {u"C:/100%#?.txt", u"file:///C:/100%25%23%3F.txt"},
        {u"/a%2Fb%00%", u"file:///a%252Fb%2500%25"},
        {u"/-._~!$&'()*+,;=:@azAZ09", u"file:///-._~!$&'()*+,;=:@azAZ09"},
        {u"/[\"<>\\^`{|}]", u"file:///%5B%22%3C%3E%5C%5E%60%7B%7C%7D%5D"},
        {u"/\x01\x7F", u"file:///%01%7F"},
        {u"/\u0080\u07FF", u"file:///%C2%80%DF%BF"},
        {u"/\u0800\uFFFF", u"file:///%E0%A0%80%EF%BF%BF"},
        {u"/\U00010000\U0010FFFF", u"file:///%F0%90%80%80%F4%8F%BF%BF"},
        {u"/\xD800x\xDC00\xD801", u"file:///%EF%BF%BDx%EF%BF%BD%EF%BF%BD"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.portable));
        EXPECT_EQ(Plain(Path(row.portable).GetURLPathString()), row.url);
    }
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
        {u"/Volumes//x", u"/Volumes//x", u"/Volumes//x"},
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

TEST(GPathNameConversions, WritesAndReadsCFMPaths) {
    const struct {
        std::u16string_view portable, cfm, back;
    } rows[] = {
        {u"/Volumes/Data/dir/file", u"Data:dir:file", u"/Volumes/Data/dir/file"},
        {u"/Volumes/Data/dir/", u"Data:dir:", u"/Volumes/Data/dir"},
        {u"/Volumes/Data/../x", u"Data::x", u"/Volumes/Data/../x"},
        {u"/Volumes/Data", u"Data:", u"/Volumes/Data"},
        {u"Data:", u"Data:", u"/Volumes/Data"},
        {u"C:/dir/file", u"C:dir:file", u"C:/dir/file"},
        {u"C:/", u"C:", u"C:/"},
        {u"a/b", u":a:b", u"a/b"},
        {u"file", u"file", u"file"},
        {u"dir/", u":dir:", u"dir"},
        {u"../../x", u":::x", u"../../x"},
        {u"a/../b", u":a::b", u"a/../b"},
        {u"..", u"::", u".."},
        {u"a/..", u":a::", u"a/.."},
        {u".", u":", u""},
        {u"./a/./b", u":a:b", u"a/b"},
        {u"d/a:b", u":d:a/b", u"d/a:b"},
        {u"/dir/x", u"/dir/x", u"/dir/x"},
        {u"//srv/x", u"//srv/x", u"//srv/x"},
        {u"", u"", u""},
    };
    GPathName path;
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.portable));
        EXPECT_EQ(Plain(Path(row.portable).GetCFMPathString()), row.cfm);
        path.SetCFMPathString(Text(row.cfm));
        EXPECT_EQ(Plain(path), row.back);
    }
    path.SetCFMPathString(Text(u"ab/c"));
    EXPECT_EQ(Plain(path), u"ab:c");
    path.SetCFMPathString(Text(Repeated(u':', 5000)));
    EXPECT_EQ(path.GetNumberOfComponents(), 4999);
}

TEST(GPathNameConversions, ConvertsATextIntoItself) {
    const GPathName any;
    GString text = Text(u"C:/dir\\x");
    any.ConvertPortableToUNIX(text, text);
    any.ConvertUNIXToPortable(text, text);
    EXPECT_EQ(Plain(text), u"C:/dir\\x");
    any.ConvertWin32ToPortable(text, text);
    any.ConvertPortableToMachO(text, text);
    EXPECT_EQ(Plain(text), u"/Volumes/C/dir/x");
    any.ConvertMachOToPortable(text, text);
    any.ConvertPortableToCFM(text, text);
    EXPECT_EQ(Plain(text), u"C:dir:x");
    any.ConvertCFMToPortable(text, text);
    any.ConvertPortableToWin32(text, text);
    EXPECT_EQ(Plain(text), u"C:\\dir\\x");
}
