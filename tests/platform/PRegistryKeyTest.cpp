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
        RunEditor(L"/E", mFolder.Standard("out.reg"));
        const std::string utf16 = mFolder.Take("out.reg");
        std::string text = TextOf(FromWide(reinterpret_cast<const wchar_t*>(utf16.data()) + 1,
                                           static_cast<long>(utf16.size() / 2 - 1)));
        for (std::size_t at; (at = text.find("\\\r\n  ")) != std::string::npos;) text.erase(at, 5);
        return text;
    }
    void Import(const std::string& values) const {
        const std::string text =
            "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\Software\\QuillonTest]\r\n" +
            values;
        const GString wide = GString::FromUTF8(text.c_str());
        std::string bytes = "\xFF\xFE"s + std::string(reinterpret_cast<const char*>(::AsWide(wide)),
                                                      static_cast<std::size_t>(2 * wide.GetLength()));
        RunEditor(L"/S", mFolder.Put("in.reg", bytes));
    }
    static void RunEditor(const std::wstring& option, const std::filesystem::path& file) {
        std::wstring line = L"regedit " + option + L" \"" + file.wstring() + L"\"";
        if (option == L"/E") line += L" HKEY_CURRENT_USER\\Software\\QuillonTest";
        EXPECT_EQ(::_wsystem(line.c_str()), 0);
    }
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

TEST_F(PRegistryKeyTest, WritesWhatTheSystemsEditorReads) {
    const std::string large(0x10000, '\xA5');
    EXPECT_TRUE(mKey.SetInt32("number", -2));
    EXPECT_TRUE(mKey.SetString("text", GString::FromUTF8("a\\ \xC3\xA9\xE4\xB8\x80"), 1));
    EXPECT_TRUE(mKey.SetString("expandable", "%windir%", 2));
    EXPECT_TRUE(mKey.SetString("empty", "", 1));
    EXPECT_TRUE(mKey.SetBuffer("bytes", BufferOf("a\0b"s), 3));
    EXPECT_TRUE(mKey.SetBuffer("no bytes", GBuffer(), 3));
    EXPECT_TRUE(mKey.SetBuffer("large", BufferOf(large), 3));
    EXPECT_TRUE(mKey.SetBuffer("wide", BufferOf("a\0b\0\0\0c\0\0\0\0\0"s), 7));
    EXPECT_TRUE(mKey.SetBuffer("narrow", BufferOf("ab\0c\0\0"s), 7));
    EXPECT_TRUE(mKey.SetString("", "default", 1));
    const std::string text = Export();
    for (const std::string& line :
         {"\"number\"=dword:fffffffe"s, "\"text\"=\"a\\\\ \xC3\xA9\xE4\xB8\x80\""s,
          "\"expandable\"=hex(2):25,00,77,00,69,00,6e,00,64,00,69,00,72,00,25,00,00,00"s, "\"empty\"=\"\""s,
          "\"bytes\"=hex:61,00,62"s, "\"no bytes\"=hex:"s, "\"large\"=hex:"s + Hex(large),
          "\"wide\"=hex(7):61,00,62,00,00,00,63,00,00,00,00,00"s,
          "\"narrow\"=hex(7):61,00,62,00,00,00,63,00,00,00,00,00"s, "@=\"default\""s})
        EXPECT_NE(text.find("\n" + line + "\r\n"), std::string::npos) << line.substr(0, 100);
}

TEST_F(PRegistryKeyTest, ReadsWhatTheSystemsEditorWrites) {
    const std::string large(0x10000, '\x5A');
    Import(
        "\"number\"=dword:80000001\r\n\"text\"=\"\xC3\xA9\xE4\xB8\x80\"\r\n"
        "\"expandable\"=hex(2):25,00,61,00,25,00,00,00\r\n\"bytes\"=hex:00,ff,00\r\n"
        "\"wide\"=hex(7):61,00,62,00,00,00,63,00,00,00,00,00\r\n\"narrow\"=hex(7):61,62,00,63,00,00\r\n"
        "\"none\"=hex(7):00,00\r\n\"eight\"=hex(b):01,02,03,04,05,06,07,08\r\n\"large\"=hex:" +
        Hex(large) + "\r\n");
    const auto query = [&](const char* name) { return std::unique_ptr<PRegistryData>(mKey.Query(name)); };
    long number = 0;
    EXPECT_TRUE(mKey.QueryInt32("number", number));
    EXPECT_EQ(number, -2147483647);
    EXPECT_EQ(query("number")->GetInt32(), number);
    EXPECT_EQ(TextOf(query("text")->GetString()), "\xC3\xA9\xE4\xB8\x80");
    EXPECT_EQ(TextOf(query("expandable")->GetString()), "%a%");
    EXPECT_EQ(query("expandable")->GetType(), 2u);
    EXPECT_EQ(BytesOf(query("bytes")->GetBuffer()), "\0\xFF\0"s);
    EXPECT_EQ(BytesOf(query("large")->GetBuffer()), large);
    EXPECT_EQ(BytesOf(query("eight")->GetBuffer()), "\1\2\3\4\5\6\7\10");
    for (const char* const name : {"wide", "narrow"})
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
