// The registry, and beside it what the system's own editor reads and writes there.
#include "framework/system/PRegistryKey.h"

#include <map>
#include <regex>

#include "tests/WindowsTesting.h"

namespace {

constexpr unsigned long cAll = KEY_ALL_ACCESS;
constexpr const char* cPath = "Software\\QuillonTest";
const std::wstring cKeyName = L"HKEY_CURRENT_USER\\Software\\QuillonTest";

/// A key of its own for each test.
struct PRegistryKeyTest : testing::Test {
    PRegistryKeyTest() : mKey(HKEY_CURRENT_USER, cPath, cAll) { mKey.Create("", 0, nullptr); }
    ~PRegistryKeyTest() override { ::RegDeleteTreeW(HKEY_CURRENT_USER, ::AsWide(GString(cPath))); }

    void MakeBelow(const GString& name) { PRegistryKey(mKey, name, cAll).Create("", 0, nullptr); }
    /// The key as the system's editor writes it, without its line breaks in long values, in UTF-8.
    std::string Export() const {
        Run(L"regedit /E \"" + mFolder.Standard("out.reg").wstring() + L"\" " + cKeyName);
        const std::string utf16 = mFolder.Take("out.reg");
        const GString text = FromWide(reinterpret_cast<const wchar_t*>(utf16.data()) + 1,
                                      static_cast<long>(utf16.size() / 2 - 1));
        return std::regex_replace(TextOf(text), std::regex("\\\\\r\n  "), "");
    }
    /// The key as the system's console program shows it, in the console's code page.
    std::string Show() const {
        Run(L"reg query " + cKeyName + L" > \"" + mFolder.Standard("out.txt").wstring() + L"\"");
        return mFolder.Take("out.txt");
    }
    /// By the editor, from a file in UTF-16 or, as of old, in 8 bits.
    void Import(const std::string& values, bool wide = true) const {
        std::string text = std::string(wide ? "Windows Registry Editor Version 5.00" : "REGEDIT4") +
                           "\r\n\r\n[HKEY_CURRENT_USER\\Software\\QuillonTest]\r\n" + values;
        if (wide)
            text = "\xFF\xFE" +
                   BytesOf(GString::FromUTF8(text.c_str()).GetBuffer(GUnicodeEncoding::GetInstance()));
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

    const TestFolder mFolder;
    PRegistryKey mKey;
};

const std::string cLarge(0x10000, 'x');

std::string Hex(const std::string& bytes, const char* separator = ",") {
    constexpr const char* cDigits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : bytes) {
        if (!text.empty()) text += separator;
        text += {cDigits[byte >> 4], cDigits[byte & 15]};
    }
    return text;
}

std::string WideHex(const std::string& text) {
    std::string units;
    for (const char byte : text) units += {byte, '\0'};
    return Hex(units);
}

const std::string cTable = cLarge + "\0b\0\0"s;

// A value's name, type and content, and how the editor and the console program show it behind its name.
const std::tuple<const char*, unsigned long, std::string, std::string, std::string> cWritten[] = {
    {"number", 4, "", "dword:fffffffe", "REG_DWORD    0xfffffffe"},
    {"text", 1, "a\\ \xC3\xA9\xE4\xB8\x80", "\"a\\\\ \xC3\xA9\xE4\xB8\x80\"", "REG_SZ    a\\ \x82?"},
    {"expandable", 2, "%windir%", "hex(2):" + WideHex("%windir%\0"s), "REG_EXPAND_SZ    %windir%"},
    {"empty", 1, "", "\"\"", "REG_SZ    "},
    {"large text", 1, cLarge, "\"" + cLarge + "\"", "REG_SZ    " + cLarge},
    {"", 1, "default", "\"default\"", "REG_SZ    default"},
    {"none", 0, "\1\2", "hex(0):01,02", "REG_NONE    0102"},
    {"bytes", 3, "a\0b"s, "hex:61,00,62", "REG_BINARY    610062"},
    {"no bytes", 3, "", "hex:", "REG_BINARY    "},
    {"large", 3, cLarge, "hex:" + Hex(cLarge), "REG_BINARY    " + Hex(cLarge, "")},
    {"big", 5, "\0\0\1\2"s, "hex(5):00,00,01,02", "REG_DWORD_BIG_ENDIAN    0x2010000"},
    {"no strings", 7, "", "hex(7):", "REG_MULTI_SZ    "},
    {"narrow", 7, "ab\0c\0\0"s, "hex(7):" + WideHex("ab\0c\0\0"s), "REG_MULTI_SZ    ab\\0c"},
    {"large table", 7, cTable, "hex(7):" + WideHex(cTable), "REG_MULTI_SZ    " + cLarge + "\\0b"},
    {"wide", 7, "a\0b\0\0\0c\0\0\0\0\0"s, "hex(7):" + WideHex("ab\0c\0\0"s), "REG_MULTI_SZ    ab\\0c"},
    {"eight", 11, "\1\2\3\4\5\6\7\10", "hex(b):01,02,03,04,05,06,07,08", "REG_QWORD    "},
    {"odd type", 77, "\1", "hex(4d):01", ""}};

TEST_F(PRegistryKeyTest, WritesWhatTheSystemsProgramsRead) {
    for (const auto& [name, type, content, exported, queried] : cWritten) {
        const GString text = GString::FromUTF8(content.c_str());
        EXPECT_TRUE(type == 4                ? mKey.SetInt32(name, -2)
                    : type <= 2 && type >= 1 ? mKey.SetString(name, text, type)
                                             : mKey.SetBuffer(name, BufferOf(content), type))
            << name;
    }
    const std::string allExported = Export();
    const std::string allQueried = Show();
    const auto holds = [](const std::string& text, const std::string& line) {
        return text.find(std::string("\n").append(line)) != text.npos;
    };
    for (const auto& [name, type, content, exported, queried] : cWritten) {
        const bool isDefault = *name == '\0';
        const std::string quoted = isDefault ? "@" : std::string("\"").append(name).append("\"");
        EXPECT_TRUE(holds(allExported, quoted + "=" + exported + "\r\n")) << name;
        const std::string shown = isDefault ? "(Default)" : name;
        EXPECT_TRUE(holds(allQueried, "    " + shown + "    " + queried)) << name;
    }
}

// Of a type, by either program: texts, and bytes for any other.
const std::tuple<std::vector<const char*>, unsigned long, std::string> cRead[] = {
    {{"text", "t1"}, 1, "\xC3\xA9\xE4\xB8\x80"},
    {{"empty", "e1"}, 1, ""},
    {{"expandable"}, 2, "%a%"},
    {{"x1"}, 2, "x"},
    {{"large text"}, 1, cLarge},
    {{""}, 1, "default"},
    {{"bytes", "b1"}, 3, "\0\xFF\0"s},
    {{"no bytes", "e3"}, 3, ""},
    {{"large"}, 3, cLarge},
    {{"eight"}, 11, "\1\2\3\4\5\6\7\10"},
    {{"q1"}, 11, "\2\1\0\0\0\0\0\0"s},
    {{"o1"}, 0, "x\0\0\0"s}};

TEST_F(PRegistryKeyTest, ReadsWhatTheSystemsProgramsWrite) {
    Import(
        "\"number\"=dword:80000001\r\n\"text\"=\"\xC3\xA9\xE4\xB8\x80\"\r\n\"empty\"=\"\"\r\n"
        "\"expandable\"=hex(2):25,00,61,00,25,00,00,00\r\n\"bytes\"=hex:00,ff,00\r\n\"no bytes\"=hex:\r\n"
        "\"wide\"=hex(7):61,00,62,00,00,00,63,00,00,00,00,00\r\n\"narrow\"=hex(7):61,62,00,63,00,00\r\n"
        "\"none\"=hex(7):00,00\r\n\"eight\"=hex(b):01,02,03,04,05,06,07,08\r\n\"large text\"=\"" +
        cLarge + "\"\r\n");
    Import("\"old\"=hex(7):61,62,00,63,00,00\r\n\"large\"=hex:" + Hex(cLarge) + "\r\n", false);
    Add({L"/v n1 /t REG_DWORD /d 0x80000001", L"/v t1 /d \u00E9\u4E00", L"/v e1",
         L"/v x1 /t REG_EXPAND_SZ /d x", L"/v b1 /t REG_BINARY /d 00ff00", L"/v e3 /t REG_BINARY",
         L"/v m1 /t REG_MULTI_SZ /d ab\\0c", L"/v q1 /t REG_QWORD /d 258", L"/v o1 /t REG_NONE /d x",
         L"/ve /d default"});
    const auto query = [&](const char* name) { return std::unique_ptr<PRegistryData>(mKey.Query(name)); };
    long number = 0;
    EXPECT_TRUE(mKey.QueryInt32("number", number));
    EXPECT_EQ(number, -2147483647);
    for (const char* const name : {"number", "n1"}) EXPECT_EQ(query(name)->GetInt32(), number);
    for (const auto& [names, type, content] : cRead) {
        for (const char* const name : names) {
            const auto data = query(name);
            const bool isText = type == 1 || type == 2;
            EXPECT_EQ(isText ? TextOf(data->GetString()) : BytesOf(data->GetBuffer()), content) << name;
            EXPECT_EQ(data->GetType(), type) << name;
        }
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
    EXPECT_FALSE(mKey.QueryBuffer(Text(u"text\0"sv), bytes, size, type)) << "not the value before the zero";
    for (const std::string& stored : {"abc\0"s, "abc"s}) {
        mKey.SetBuffer("text", BufferOf(stored), 1);
        EXPECT_TRUE(mKey.QueryString("text", text, 10, type) && text == GString("abc"));
    }
}

TEST_F(PRegistryKeyTest, OpensWhatIsThereAndMakesWhatIsNot) {
    PRegistryKey key(mKey, "a\\b", cAll);
    EXPECT_TRUE(!key.Exists() && key.GetStatus() == ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(key.Create("class", 0, nullptr));
    EXPECT_TRUE(key.Exists() && key.GetStatus() == 0);
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
    MakeBelow(name);
    EXPECT_TRUE(PRegistryKey(mKey, name, KEY_READ).Exists());
    for (const char* const lossy : {"??", "@@"}) EXPECT_FALSE(PRegistryKey(mKey, lossy, KEY_READ).Exists());
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
    EXPECT_FALSE(closed.BeginEnumerateRegistryKey(cAll) || closed.NextRegistryKey(closed));
    EXPECT_FALSE(closed.BeginEnumerateValue() || closed.NextValue(name) || closed.Query("n"));
    EXPECT_FALSE(PRegistryKey(closed, "x", cAll).Exists());
    PRegistryKey reader(HKEY_CURRENT_USER, cPath, KEY_READ);
    EXPECT_FALSE(reader.SetInt32("n", 1));
    PRegistryKey writer(HKEY_CURRENT_USER, cPath, KEY_WRITE);
    EXPECT_TRUE(writer.SetInt32("n", 1));
    EXPECT_FALSE(writer.QueryInt32("n", number) || writer.BeginEnumerateValue());
}

TEST_F(PRegistryKeyTest, WalksOverTheKeysThatWereThereAndStayed) {
    const std::string longest(255, 'k');
    for (const char* const name : {"a", "b", "c", "d", longest.c_str()}) MakeBelow(name);
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
        if (names == "\\a") MakeBelow("aa");
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
    EXPECT_EQ(found, (decltype(found){{"number", 4}, {"odd type", 77}, {longest, 3}, {"", 2}}));
    mKey.BeginEnumerateValue();
    mKey.EndEnumerateValue();
    EXPECT_EQ(mKey.NextValue(name), nullptr);
}

}  // namespace
