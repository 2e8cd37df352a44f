#include <sstream>

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
    {"ASCIIHex", "", "", FilterNamed("hex lines"), FilterNamed("unhex")},
    {"ASCII85", "", "", FilterNamed("85 lines"), FilterNamed("un85")},
    {"RunLength", "0", "", FilterNamed("runs"), FilterNamed("unruns")},
    {"LZW", "", "", FilterNamed("lzw"), FilterNamed("unlzw")},
    {"LZW", "", "/EarlyChange 0", FilterNamed("lzw late"), FilterNamed("unlzw late")},
};

struct Sample {
    std::string file;
    std::string input;
    Encoding encoding;
};

// Rows under each PNG filter, compressed, so that others take them.
std::vector<Encoding> RowEncodings(long columns, long colours, long bits) {
    const FilterMaker back = Maker<GPNGOptiDecode>(columns, colours, bits);
    std::vector<Encoding> encodings;
    for (const FilterMaker& row : PNGEncoders(columns, colours, bits)) {
        std::ostringstream parameters;
        parameters << "/Predictor " << 10 + encodings.size() << " /Columns " << columns << " /Colors "
                   << colours << " /BitsPerComponent " << bits;
        encodings.push_back({"LZW", "", parameters.str(),
                             [=](GInStream* source) { return new GLZWEncode(row(source)); },
                             [=](GInStream* source) { return back(new GLZWDecode(source)); }});
    }
    return encodings;
}

std::vector<Sample> MakeSamples() {
    std::vector<Sample> samples;
    const auto add = [&](const std::string& input, const Encoding& encoding) {
        samples.push_back({std::to_string(samples.size()), input, encoding});
    };
    for (const std::string& input : ProofInputs(105)) {
        for (const Encoding& encoding : cEncodings) add(input, encoding);
    }
    for (const long bits : {1L, 2L, 4L, 8L, 16L}) {
        for (const long colours : {1L, 2L, 3L, 4L, 5L, 9L}) {
            const auto rowLength = static_cast<std::size_t>(21 * colours * bits + 7) / 8;
            for (const Encoding& encoding : RowEncodings(21, colours, bits))
                add(MixedBytes(rowLength * 25, static_cast<unsigned>(samples.size())), encoding);
        }
    }
    return samples;
}

struct FilterProof : testing::Test {
    std::string PathOf(const std::string& file) const { return mFolder.Standard(file).string(); }

    const TestFolder mFolder;
    const std::vector<Sample> mSamples = MakeSamples();
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
    for (const auto& [file, input, encoding] : mSamples) {
        mFolder.Put(file + ".in", input);
        mFolder.Put(file + ".ours", OutcomeOf(encoding.encode, input).bytes);
        const std::string filter = " <<" + encoding.parameters + ">> ";
        program << "(" << PathOf(file + ".in") << ") (" << PathOf(file + ".theirs") << ") {" << filter
                << encoding.operand << " /" << encoding.name << "Encode filter} encode\n"
                << "(" << PathOf(file + ".ours") << ") (" << PathOf(file + ".back") << ") {" << filter << "/"
                << encoding.name << "Decode filter} decode\n";
    }
    mFolder.Put("program.ps", program.str());
    ASSERT_TRUE(Succeeds("gs -q -dNOSAFER -dBATCH -dNODISPLAY -dNOPAUSE " + PathOf("program.ps")));
    EXPECT_GE(mSamples.size(), 500U);
    for (const auto& [file, input, encoding] : mSamples) {
        SCOPED_TRACE(encoding.name + encoding.parameters + " of " + std::to_string(input.size()));
        EXPECT_EQ((Outcome{mFolder.Take(file + ".back"), 0}), (Outcome{input, 0}));
        EXPECT_EQ(OutcomeOf(encoding.decode, mFolder.Take(file + ".theirs")), (Outcome{input, 0}));
    }
}

// A document with one stream for each sample; object numbers begin with 3. The table of objects is left for
// the reader to make.
std::string DocumentOf(const std::vector<Sample>& samples) {
    std::ostringstream document;
    document << "%PDF-1.7\n1 0 obj\n<</Type/Catalog/Pages 2 0 R/Samples[";
    for (std::size_t i = 0; i < samples.size(); ++i) document << i + 3 << " 0 R ";
    document << "]>>\nendobj\n2 0 obj\n<</Type/Pages/Count 0/Kids[]>>\nendobj\n";
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto& [file, input, encoding] = samples[i];
        const std::string data = OutcomeOf(encoding.encode, input).bytes;
        document << i + 3 << " 0 obj\n<</Filter/" << encoding.name << "Decode";
        // Filters without parameters must have none.
        if (!encoding.parameters.empty()) document << "/DecodeParms<<" << encoding.parameters << ">>";
        document << "/Length " << data.size() << ">>\nstream\n" << data << "\nendstream\nendobj\n";
    }
    document << "trailer\n<</Root 1 0 R>>\n%%EOF\n";
    return document.str();
}

TEST_F(FilterProof, QPDFReadsWhatIsWrittenHere) {
    mFolder.Put("all.pdf", DocumentOf(mSamples));
    ASSERT_TRUE(
        Succeeds("qpdf --warning-exit-0 --json-output --decode-level=all --json-stream-data=file "
                 "--json-stream-prefix=" +
                 PathOf("stream") + " " + PathOf("all.pdf") + " " + PathOf("all.json")));
    for (std::size_t i = 0; i < mSamples.size(); ++i) {
        const Sample& sample = mSamples[i];
        SCOPED_TRACE(sample.encoding.name + sample.encoding.parameters);
        EXPECT_EQ((Outcome{mFolder.Take("stream-" + std::to_string(i + 3)), 0}), (Outcome{sample.input, 0}));
    }
}

}  // namespace
