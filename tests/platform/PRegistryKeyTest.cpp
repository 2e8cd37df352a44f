// The registry, and beside it what the system's own editor reads and writes there.
#include "framework/system/PRegistryKey.h"

#include <map>

#include "platform/win32/core/PWin32Wide.h"
#include "tests/core/TextForTests.h"
#include "tests/files/TestFolder.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

constexpr unsigned long cAll = KEY_ALL_ACCESS;
constexpr const char* cPath = "Software\\QuillonTest";
const std::wstring cKeyName = L"HKEY_CURRENT_USER\\Software\\QuillonTest";

/// A key of its own for each test.
struct PRegistryKeyTest : testing::Test {
    PRegistryKeyTest() : mKey(HKEY_CURRENT_USER, cPath, cAll) { mKey.Create("", 0, nullptr); }
    ~PRegistryKeyTest() override { ::RegDeleteTreeW(HKEY_CURRENT_USER, ::AsWide(GString(cPath))); }

    PRegistryKey Sub(const GString& name) {
        PRegistryKey key(mKey, name, cAll);
        key.Create("", 0, nullptr);
        return key;
    }
    /// The key as the system's editor writes it, without its line breaks in long values, in UTF-8.
    std::string Export() const {
        Run(L"regedit /E \"" + mFolder.Standard("out.reg").wstring() + L"\" " + cKeyName);
        const std::string utf16 = mFolder.Take("out.reg");
        const std::string text = TextOf(FromWide(reinterpret_cast<const wchar_t*>(utf16.data()) + 1,
                                                 static_cast<long>(utf16.size() / 2 - 1)));
        const std::string lineBreak = "\\\r\n  ";
        std::string joined;
        for (std::size_t start = 0; start < text.size();) {
            const std::size_t end = std::min(text.find(lineBreak, start), text.size());
            joined.append(text, start, end - start);
            start = end + lineBreak.size();
        }
        return joined;
    }
    /// The key as the system's console program shows it, in the console's code page.
    std::string Show() const {
        Run(L"reg query " + cKeyName + L" > \"" + mFolder.Standard("out.txt").wstring() + L"\"");
        return mFolder.Take("out.txt");
    }
    /// By the editor, from a file in UTF-16 or, as of old, in 8 bits.
    void Import(const std::string& values, bool wide = true) const {
        const std::string head = wide ? "Windows Registry Editor Version 5.00" : "REGEDIT4";
        std::string text = head + "\r\n\r\n[HKEY_CURRENT_USER\\Software\\QuillonTest]\r\n" + values;
        if (wide) {
            const GString units = GString::FromUTF8(text.c_str());
            text = "\xFF\xFE"s + std::string(reinterpret_cast<const char*>(::AsWide(units)),
                                             static_cast<std::size_t>(2 * units.GetLength()));
        }
        Run(L"regedit /S \"" + mFolder.Put("in.reg", text).wstring() + L"\"");
    }
    /// By the console program, one value each.
    static void Add(std::initializer_list<const wchar_t*> values) {
        std::wstring line = L"cd .";
        for (const wchar_t* const value : values)
            line += L" && reg add " + cKeyName + L" " + value + L" /f > NUL";
        Run(line);
    }
    static void Run(const std::wstring& line) { EXPECT_EQ(::_wsystem(line.c_str()), 0); }
    static std::string Hex(const std::string& bytes) {
        static constexpr char cDigits[] = "0123456789abcdef";
        std::string text;
        for (const unsigned char byte : bytes) {
            if (!text.empty()) text += ',';
            text += {cDigits[byte >> 4], cDigits[byte & 15]};
        }
        return text;
    }

    const TestFolder mFolder;
    PRegistryKey mKey;
};

// A value as the editor writes it, and as the console program shows it.
struct Shown {
    std::string exported, queried;
};

TEST_F(PRegistryKeyTest, WritesWhatTheSystemsProgramsRead) {
    const std::string large(0x10000, 'x');
    EXPECT_TRUE(mKey.SetInt32("number", -2));
    EXPECT_TRUE(mKey.SetString("text", GString::FromUTF8("a\\ \xC3\xA9\xE4\xB8\x80"), 1));
    EXPECT_TRUE(mKey.SetString("expandable", "%windir%", 2));
    EXPECT_TRUE(mKey.SetString("empty", "", 1));
    EXPECT_TRUE(mKey.SetString("large text", large.c_str(), 1));
    EXPECT_TRUE(mKey.SetString("", "default", 1));
    const std::string strings = large + '\0' + "b" + '\0' + '\0';
    const std::tuple<const char*, std::string, unsigned long> bytes[] = {
        {"none", "\1\2", 0},
        {"bytes", "a\0b"s, 3},
        {"no bytes", "", 3},
        {"large", large, 3},
        {"big", "\0\0\1\2"s, 5},
        {"no strings", "", 7},
        {"narrow", "ab\0c\0\0"s, 7},
        {"large table", strings, 7},
        {"wide", "a\0b\0\0\0c\0\0\0\0\0"s, 7},
        {"eight", "\1\2\3\4\5\6\7\10", 11},
        {"odd type", "\1", 77}};
    for (const auto& [name, content, type] : bytes)
        EXPECT_TRUE(mKey.SetBuffer(name, BufferOf(content), type)) << name;
    const auto wide = [](const std::string& text) {
        std::string units;
        for (const char byte : text) units += {byte, '\0'};
        return Hex(units);
    };
    const auto hex = [](const std::string& text) {
        std::string digits;
        for (const char digit : Hex(text))
            if (digit != ',') digits += static_cast<char>(std::toupper(digit));
        return digits;
    };
    const Shown rows[] = {
        {"\"number\"=dword:fffffffe", "number    REG_DWORD    0xfffffffe"},
        {"\"text\"=\"a\\\\ \xC3\xA9\xE4\xB8\x80\"", "text    REG_SZ    a\\ \x82?"},
        {"\"expandable\"=hex(2):" + wide("%windir%\0"s), "expandable    REG_EXPAND_SZ    %windir%"},
        {"\"empty\"=\"\"", "empty    REG_SZ    "},
        {"\"large text\"=\"" + large + "\"", "large text    REG_SZ    " + large},
        {"@=\"default\"", "(Default)    REG_SZ    default"},
        {"\"none\"=hex(0):01,02", "none    REG_NONE    0102"},
        {"\"bytes\"=hex:61,00,62", "bytes    REG_BINARY    610062"},
        {"\"no bytes\"=hex:", "no bytes    REG_BINARY    "},
        {"\"large\"=hex:" + Hex(large), "large    REG_BINARY    " + hex(large)},
        {"\"big\"=hex(5):00,00,01,02", "big    REG_DWORD_BIG_ENDIAN    0x2010000"},
        {"\"no strings\"=hex(7):", "no strings    REG_MULTI_SZ    "},
        {"\"narrow\"=hex(7):" + wide("ab\0c\0\0"s), "narrow    REG_MULTI_SZ    ab\\0c"},
        {"\"large table\"=hex(7):" + wide(strings), "large table    REG_MULTI_SZ    " + large + "\\0b"},
        {"\"wide\"=hex(7):" + wide("ab\0c\0\0"s), "wide    REG_MULTI_SZ    ab\\0c"},
        {"\"eight\"=hex(b):01,02,03,04,05,06,07,08", "eight    REG_QWORD    "},
        {"\"odd type\"=hex(4d):01", ""},
    };
    const std::string exported = Export();
    const std::string queried = Show();
    for (const Shown& row : rows) {
        EXPECT_NE(exported.find("\n" + row.exported + "\r\n"), std::string::npos)
            << row.exported.substr(0, 100);
        EXPECT_NE(queried.find("\n    " + row.queried), std::string::npos) << row.queried.substr(0, 100);
    }
}

TEST_F(PRegistryKeyTest, ReadsWhatTheSystemsProgramsWrite) {
    const std::string large(0x10000, '\x5A');
    Import(
        "\"number\"=dword:80000001\r\n\"text\"=\"\xC3\xA9\xE4\xB8\x80\"\r\n\"empty\"=\"\"\r\n"
        "\"expandable\"=hex(2):25,00,61,00,25,00,00,00\r\n\"bytes\"=hex:00,ff,00\r\n\"no bytes\"=hex:\r\n"
        "\"wide\"=hex(7):61,00,62,00,00,00,63,00,00,00,00,00\r\n\"narrow\"=hex(7):61,62,00,63,00,00\r\n"
        "\"none\"=hex(7):00,00\r\n\"eight\"=hex(b):01,02,03,04,05,06,07,08\r\n\"large text\"=\"" +
        large + "\"\r\n");
    Import("\"old\"=hex(7):61,62,00,63,00,00\r\n\"large\"=hex:" + Hex(large) + "\r\n", false);
    Add({L"/v n1 /t REG_DWORD /d 0x80000001", L"/v t1 /d \u00E9\u4E00", L"/v e1",
         L"/v x1 /t REG_EXPAND_SZ /d x", L"/v b1 /t REG_BINARY /d 00ff00", L"/v e3 /t REG_BINARY",
         L"/v m1 /t REG_MULTI_SZ /d ab\\0c", L"/v q1 /t REG_QWORD /d 258", L"/v o1 /t REG_NONE /d x",
         L"/ve /d default"});
    const auto query = [&](const char* name) { return std::unique_ptr<PRegistryData>(mKey.Query(name)); };
    long number = 0;
    EXPECT_TRUE(mKey.QueryInt32("number", number));
    EXPECT_EQ(number, -2147483647);
    for (const char* const name : {"number", "n1"}) EXPECT_EQ(query(name)->GetInt32(), number);
    const std::tuple<const char*, unsigned long, std::string> texts[] = {{"text", 1, "\xC3\xA9\xE4\xB8\x80"},
                                                                         {"t1", 1, "\xC3\xA9\xE4\xB8\x80"},
                                                                         {"empty", 1, ""},
                                                                         {"e1", 1, ""},
                                                                         {"expandable", 2, "%a%"},
                                                                         {"x1", 2, "x"},
                                                                         {"large text", 1, large},
                                                                         {"", 1, "default"}};
    for (const auto& [name, type, text] : texts) {
        EXPECT_EQ(TextOf(query(name)->GetString()), text) << name;
        EXPECT_EQ(query(name)->GetType(), type) << name;
    }
    const std::tuple<const char*, unsigned long, std::string> bytes[] = {{"bytes", 3, "\0\xFF\0"s},
                                                                         {"b1", 3, "\0\xFF\0"s},
                                                                         {"no bytes", 3, ""},
                                                                         {"e3", 3, ""},
                                                                         {"large", 3, large},
                                                                         {"eight", 11, "\1\2\3\4\5\6\7\10"},
                                                                         {"q1", 11, "\2\1\0\0\0\0\0\0"s},
                                                                         {"o1", 0, "x\0\0\0"s}};
    for (const auto& [name, type, content] : bytes) {
        EXPECT_EQ(BytesOf(query(name)->GetBuffer()), content) << name;
        EXPECT_EQ(query(name)->GetType(), type) << name;
    }
    for (const char* const name : {"wide", "narrow", "old", "m1"})
        EXPECT_TRUE(query(name)->GetStringTable() == (GTable<GString>{"ab", "c"})) << name;
    EXPECT_TRUE(query("none")->GetStringTable().IsEmpty());
    EXPECT_EQ(query("missing"), nullptr);
}

TEST_F(PRegistryKeyTest, AQueryOfAnotherTypeOrOfTooMuchChangesNothing) {
    mKey.SetString("text", "abcd", 1);
    mKey.SetInt32("number", 5);
    mKey.SetBuffer("short", BufferOf("\1\2"), 4);
    long number = 7;
    for (const char* const name : {"text", "missing", "short"}) EXPECT_FALSE(mKey.QueryInt32(name, number));
    EXPECT_EQ(number, 7);
    GString text("before");
    unsigned long type = 9;
    for (const char* const name : {"number", "missing"})
        EXPECT_FALSE(mKey.QueryString(name, text, 1000, type)) << name;
    EXPECT_FALSE(mKey.QueryString("text", text, 4, type));
    EXPECT_EQ(TextOf(text) + std::to_string(type), "before9");
    EXPECT_TRUE(mKey.QueryString("text", text, 5, type));
    EXPECT_EQ(TextOf(text) + std::to_string(type), "abcd1");
    GBuffer bytes;
    unsigned long size = 0;
    EXPECT_TRUE(mKey.QueryBuffer("text", bytes, size, type));
    EXPECT_EQ(BytesOf(bytes) + std::to_string(size), "abcd\0"s + "5");
    GString withZero("textx");
    withZero.SetChar(4, 0);
    EXPECT_FALSE(mKey.QueryBuffer(withZero, bytes, size, type)) << "not the value before the zero";
    for (const std::string& stored : {"abc\0"s, "abc"s}) {
        mKey.SetBuffer("text", BufferOf(stored), 1);
        EXPECT_TRUE(mKey.QueryString("text", text, 10, type));
        EXPECT_EQ(TextOf(text), "abc");
    }
}

TEST_F(PRegistryKeyTest, OpensWhatIsThereAndMakesWhatIsNot) {
    PRegistryKey key(mKey, "a\\b", cAll);
    EXPECT_FALSE(key.Exists());
    EXPECT_EQ(key.GetStatus(), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(key.Create("class", 0, nullptr));
    EXPECT_TRUE(key.Exists());
    EXPECT_EQ(key.GetStatus(), 0);
    EXPECT_FALSE(key.Create("", 0, nullptr)) << "it is open";
    EXPECT_EQ(TextOf(key.GetPath()), "Software\\QuillonTest\\a\\b");
    EXPECT_TRUE(PRegistryKey(HKEY_CURRENT_USER, "Software\\QuillonTest\\a\\b", KEY_READ).Exists());
    PRegistryKey copy(key);
    key = PRegistryKey();
    EXPECT_FALSE(key.Exists());
    EXPECT_TRUE(copy.SetInt32("n", 3));
    key.Set(copy);
    long number = 0;
    EXPECT_TRUE(key.QueryInt32("n", number));
    // A character that no 8-bit code page of the West has.
    const GString name = GString::FromUTF8("\xE4\xB8\x80\xD0\x96");
    Sub(name);
    EXPECT_TRUE(PRegistryKey(mKey, name, KEY_READ).Exists());
    EXPECT_FALSE(PRegistryKey(mKey, "??", KEY_READ).Exists());
    EXPECT_FALSE(PRegistryKey(mKey, "@@", KEY_READ).Exists());
}

TEST_F(PRegistryKeyTest, NamesThatCouldBeComposedStayAsTheyAre) {
    const wchar_t* const below = L"Software\\QuillonTest\\Bu\u0308ro";
    ::RegSetKeyValueW(HKEY_CURRENT_USER, below, L"u\u0308", REG_SZ, L"x", 4);
    PRegistryKey key;
    mKey.BeginEnumerateRegistryKey(KEY_READ);
    ASSERT_TRUE(mKey.NextRegistryKey(key));
    EXPECT_EQ(AsStandard(key.GetPath()), below);
    GString name;
    key.BeginEnumerateValue();
    EXPECT_NE(std::unique_ptr<PRegistryData>(key.NextValue(name)), nullptr);
    EXPECT_NE(std::unique_ptr<PRegistryData>(key.Query(name)), nullptr);
}

TEST_F(PRegistryKeyTest, AClosedOneAndOneWithoutTheRightDoNothing) {
    PRegistryKey closed;
    GString name("name");
    GBuffer bytes;
    unsigned long any = 0;
    long number = 0;
    EXPECT_FALSE(closed.Exists() || closed.SetInt32("n", 1) || closed.SetString("n", "x", 1));
    EXPECT_FALSE(closed.SetBuffer("n", bytes, 3) || closed.QueryInt32("n", number));
    EXPECT_FALSE(closed.QueryString("n", name, 9, any) || closed.QueryBuffer("n", bytes, any, any));
    EXPECT_FALSE(closed.BeginEnumerateRegistryKey(cAll) || closed.BeginEnumerateValue());
    EXPECT_FALSE(closed.NextRegistryKey(closed));
    EXPECT_EQ(closed.Query("n"), nullptr);
    EXPECT_EQ(closed.NextValue(name), nullptr);
    EXPECT_FALSE(PRegistryKey(closed, "x", cAll).Exists());
    PRegistryKey reader(HKEY_CURRENT_USER, cPath, KEY_READ);
    EXPECT_FALSE(reader.SetInt32("n", 1));
    PRegistryKey writer(HKEY_CURRENT_USER, cPath, KEY_WRITE);
    EXPECT_TRUE(writer.SetInt32("n", 1));
    EXPECT_FALSE(writer.QueryInt32("n", number));
    EXPECT_FALSE(writer.BeginEnumerateValue());
}

TEST_F(PRegistryKeyTest, WalksOverTheKeysThatWereThereAndStayed) {
    const std::string longest(255, 'k');
    for (const char* const name : {"a", "b", "c", "d", longest.c_str()}) Sub(name);
    EXPECT_FALSE(mKey.NextRegistryKey(mKey)) << "none was begun";
    ASSERT_TRUE(mKey.BeginEnumerateRegistryKey(KEY_READ));
    std::string names;
    PRegistryKey key;
    while (mKey.NextRegistryKey(key)) {
        EXPECT_TRUE(key.Exists());
        names += TextOf(key.GetPath()).substr(std::strlen(cPath));
        // What was met goes at once, and "c" before its turn.
        ::RegDeleteKeyW(HKEY_CURRENT_USER, ::AsWide(key.GetPath()));
        if (names == "\\a") ::RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\QuillonTest\\c");
        if (names == "\\a") Sub("aa");
    }
    EXPECT_EQ(names, "\\a\\b\\d\\" + longest);
    EXPECT_FALSE(mKey.NextRegistryKey(key));
    ASSERT_TRUE(mKey.BeginEnumerateRegistryKey(KEY_READ));
    mKey.EndEnumerateRegistryKey();
    EXPECT_FALSE(mKey.NextRegistryKey(key));
}

TEST_F(PRegistryKeyTest, WalksOverValuesOfAllTypes) {
    const std::string longest(16383, 'v');
    mKey.SetInt32("number", 1);
    mKey.SetBuffer("odd type", BufferOf("x"), 77);
    mKey.SetBuffer(longest.c_str(), GBuffer(), 3);
    mKey.SetString("gone", "x", 1);
    mKey.SetString("", "default", 2);
    ASSERT_TRUE(mKey.BeginEnumerateValue());
    ::RegDeleteKeyValueW(HKEY_CURRENT_USER, ::AsWide(GString(cPath)), L"gone");
    std::map<std::string, std::uint32_t> found;
    GString name;
    while (const std::unique_ptr<PRegistryData> data{mKey.NextValue(name)})
        found[TextOf(name)] = data->GetType();
    const std::map<std::string, std::uint32_t> expected = {
        {"number", 4}, {"odd type", 77}, {longest, 3}, {"", 2}};
    EXPECT_EQ(found, expected);
    mKey.BeginEnumerateValue();
    mKey.EndEnumerateValue();
    EXPECT_EQ(mKey.NextValue(name), nullptr);
}

}  // namespace
