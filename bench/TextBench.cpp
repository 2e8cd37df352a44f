// How fast text is converted, composed and compared, beside the International Components for Unicode
// and the C library.
#include <unicode/ucnv.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/Rounds.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/text/GStringSupport.h"

namespace {

constexpr int cRounds = 101;
constexpr int cRepeats = 20;
constexpr std::size_t cTextLength = 16384;

bool sFailed = false;

void Check(bool good, const char* what) {
    if (good) return;
    std::fprintf(stderr, "TextBench: %s gave another result\n", what);
    sFailed = true;
}

// A text of the words in an order that no branch predictor learns by heart.
std::string MakeText(const std::vector<const char*>& words) {
    std::mt19937 random(1);
    std::string text;
    while (text.size() < cTextLength) text += words[random() % words.size()];
    return text;
}

GBuffer BufferOf(const std::string& bytes) {
    return GBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<long>(bytes.size()));
}

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

void Repeatedly(Contender& contender, const std::function<void()>& once) {
    contender.run = [once] {
        for (int i = 0; i < cRepeats; ++i) once();
    };
}

// Measures and prints: our time, and how many times as long each peer takes.
void Compare(const std::string& what, std::vector<std::pair<std::string, std::function<void()>>> ways) {
    std::vector<Contender> contenders(ways.size());
    for (std::size_t i = 0; i < ways.size(); ++i) {
        contenders[i].name = ways[i].first;
        Repeatedly(contenders[i], ways[i].second);
    }
    const std::vector<double> times = Rounds(cRounds, cRepeats).Measure(contenders);
    std::printf("%-28s %9.3f us", what.c_str(), times[0]);
    for (std::size_t i = 1; i < ways.size(); ++i)
        std::printf("   %s %9.3f us (%.2f)", ways[i].first.c_str(), times[i], times[i] / times[0]);
    std::printf("\n");
}

void CompareComposition(const char* name, GBuffer& utf16) {
    const long units = utf16.GetLength() / 2;
    const auto* source = reinterpret_cast<const char16_t*>(utf16.GetRawData());
    std::vector<unsigned char> copy(static_cast<std::size_t>(utf16.GetLength()));
    int32_t count = 0;
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* normalizer = unorm2_getNFCInstance(&status);
    Compare(std::string("composition, ") + name,
            {{"ours", [&] { GUnicodeEncoding::GetInstance()->EnsureComposedUnicode(utf16); }},
             {"ICU",
              [&] {
                  UErrorCode error = U_ZERO_ERROR;
                  count = unorm2_spanQuickCheckYes(normalizer, source, static_cast<int32_t>(units), &error);
              }},
             {"copy of the text", [&] {
                  std::memcpy(copy.data(), utf16.GetRawData(), static_cast<std::size_t>(utf16.GetLength()));
              }}});
    Check(count == units, name);
}

void CompareUTF8(const char* name, const std::vector<const char*>& words) {
    const std::string text = MakeText(words);
    const GBuffer utf8 = BufferOf(text);
    GBuffer utf16;
    GUTF8Encoding::GetInstance()->ConvertTo(utf8, GUnicodeEncoding::GetInstance(), utf16);
    const long units = utf16.GetLength() / 2;
    const auto* source = reinterpret_cast<const char16_t*>(utf16.GetRawData());
    std::vector<char16_t> peerUnits(text.size() + 1);
    std::vector<char> peerBytes(text.size() + 1);
    std::vector<unsigned char> copy(text.size() * 2);
    GBuffer out;
    int32_t count = 0;

    Compare(std::string("UTF-8 to UTF-16, ") + name,
            {{"ours",
              [&] { GUTF8Encoding::GetInstance()->ConvertTo(utf8, GUnicodeEncoding::GetInstance(), out); }},
             {"ICU",
              [&] {
                  UErrorCode status = U_ZERO_ERROR;
                  u_strFromUTF8(peerUnits.data(), static_cast<int32_t>(peerUnits.size()), &count, text.data(),
                                static_cast<int32_t>(text.size()), &status);
              }},
             {"copy of the output", [&] {
                  std::memcpy(copy.data(), utf16.GetRawData(), static_cast<std::size_t>(utf16.GetLength()));
              }}});
    Check(count == units &&
              std::memcmp(peerUnits.data(), out.GetRawData(), 2 * static_cast<std::size_t>(units)) == 0,
          name);

    Compare(
        std::string("UTF-16 to UTF-8, ") + name,
        {{"ours",
          [&] { GUTF8Encoding::GetInstance()->ConvertFrom(utf16, GUnicodeEncoding::GetInstance(), out); }},
         {"ICU",
          [&] {
              UErrorCode status = U_ZERO_ERROR;
              u_strToUTF8(peerBytes.data(), static_cast<int32_t>(peerBytes.size()), &count, source,
                          static_cast<int32_t>(units), &status);
          }},
         {"copy of the output", [&] { std::memcpy(copy.data(), text.data(), text.size()); }}});
    Check(out == utf8, name);

    CompareComposition(name, utf16);
}

void CompareWinAnsi(const char* name, const std::vector<const char*>& words) {
    GBuffer bytes;
    GWinAnsiEncoding::GetInstance()->ConvertFrom(BufferOf(MakeText(words)), GUTF8Encoding::GetInstance(),
                                                 bytes);
    const std::string text(bytes.GetPtr(), static_cast<std::size_t>(bytes.GetLength()));
    const auto length = static_cast<int32_t>(text.size());
    GBuffer utf16;
    GWinAnsiEncoding::GetInstance()->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), utf16);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, CloseConverter> peer(ucnv_open("windows-1252", &status));
    std::vector<char16_t> peerUnits(text.size() + 1);
    std::vector<char> peerBytes(text.size() + 1);
    GBuffer out;

    Compare(
        std::string("WinAnsi to UTF-16, ") + name,
        {{"ours",
          [&] { GWinAnsiEncoding::GetInstance()->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), out); }},
         {"ICU", [&] {
              UErrorCode error = U_ZERO_ERROR;
              ucnv_toUChars(peer.get(), peerUnits.data(), length + 1, text.data(), length, &error);
          }}});
    Check(std::memcmp(peerUnits.data(), out.GetRawData(), 2 * text.size()) == 0, name);

    Compare(
        std::string("UTF-16 to WinAnsi, ") + name,
        {{"ours",
          [&] { GWinAnsiEncoding::GetInstance()->ConvertFrom(utf16, GUnicodeEncoding::GetInstance(), out); }},
         {"ICU", [&] {
              UErrorCode error = U_ZERO_ERROR;
              ucnv_fromUChars(peer.get(), peerBytes.data(), length + 1,
                              reinterpret_cast<const char16_t*>(utf16.GetRawData()), length, &error);
          }}});
    Check(out == bytes, name);
}

void CompareNaturalOrder() {
    std::vector<GString> names;
    for (int i = 0; i < 256; ++i) {
        names.push_back(GString("Quarterly report 2023, draft ") + GString(i * 37 % 256) + GString(".ps"));
        names.back().EnsureUnicode();
    }
    long lessByNumber = 0;
    long lessByBytes = 0;
    Compare("natural order, 255 pairs",
            {{"ours",
              [&] {
                  for (std::size_t i = 1; i < names.size(); ++i)
                      lessByNumber += GStringSupport::IsLessThanAlphanumeric(names[i - 1], names[i]) ? 1 : 0;
              }},
             {"byte comparison", [&] {
                  for (std::size_t i = 1; i < names.size(); ++i)
                      lessByBytes += names[i - 1] < names[i] ? 1 : 0;
              }}});
    Check(lessByNumber > 0 && lessByBytes > 0, "the order");
}

// In words, so that a text can have them in any order.
using Words = std::vector<const char*>;

const Words cEnglish = {"The ",    "quick ",     "brown ", "fox ",    "jumps ", "over ",
                        "the ",    "lazy ",      "dog, ",  "and ",    "a ",     "printer\n",
                        "prints ", "documents ", "named ", "Report. "};
const Words cGerman = {
    "Gr\u00FC\u00DFe ", "aus ", "M\u00FCnchen: ",   "f\u00FCnf ", "B\u00FCcher ", "kosten ",
    "weniger ",         "als ", "zwanzig ",         "\u20AC. ",   "Der ",         "Drucker ",
    "w\u00E4hlt ",      "die ", "Gr\u00F6\u00DFe ", "und ",       "dr\u00FCckt ", "eine ",
    "Seite, ",          "die "};
const Words cRussian = {"\u041F\u0435\u0447\u0430\u0442\u044C ",
                        "\u043D\u0430 ",
                        "\u0438 ",
                        "\u0434\u043E\u043A\u0443\u043C\u0435\u043D\u0442\u0430, ",
                        "\u0444\u0430\u0439\u043B ",
                        "\u043A\u043E\u0442\u043E\u0440\u044B\u0439 ",
                        "\u0441\u0442\u0440\u0430\u043D\u0438\u0446\u0430. ",
                        "\u043D\u0435 "};
const Words cChinese = {"\u6253\u5370", "\u6587\u4EF6",       "\u5DF2",    "\u5B8C\u6210", "\uFF0C",
                        "\u3002",       "\u6253\u5370\u673A", "2023\u5E74"};

}  // namespace

int main() {
    std::printf("Each line: our time, then that of each peer and how many times ours it is.\n");
    CompareUTF8("English", cEnglish);
    CompareUTF8("German", cGerman);
    CompareUTF8("Russian", cRussian);
    CompareUTF8("Chinese", cChinese);
    CompareWinAnsi("English", cEnglish);
    CompareWinAnsi("German", cGerman);
    CompareNaturalOrder();
    return sFailed ? 1 : 0;
}
