#include "examples/PrinterProcessorWin/JsonText.h"

#include <gmock/gmock.h>

#include <tuple>

#include "examples/PrinterProcessorWin/Options.h"
#include "tools/console/Console.h"

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
    const std::tuple<const char*, std::vector<const wchar_t*>, const char*> rows[] = {
        {"no option", {L"p.exe"}, ""},
        {"json", {L"p.exe", L"--json"}, "json "},
        {"once", {L"p.exe", L"--once"}, "once "},
        {"all", {L"p.exe", L"--once", L"--anywhere", L"--json"}, "json once anywhere "},
        {"twice", {L"p.exe", L"--json", L"--json"}, "json "},
        {"help", {L"p.exe", L"--help"}, "refused"},
        {"unknown behind known", {L"p.exe", L"--json", L"--twice"}, "refused"},
        {"shortened", {L"p.exe", L"--js"}, "refused"},
        {"empty", {L"p.exe", L""}, "refused"},
        {"not even a program's name", {}, ""},
    };
    for (const auto& [what, arguments, expected] : rows) {
        const auto options = Options::Parse(static_cast<int>(arguments.size()), arguments.data());
        std::string read = options ? "" : "refused";
        if (options && options->json) read += "json ";
        if (options && options->once) read += "once ";
        if (options && options->anywhere) read += "anywhere ";
        EXPECT_EQ(read, expected) << what;
    }
}

}  // namespace
