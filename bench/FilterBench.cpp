#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>

#include "bench/Comparison.h"
#include "bench/FilterPeers.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/encodings/GASCII85Decode.h"
#include "framework/streams/encodings/GASCII85Encode.h"
#include "framework/streams/encodings/GHexDecode.h"
#include "framework/streams/encodings/GHexEncode.h"
#include "framework/streams/encodings/GLZWDecode.h"
#include "framework/streams/encodings/GLZWEncode.h"
#include "framework/streams/encodings/GRunLengthDecode.h"
#include "framework/streams/encodings/GRunLengthEncode.h"
#include "framework/streams/rows/GPNGDecode.h"
#include "framework/streams/rows/GPNGEncode.h"

// Filters beside those of MuPDF, libtiff and libpng: what a mebibyte of plain data costs.
// Arguments: mebibytes of each kind of data, 1 unless given; the start of the only filters' names to
// measure.

namespace {

constexpr int cColumns = 4096;
constexpr long cLargeRead = 102400;
constexpr long cSmallRead = 4096;

using Maker = std::function<GInStream*(GInStream*)>;

template <class Filter, class... Parameters>
Maker Make(Parameters... parameters) {
    return [=](GInStream* source) { return new Filter(source, parameters...); };
}

struct Data {
    const char* name;
    std::string bytes;
};

std::string PostScriptText(std::size_t length) {
    std::mt19937 random(1);
    const char* const lines[] = {"%d %d moveto (Total of page) show\n", "%d %d lineto stroke\n",
                                 "gsave %d %d translate\n", "/F1 %d selectfont %d 0 rmoveto\n",
                                 "%d %d 0 setrgbcolor\n"};
    std::string text;
    char line[80];
    while (text.size() < length) {
        std::snprintf(line, sizeof line, lines[random() % std::size(lines)], static_cast<int>(random() % 600),
                      static_cast<int>(random() % 800));
        text += line;
    }
    text.resize(length);
    return text;
}

std::string ImageRows(std::size_t length) {
    std::mt19937 random(2);
    std::string rows(length, '\0');
    for (std::size_t i = 0; i < length; ++i) {
        const std::size_t row = i / (3 * cColumns), column = i % (3 * cColumns) / 3;
        rows[i] = static_cast<char>(row / 4 + column / 16 + (random() % 8 == 0 ? random() % 5 : 0));
    }
    return rows;
}

std::vector<Data> MakeData(std::size_t length) {
    std::mt19937 random(3);
    std::string noise(length, '\0');
    for (char& byte : noise) byte = static_cast<char>(random());
    std::vector<Data> all = {{"text", PostScriptText(length)},
                             {"image", ImageRows(length)},
                             {"zeros", std::string(length, '\0')},
                             {"random", std::move(noise)}};
    std::string mix;
    constexpr std::size_t cPart = 20000;
    for (std::size_t i = 0; mix.size() < length; ++i)
        mix += all[i % 4].bytes.substr(i * cPart % (length / 2), cPart);
    mix.resize(length);
    all.push_back({"mix", std::move(mix)});
    return all;
}

GBuffer Borrowed(const std::string& bytes) {
    GBuffer buffer;
    buffer.SetFromStatic(reinterpret_cast<const unsigned char*>(bytes.data()),
                         static_cast<long>(bytes.size()));
    return buffer;
}

void ReadAll(const Maker& make, const std::string& bytes, long size) {
    const GBuffer data = Borrowed(bytes);
    const std::unique_ptr<GInStream> stream(make(new GMemoryInStream(data)));
    GBuffer piece;
    while (stream->Read(piece, size) > 0) Comparison::Use(piece.GetRawData());
}

std::string Converted(const Maker& make, const std::string& bytes) {
    const GBuffer data = Borrowed(bytes);
    const std::unique_ptr<GInStream> stream(make(new GMemoryInStream(data)));
    std::string all;
    GBuffer piece;
    while (stream->Read(piece, cLargeRead) > 0)
        all.append(piece.GetPtr(), static_cast<std::size_t>(piece.GetLength()));
    return all;
}

// A peer's way to do the same. Ours is to be ahead.
struct Other {
    const char* name;
    std::function<void()> run;
    Limits limits = {1.0, 1.2};
};

constexpr std::size_t cMebibyte = 1 << 20;

std::size_t TimesOf(std::size_t plainLength) {
    constexpr std::size_t cEnough = cMebibyte / 4;
    return std::max<std::size_t>(cEnough / plainLength, 1);
}

// A work that is short is done several times.
std::function<void()> Repeatedly(std::size_t plainLength, const std::function<void()>& once) {
    return [times = TimesOf(plainLength), once] {
        for (std::size_t i = 0; i < times; ++i) once();
    };
}

// Reading the filter whole beside each peer; and of long data by small pieces, beside whole.
void Compare(const std::string& what, const Maker& make, const std::string& input, std::size_t plainLength,
             const std::vector<Other>& others) {
    const auto bytes = static_cast<double>(plainLength * TimesOf(plainLength));
    Work work = {.what = what,
                 .size = static_cast<long>(plainLength),
                 .count = bytes / cMebibyte,
                 .unit = "us/MiB",
                 .rounds = plainLength > 4 * cMebibyte ? 3 : 11};
    const auto whole = Repeatedly(plainLength, [&] { ReadAll(make, input, cLargeRead); });
    std::vector<Peer> peers;
    for (const Other& other : others)
        peers.push_back({other.name, other.limits, Repeatedly(plainLength, other.run)});
    Comparison::Run(work, whole, peers);
    if (plainLength < cMebibyte / 2) return;
    work.what += ", by 4 KiB";
    Comparison::Run(work, [&] { ReadAll(make, input, cSmallRead); }, {{"reading all", {1.25, 1.5}, whole}});
}

void CompareText(const Data& data, const char* name, FilterPeers::Text kind, const Maker& encode,
                 const Maker& decode) {
    const std::string what = std::string(name) + ", " + data.name;
    const std::string encoded = Converted(encode, data.bytes);
    const std::size_t length = data.bytes.size();
    std::vector<Other> encoders = {{"MuPDF", [&] { FilterPeers::MuPDFEncode(kind, data.bytes); }}};
    std::vector<Other> decoders = {{"MuPDF", [&] { FilterPeers::MuPDFDecode(kind, encoded); }}};
    std::string strip;
    if (kind == FilterPeers::Text::cRunLength) {
        strip = FilterPeers::LibTIFFEncode(FilterPeers::Strip::cRunLength, data.bytes);
        encoders.push_back(
            {"libtiff", [&] { FilterPeers::LibTIFFEncode(FilterPeers::Strip::cRunLength, data.bytes); }});
        decoders.push_back({"libtiff", [&] { FilterPeers::LibTIFFDecode(strip, length); }});
    }
    Compare(what + " out", encode, data.bytes, length, encoders);
    Compare(what + " in", decode, encoded, length, decoders);
}

// Where libtiff is ahead. It has a shortcut for the single bytes of which random data consist, which makes
// the others slower here.
Limits BesideLibTIFF(const std::string& kind) {
    if (kind == "random") return {1.0, 2.6};
    return kind == "mix" ? Limits{1.0, 1.7} : Limits{1.0, 1.2};
}

void CompareLZW(const Data& data) {
    const std::string what = std::string("LZW, ") + data.name;
    const std::string encoded = Converted(Make<GLZWEncode>(), data.bytes);
    const std::string strip = FilterPeers::LibTIFFEncode(FilterPeers::Strip::cLZW, data.bytes);
    const std::size_t length = data.bytes.size();
    Compare(what + " out", Make<GLZWEncode>(), data.bytes, length,
            {{"libtiff", [&] { FilterPeers::LibTIFFEncode(FilterPeers::Strip::cLZW, data.bytes); }}});
    Compare(what + " in", Make<GLZWDecode>(), encoded, length,
            {{"libtiff", [&] { FilterPeers::LibTIFFDecode(strip, length); }, BesideLibTIFF(data.name)},
             {"MuPDF", [&] { FilterPeers::MuPDFDecodeLZW(encoded); }}});
}

void CompareRows(const Data& data) {
    const char* const names[] = {"None", "Sub", "Up", "Average", "Paeth"};
    const Maker encoders[] = {Make<GPNGNoneEncode>(cColumns, 3), Make<GPNGSubEncode>(cColumns, 3),
                              Make<GPNGUpEncode>(cColumns, 3), Make<GPNGAvgEncode>(cColumns, 3),
                              Make<GPNGPaethEncode>(cColumns, 3)};
    const std::string rows = data.bytes.substr(0, data.bytes.size() / (3 * cColumns) * (3 * cColumns));
    for (int filter = 1; filter < 5; ++filter) {
        const std::string what = std::string("PNG ") + names[filter] + ", " + data.name;
        const std::string encoded = Converted(encoders[filter], rows);
        const std::string file = FilterPeers::LibPNGEncode(rows, cColumns, filter);
        Compare(what + " out", encoders[filter], rows, rows.size(),
                {{"libpng", [&] { FilterPeers::LibPNGEncode(rows, cColumns, filter); }}});
        Compare(what + " in", Make<GPNGOptiDecode>(cColumns, 3), encoded, rows.size(),
                {{"libpng", [&] { FilterPeers::LibPNGDecode(file); }},
                 {"MuPDF", [&] { FilterPeers::MuPDFDecodeRows(encoded, cColumns, 3); }}});
    }
}

const struct {
    const char* name;
    FilterPeers::Text kind;
    Maker encode, decode;
} cTexts[] = {
    {"hexadecimal", FilterPeers::Text::cHex, Make<GHexEncode>(), Make<GHexDecode>()},
    {"ASCII85", FilterPeers::Text::cASCII85, Make<GASCII85Encode>(), Make<GASCII85Decode>()},
    {"run length", FilterPeers::Text::cRunLength, Make<GRunLengthEncode>(), Make<GRunLengthDecode>()},
};

}  // namespace

int main(int count, char** arguments) {
    const std::size_t mebibytes = count > 1 ? std::strtoul(arguments[1], nullptr, 10) : 1;
    const std::string wanted = count > 2 ? arguments[2] : "";
    const auto isWanted = [&](const std::string& name) { return name.substr(0, wanted.size()) == wanted; };
    const auto compare = [&](const Data& data) {
        for (const auto& [name, kind, encode, decode] : cTexts) {
            if (isWanted(name)) CompareText(data, name, kind, encode, decode);
        }
        if (isWanted("LZW")) CompareLZW(data);
    };
    for (const Data& data : MakeData(mebibytes * cMebibyte)) {
        compare(data);
        if (isWanted("PNG")) CompareRows(data);
    }
    for (const std::size_t length : {cMebibyte / 64, cMebibyte / 16, cMebibyte / 4})
        compare({"text", PostScriptText(length)});
}
