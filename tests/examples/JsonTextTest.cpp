#include "examples/PrinterProcessorWin/JsonText.h"

#include "examples/PrinterProcessorWin/Options.h"
#include "tests/Testing.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"

namespace {

TEST(QuoteAsJson, EscapesWhatJsonForbidsAndKeepsTheRest) {
    const std::tuple<const char*, std::wstring, const char*> rows[] = {
        {"empty", L"", "\"\""},
        {"plain", L"anna", "\"anna\""},
        {"a path", L"C:\\a b\\c.ps", R"("C:\\a b\\c.ps")"},
        {"quotes and a slash", L"\"x\"/", R"("\"x\"/")"},
        {"line ends and a tab", L"a\r\nb\tc", R"("a\r\nb\tc")"},
        {"a zero", std::wstring(1, L'\0'), R"("\u0000")"},
        {"the last control character", L"\x1F ", R"("\u001f ")"},
        {"delete", L"~\x7F\x80", "\"~\\u007f\xC2\x80\""},
        {"line separators", L"\x85\x2027\x2028\x2029\x202A",
         "\"\\u0085\xE2\x80\xA7\\u2028\\u2029\xE2\x80\xAA\""},
        {"other scripts", L"K\u00F6ln \u20AC", "\"K\xC3\xB6ln \xE2\x82\xAC\""},
        {"a surrogate pair", L"\U0001F600", "\"\xF0\x9F\x98\x80\""},
        {"a high surrogate at the end", std::wstring(1, wchar_t(0xD83D)), R"("\ud83d")"},
        {"two high surrogates and a low one",
         {wchar_t(0xD83D), wchar_t(0xD83D), wchar_t(0xDE00)},
         "\"\\ud83d\xF0\x9F\x98\x80\""},
        {"a pair the wrong way round", {wchar_t(0xDE00), wchar_t(0xD83D)}, R"("\ude00\ud83d")"},
        {"the edges of the surrogates", {wchar_t(0xD7FF), wchar_t(0xE000)}, "\"\xED\x9F\xBF\xEE\x80\x80\""},
    };
    for (const auto& [what, text, expected] : rows) EXPECT_EQ(ToUTF8(QuoteAsJson(text)), expected) << what;
}

TEST(Options, AreReadStrictly) {
    const std::tuple<std::vector<std::wstring>, const char*> rows[] = {
        {std::vector<std::wstring>(), ""},
        {{L"--once", L"--anywhere", L"--json"}, "json once anywhere "},
        {{L"--pending", L"--run", L"a \"b c\" -d", L"--jobs=32"}, "pending 32 x a \"b c\" -d"},
        {{L"--jobs", L"2"}, "--jobs requires --run"},
        {{L"--run=a", L"--jobs", L"0"}, "--jobs: Value 0 not in range 1 to 32"},
        {{L"--run=a", L"--jobs", L"33"}, "--jobs: Value 33 not in range 1 to 32"},
        {{L"--run", L""}, "--run needs a program."},
        {{L"--json", L"/?"}, "page "},
        {{L"--version"}, "page "},
        {{L"--json", L"--onse"}, "'--onse' is not an option of PrinterProcessorWin. Did you mean '--once'?"},
        {{L"--js"}, "'--js' is not an option of PrinterProcessorWin. Did you mean '--json'?"},
        {{L"more"}, "The following argument was not expected: more"},
    };
    for (const auto& [arguments, expected] : rows) {
        std::string read;
        try {
            const Options options = Options::Read(arguments);
            if (options.json) read += "json ";
            if (options.once) read += "once ";
            if (options.anywhere) read += "anywhere ";
            if (options.pending) read += "pending ";
            if (!options.run.empty()) read += std::to_string(options.jobs) + " x " + ToUTF8(options.run);
            if (!options.page.empty()) read = "page ";
        } catch (const UsageFailure& failure) {
            read = ToUTF8(failure.GetText());
            read = read.substr(0, read.find('\n'));
        }
        EXPECT_EQ(read, expected);
    }
}

}  // namespace
