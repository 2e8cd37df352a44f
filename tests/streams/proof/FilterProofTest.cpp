#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

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
#include "tests/streams/proof/ProofSupport.h"

// Files that Ghostscript writes are read here, and files that are written here are read by Ghostscript and
// by qpdf, byte for byte.

namespace {

struct Encoding {
    std::string name;     // of both filters, less "Encode" and "Decode"
    std::string operand;  // of its encoder in PostScript
    std::string parameters;
    FilterMaker encode;
    FilterMaker decode;
};

const std::vector<Encoding> cEncodings = {
    {"ASCIIHex", "", "", Maker<GHexEncode>(true), Maker<GHexDecode>()},
    {"ASCII85", "", "", Maker<GASCII85Encode>(true), Maker<GASCII85Decode>()},
    {"RunLength", "0", "", Maker<GRunLengthEncode>(), Maker<GRunLengthDecode>()},
    {"LZW", "", "", Maker<GLZWEncode>(), Maker<GLZWDecode>()},
    {"LZW", "", "/EarlyChange 0", Maker<GLZWEncode>(0L), Maker<GLZWDecode>(0L)},
};

struct Sample {
    std::string file;
    std::string input;
    const Encoding* encoding;
};

// Rows under each PNG filter, compressed, so that others take them.
std::vector<Encoding> RowEncodings(long columns, long colours, long bits) {
    const FilterMaker rows[] = {
        Maker<GPNGNoneEncode>(columns, colours, bits), Maker<GPNGSubEncode>(columns, colours, bits),
        Maker<GPNGUpEncode>(columns, colours, bits), Maker<GPNGAvgEncode>(columns, colours, bits),
        Maker<GPNGPaethEncode>(columns, colours, bits)};
    const FilterMaker back = Maker<GPNGOptiDecode>(columns, colours, bits);
    std::vector<Encoding> encodings;
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        std::ostringstream parameters;
        parameters << "/Predictor " << 10 + i << " /Columns " << columns << " /Colors " << colours
                   << " /BitsPerComponent " << bits;
        const FilterMaker row = rows[i];
        encodings.push_back({"LZW", "", parameters.str(),
                             [=](GInStream* source) { return new GLZWEncode(row(source)); },
                             [=](GInStream* source) { return back(new GLZWDecode(source)); }});
    }
    return encodings;
}

std::vector<Encoding> AllRowEncodings(std::vector<long>& rowLengths) {
    std::vector<Encoding> all;
    for (const long bits : {1L, 2L, 4L, 8L, 16L}) {
        for (const long colours : {1L, 3L, 4L}) {
            for (const Encoding& encoding : RowEncodings(21, colours, bits)) {
                all.push_back(encoding);
                rowLengths.push_back((21 * colours * bits + 7) / 8);
            }
        }
    }
    return all;
}

std::vector<Sample> MakeSamples(const std::vector<Encoding>& rows, const std::vector<long>& rowLengths) {
    std::vector<Sample> samples;
    const auto add = [&](const std::string& input, const Encoding& encoding) {
        samples.push_back({std::to_string(samples.size()), input, &encoding});
    };
    for (const std::string& input : ProofInputs(105)) {
        for (const Encoding& encoding : cEncodings) add(input, encoding);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        add(MixedBytes(static_cast<std::size_t>(rowLengths[i]) * 25, static_cast<unsigned>(i)), rows[i]);
    }
    return samples;
}

class FilterProof : public testing::Test {
protected:
    const std::vector<Sample>& GetSamples() const { return mSamples; }

    ProofFolder mFolder;

private:
    std::vector<long> mRowLengths;
    std::vector<Encoding> mRows = AllRowEncodings(mRowLengths);
    std::vector<Sample> mSamples = MakeSamples(mRows, mRowLengths);
};

constexpr const char* cProgram = R"(
/buffer 32000 string def
/pump { /to exch def /from exch def
  { from buffer readstring exch to exch writestring not { exit } if } loop to closefile from closefile } def
/through { /make exch def (w) file /target exch def (r) file /source exch def } def
/encode { through source target make pump target closefile } def
/decode { through source make target pump source closefile } def
)";

TEST_F(FilterProof, GhostscriptAgreesBothWays) {
    std::ostringstream program;
    program << cProgram;
    for (const auto& [file, input, encoding] : GetSamples()) {
        WriteFile(mFolder / (file + ".in"), input);
        WriteFile(mFolder / (file + ".ours"), OutcomeOf(encoding->encode, input).bytes);
        const std::string filter = " <<" + encoding->parameters + ">> ";
        program << "(" << mFolder / (file + ".in") << ") (" << mFolder / (file + ".theirs") << ") {" << filter
                << encoding->operand << " /" << encoding->name << "Encode filter} encode\n"
                << "(" << mFolder / (file + ".ours") << ") (" << mFolder / (file + ".back") << ") {" << filter
                << "/" << encoding->name << "Decode filter} decode\n";
    }
    WriteFile(mFolder / "program.ps", program.str());
    ASSERT_TRUE(Succeeds("gs -q -dNOSAFER -dBATCH -dNODISPLAY -dNOPAUSE " + (mFolder / "program.ps")));
    EXPECT_GE(GetSamples().size(), 500U);
    for (const auto& [file, input, encoding] : GetSamples()) {
        SCOPED_TRACE(encoding->name + encoding->parameters + " of " + std::to_string(input.size()));
        EXPECT_EQ((Outcome{ReadFile(mFolder / (file + ".back")), 0}), (Outcome{input, 0}));
        EXPECT_EQ(OutcomeOf(encoding->decode, ReadFile(mFolder / (file + ".theirs"))), (Outcome{input, 0}));
    }
}

// A document with one stream for each sample; object numbers begin with 3.
std::string DocumentOf(const std::vector<Sample>& samples) {
    std::ostringstream document;
    std::vector<long long> offsets;
    const auto begin = [&] {
        offsets.push_back(document.tellp());
        document << offsets.size() << " 0 obj\n";
    };
    document << "%PDF-1.7\n";
    begin();
    document << "<</Type/Catalog/Pages 2 0 R/Samples[";
    for (std::size_t i = 0; i < samples.size(); ++i) document << i + 3 << " 0 R ";
    document << "]>>\nendobj\n";
    begin();
    document << "<</Type/Pages/Count 0/Kids[]>>\nendobj\n";
    for (const Sample& sample : samples) {
        const std::string data = OutcomeOf(sample.encoding->encode, sample.input).bytes;
        begin();
        document << "<</Filter/" << sample.encoding->name << "Decode";
        // Filters without parameters must have none.
        if (!sample.encoding->parameters.empty())
            document << "/DecodeParms<<" << sample.encoding->parameters << ">>";
        document << "/Length " << data.size() << ">>\nstream\n" << data << "\nendstream\nendobj\n";
    }
    const long long table = document.tellp();
    document << "xref\n0 " << offsets.size() + 1 << "\n0000000000 65535 f \n";
    for (const long long offset : offsets) {
        char line[21];
        std::snprintf(line, sizeof line, "%010lld 00000 n \n", offset);
        document << line;
    }
    document << "trailer\n<</Root 1 0 R/Size " << offsets.size() + 1 << ">>\nstartxref\n"
             << table << "\n%%EOF\n";
    return document.str();
}

TEST_F(FilterProof, QPDFReadsWhatIsWrittenHere) {
    WriteFile(mFolder / "all.pdf", DocumentOf(GetSamples()));
    ASSERT_TRUE(
        Succeeds("qpdf --json-output --decode-level=all --json-stream-data=file --json-stream-prefix=" +
                 (mFolder / "stream") + " " + (mFolder / "all.pdf") + " " + (mFolder / "all.json")));
    for (std::size_t i = 0; i < GetSamples().size(); ++i) {
        const Sample& sample = GetSamples()[i];
        SCOPED_TRACE(sample.encoding->name + sample.encoding->parameters);
        EXPECT_EQ((Outcome{ReadFile(mFolder / ("stream-" + std::to_string(i + 3))), 0}),
                  (Outcome{sample.input, 0}));
    }
}

}  // namespace
