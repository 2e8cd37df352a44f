#include "tools/console/Console.h"

#include "tests/WindowsTesting.h"
#include "tools/machine/Failure.h"

namespace {

using FileHandle = PWin32ScopedHandle<PWin32FileHandle>;

/// What `write` tells while the process's standard output goes to a file.
bool WriteTo(const std::wstring& path, DWORD access, const std::function<bool()>& write) {
    constexpr DWORD cShare = FILE_SHARE_READ | FILE_SHARE_WRITE;
    const FileHandle file(::CreateFileW(path.c_str(), access, cShare, nullptr, OPEN_ALWAYS, 0, nullptr));
    const HANDLE before = ::GetStdHandle(STD_OUTPUT_HANDLE);
    ::SetStdHandle(STD_OUTPUT_HANDLE, file.Get());
    const bool isDone = write();
    ::SetStdHandle(STD_OUTPUT_HANDLE, before);
    return isDone;
}

TEST(Console, WritesUTF8WithBareLineFeedsToAFileAndTellsWhenItCannot) {
    const TestFolder folder;
    const std::wstring path = folder.Standard("out");
    const std::wstring beyondABlock(3'000'001, L'x');
    EXPECT_TRUE(WriteTo(path, GENERIC_WRITE, [&] {
        return Console::Write(L"K\u00F6ln \u20AC \U0001F600\n") && Console::Write(L"") &&
               Console::Write(beyondABlock);
    }));
    EXPECT_FALSE(WriteTo(path, GENERIC_READ, [] { return Console::Write(L"x"); }));
    EXPECT_EQ(folder.Take("out"), "K\u00F6ln \u20AC \U0001F600\n" + std::string(3'000'001, 'x'));
}

TEST(ToUTF8, ReplacesUnpairedSurrogates) {
    EXPECT_EQ(ToUTF8(L""), "");
    EXPECT_EQ(ToUTF8(std::wstring{L'\0', L'a', L'\u00E4', L'\u20AC'}), std::string("\0a\u00E4\u20AC", 7));
    EXPECT_EQ(ToUTF8(L"\U00010000"), "\U00010000");
    EXPECT_EQ(ToUTF8(std::wstring{wchar_t(0xD83D), L'x', wchar_t(0xDE00)}), "\uFFFDx\uFFFD");
}

TEST(Failure, NamesActionReasonNumberAndWhatCanBeDone) {
    const std::string text = ToUTF8(SystemFailure(L"Opening it", ERROR_FILE_NOT_FOUND).GetText());
    EXPECT_THAT(text, testing::StartsWith("Opening it failed: "));
    EXPECT_THAT(text, testing::EndsWith("(error 2)"));
    EXPECT_THAT(ToUTF8(DescribeSystemError(ERROR_ACCESS_DENIED)),
                testing::EndsWith("(error 5)\nRun this from an administrator's command prompt."));
    EXPECT_THAT(ToUTF8(DescribeSystemError(RPC_S_SERVER_UNAVAILABLE)),
                testing::HasSubstr("net start spooler"));
    EXPECT_EQ(ToUTF8(DescribeSystemError(0x2FFFFFFF)), "(error 805306367)") << "one without a text";
}

}  // namespace
