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

#include "bench/Comparison.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/text/GStringSupport.h"

namespace {

constexpr Limits cAhead = {1.0, 1.0};
constexpr Limits cNone = {0, 0};

bool sFailed = false;

void Check(bool good, const char* what) {
    if (good) return;
    std::fprintf(stderr, "TextBench: %s gave another result\n", what);
    sFailed = true;
}

// A text of the words in an order that no branch predictor learns by heart.
std::string MakeText(const std::vector<const char*>& words, long length) {
    std::mt19937 random(1);
    std::string text;
    while (text.size() < static_cast<std::size_t>(length)) text += words[random() % words.size()];
    return text;
}

GBuffer BufferOf(const std::string& bytes) {
    return GBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<long>(bytes.size()));
}

// Each way is given to convert the text once.
void Compare(const std::string& what, long length, const std::function<void()>& ours,
             std::vector<Peer> peers) {
    const int repeats = static_cast<int>(1 + 200000 / (length + 100));
    const auto repeatedly = [repeats](const std::function<void()>& once) {
        return [repeats, once] {
            for (int i = 0; i < repeats; ++i) once();
        };
    };
    for (Peer& peer : peers) peer.run = repeatedly(peer.run);
    Comparison::Run({.what = what, .size = length, .count = static_cast<double>(repeats)}, repeatedly(ours),
                    peers);
}

// A text in both forms, room for what peers make of it, and what it is called.
struct Text {
    Text(const char* called, const std::vector<const char*>& words, long wanted)
        : name(called), length(wanted), text(MakeText(words, wanted)), utf8(BufferOf(text)) {
        GUTF8Encoding::GetInstance()->ConvertTo(utf8, GUnicodeEncoding::GetInstance(), utf16);
        peerUnits.resize(text.size() + 1);
        peerBytes.resize(text.size() + 1);
        copy.resize(text.size() * 2);
    }
    const char16_t* Units() const { return reinterpret_cast<const char16_t*>(utf16.GetRawData()); }
    int32_t UnitCount() const { return static_cast<int32_t>(utf16.GetLength() / 2); }
    void Copy(const void* from, std::size_t bytes) {
        std::memcpy(copy.data(), from, bytes);
        Comparison::Use(copy.data());
    }

    std::string name;
    long length;
    std::string text;
    GBuffer utf8, utf16;
    std::vector<char16_t> peerUnits;
    std::vector<char> peerBytes;
    std::vector<unsigned char> copy;
    int32_t count = 0;
};

void CompareToUTF16(Text& text, const Limits& beside, const Limits& besideCopy) {
    GBuffer out;
    const auto peer = [&] {
        UErrorCode status = U_ZERO_ERROR;
        u_strFromUTF8(text.peerUnits.data(), static_cast<int32_t>(text.peerUnits.size()), &text.count,
                      text.text.data(), static_cast<int32_t>(text.text.size()), &status);
    };
    const auto bytes = static_cast<std::size_t>(text.utf16.GetLength());
    Compare("UTF-8 to UTF-16, " + text.name, text.length,
            [&] { GUTF8Encoding::GetInstance()->ConvertTo(text.utf8, GUnicodeEncoding::GetInstance(), out); },
            {{"ICU", beside, peer},
             {"a copy of the output", besideCopy, [&] { text.Copy(text.Units(), bytes); }}});
    Check(text.count == text.UnitCount() && out == text.utf16 &&
              std::memcmp(text.peerUnits.data(), out.GetRawData(), bytes) == 0,
          text.name.c_str());
}

void CompareToUTF8(Text& text, const Limits& beside, const Limits& besideCopy) {
    GBuffer out;
    const auto peer = [&] {
        UErrorCode status = U_ZERO_ERROR;
        u_strToUTF8(text.peerBytes.data(), static_cast<int32_t>(text.peerBytes.size()), &text.count,
                    text.Units(), text.UnitCount(), &status);
    };
    Compare(
        "UTF-16 to UTF-8, " + text.name, text.length,
        [&] { GUTF8Encoding::GetInstance()->ConvertFrom(text.utf16, GUnicodeEncoding::GetInstance(), out); },
        {{"ICU", beside, peer},
         {"a copy of the output", besideCopy, [&] { text.Copy(text.text.data(), text.text.size()); }}});
    Check(out == text.utf8, text.name.c_str());
}

void CompareComposition(Text& text) {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* normalizer = unorm2_getNFCInstance(&status);
    const auto peer = [&] {
        UErrorCode error = U_ZERO_ERROR;
        text.count = unorm2_spanQuickCheckYes(normalizer, text.Units(), text.UnitCount(), &error);
    };
    const auto bytes = static_cast<std::size_t>(text.utf16.GetLength());
    Compare("composition, " + text.name, text.length,
            [&] { GUnicodeEncoding::GetInstance()->EnsureComposedUnicode(text.utf16); },
            {{"ICU", cAhead, peer}, {"a copy of the text", cNone, [&] { text.Copy(text.Units(), bytes); }}});
    Check(text.count == text.UnitCount(), text.name.c_str());
}

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

void CompareWinAnsi(const char* name, const std::vector<const char*>& words, long size) {
    Text text(name, words, size);
    GBuffer bytes, utf16, out;
    GWinAnsiEncoding::GetInstance()->ConvertFrom(text.utf16, GUnicodeEncoding::GetInstance(), bytes);
    GWinAnsiEncoding::GetInstance()->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), utf16);
    const auto length = static_cast<int32_t>(bytes.GetLength());
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, CloseConverter> peer(ucnv_open("windows-1252", &status));
    const auto read = [&] {
        UErrorCode error = U_ZERO_ERROR;
        ucnv_toUChars(peer.get(), text.peerUnits.data(), length + 1, bytes.GetPtr(), length, &error);
    };
    Compare(std::string("WinAnsi to UTF-16, ") + name, size,
            [&] { GWinAnsiEncoding::GetInstance()->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), out); },
            {{"ICU", cAhead, read}});
    Check(std::memcmp(text.peerUnits.data(), out.GetRawData(), 2 * static_cast<std::size_t>(length)) == 0,
          name);

    const auto write = [&] {
        UErrorCode error = U_ZERO_ERROR;
        ucnv_fromUChars(peer.get(), text.peerBytes.data(), length + 1,
                        reinterpret_cast<const char16_t*>(utf16.GetRawData()), length, &error);
    };
    Compare(
        std::string("UTF-16 to WinAnsi, ") + name, size,
        [&] { GWinAnsiEncoding::GetInstance()->ConvertFrom(utf16, GUnicodeEncoding::GetInstance(), out); },
        {{"ICU", cAhead, write}});
    Check(out == bytes, name);
}

void CompareNaturalOrder() {
    constexpr long cNames = 256;
    std::vector<GString> names;
    for (int i = 0; i < cNames; ++i) {
        names.push_back(GString("Quarterly report 2023, draft ") + GString(i * 37 % 256) + GString(".ps"));
        names.back().EnsureUnicode();
    }
    long lessByNumber = 0;
    long lessByBytes = 0;
    const auto byBytes = [&] {
        for (std::size_t i = 1; i < names.size(); ++i) lessByBytes += names[i - 1] < names[i] ? 1 : 0;
    };
    Compare("natural order of names", cNames,
            [&] {
                for (std::size_t i = 1; i < names.size(); ++i)
                    lessByNumber += GStringSupport::IsLessThanAlphanumeric(names[i - 1], names[i]) ? 1 : 0;
            },
            {{"byte comparison", cNone, byBytes}});
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
    constexpr long cLength = 16384;
    for (const long length : {16L, 64L, 256L, 1024L, 4096L, cLength}) {
        Text english("English", cEnglish, length);
        // The peers write to memory that is there already; below a KiB it is the buffer that costs.
        const bool isLong = length >= 1024;
        // Five times as fast as ICU, and not far from what writing the output takes.
        const Limits besideICU = isLong ? Limits{0.2, 0.4} : cNone;
        CompareToUTF16(english, besideICU, isLong ? Limits{1.3, length < cLength ? 5.0 : 1.8} : cNone);
        CompareToUTF8(english, besideICU, isLong ? Limits{3.0, length < cLength ? 6.0 : 4.0} : cNone);
        Text russian("Russian", cRussian, length);
        CompareToUTF16(russian, isLong ? cAhead : cNone, cNone);
        CompareToUTF8(russian, isLong ? cAhead : cNone, cNone);
    }
    const struct {
        const char* name;
        const Words* words;
    } rows[] = {{"English", &cEnglish}, {"German", &cGerman}, {"Russian", &cRussian}, {"Chinese", &cChinese}};
    for (const auto& row : rows) {
        Text text(row.name, *row.words, cLength);
        CompareComposition(text);
        if (row.words == &cEnglish || row.words == &cRussian) continue;
        CompareToUTF16(text, cAhead, cNone);
        CompareToUTF8(text, cAhead, cNone);
    }
    CompareWinAnsi("English", cEnglish, cLength);
    CompareWinAnsi("German", cGerman, cLength);
    CompareNaturalOrder();
    return sFailed ? 1 : 0;
}
