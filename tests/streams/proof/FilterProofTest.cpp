#include <png.h>
#include <tiffio.h>
#include <zlib.h>

#include <sstream>

#include "tests/streams/filters/FilterTestSupport.h"

// What Ghostscript, libtiff and libpng write is read here, and what is written here is read by them and by
// qpdf, byte for byte.

namespace {

/// Inputs of all lengths up to some, and longer ones that fill tables.
std::vector<std::string> Inputs(std::size_t count) {
    std::vector<std::string> inputs;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t length = i < 20 ? i : i % 10 == 0 ? i * 300 : i * 11;
        inputs.push_back(MixedBytes(length, static_cast<unsigned>(i)));
    }
    return inputs;
}

struct Sample {
    std::string input;
    std::string filter;   // both of them, less "Encode" and "Decode"
    std::string operand;  // of the encoder in PostScript
    std::string parameters;
    FilterMaker encode, decode;
};

struct FilterProof : FolderTest {
    FilterProof() {
        for (const std::string& input : Inputs(105)) {
            mSamples.push_back({input, "ASCIIHex", "", "", cFilters.at("hex lines"), cFilters.at("unhex")});
            mSamples.push_back({input, "ASCII85", "", "", cFilters.at("85 lines"), cFilters.at("un85")});
            mSamples.push_back({input, "RunLength", "0", "", cFilters.at("runs"), cFilters.at("unruns")});
            mSamples.push_back({input, "LZW", "", "", cFilters.at("lzw"), cFilters.at("unlzw")});
            mSamples.push_back(
                {input, "LZW", "", "/EarlyChange 0", cFilters.at("lzw late"), cFilters.at("unlzw late")});
        }
        for (const long columns : {1L, 16L, 21L, 333L})
            for (const long colours : {1L, 2L, 3L, 4L, 5L, 9L})
                for (const long bits : {1L, 2L, 4L, 8L, 16L}) AddRows(columns, colours, bits);
    }
    /// Rows under each PNG filter, compressed, so that others take them.
    void AddRows(long columns, long colours, long bits) {
        const auto rowLength = static_cast<std::size_t>(columns * colours * bits + 7) / 8;
        const FilterMaker back = Maker<GPNGOptiDecode>(columns, colours, bits);
        int predictor = 10;
        for (const FilterMaker& row : PNGEncoders(columns, colours, bits)) {
            std::ostringstream parameters;
            parameters << "/Predictor " << predictor++ << " /Columns " << columns << " /Colors " << colours
                       << " /BitsPerComponent " << bits;
            mSamples.push_back({MixedBytes(rowLength * 25, static_cast<unsigned>(mSamples.size())), "LZW", "",
                                parameters.str(),
                                [=](GInStream* source) { return new GLZWEncode(row(source)); },
                                [=](GInStream* source) { return back(new GLZWDecode(source)); }});
        }
    }
    /// Runs a program in the folder, for a minute at most.
    bool Run(const std::string& command) const {
        const std::string folder = mFolder.Standard("").string();
        return std::system(("cd " + folder + " && timeout 60 " + command + " >/dev/null 2>&1").c_str()) == 0;
    }

    std::vector<Sample> mSamples;
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
    for (std::size_t i = 0; i < mSamples.size(); ++i) {
        const auto& [input, filter, operand, parameters, encode, decode] = mSamples[i];
        const std::string file = std::to_string(i);
        mFolder.Put(file + ".in", input);
        mFolder.Put(file + ".ours", OutcomeOf(encode, input).bytes);
        program << "(" << i << ".in) (" << i << ".theirs) {<<" << parameters << ">> " << operand << " /"
                << filter << "Encode filter} encode\n(" << i << ".ours) (" << i << ".back) {<<" << parameters
                << ">> /" << filter << "Decode filter} decode\n";
    }
    EXPECT_GT(mSamples.size(), 1000U);
    mFolder.Put("program.ps", program.str());
    ASSERT_TRUE(Run("gs -q -dNOSAFER -dBATCH -dNODISPLAY -dNOPAUSE program.ps"));
    for (std::size_t i = 0; i < mSamples.size(); ++i) {
        const Sample& sample = mSamples[i];
        SCOPED_TRACE(sample.filter + sample.parameters + " of " + std::to_string(sample.input.size()));
        const Outcome whole = {sample.input, 0};
        EXPECT_EQ((Outcome{mFolder.Take(std::to_string(i) + ".back"), 0}), whole);
        EXPECT_EQ(OutcomeOf(sample.decode, mFolder.Take(std::to_string(i) + ".theirs")), whole);
    }
}

TEST_F(FilterProof, QPDFReadsWhatIsWrittenHere) {
    // A document with one stream for each sample; object numbers begin with 3. The table of objects is left
    // for the reader to make.
    std::ostringstream document;
    document << "%PDF-1.7\n1 0 obj\n<</Type/Catalog/Pages 2 0 R/Samples[";
    for (std::size_t i = 0; i < mSamples.size(); ++i) document << i + 3 << " 0 R ";
    document << "]>>\nendobj\n2 0 obj\n<</Type/Pages/Count 0/Kids[]>>\nendobj\n";
    for (std::size_t i = 0; i < mSamples.size(); ++i) {
        const Sample& sample = mSamples[i];
        const std::string data = OutcomeOf(sample.encode, sample.input).bytes;
        document << i + 3 << " 0 obj\n<</Filter/" << sample.filter << "Decode";
        // Filters without parameters must have none.
        if (!sample.parameters.empty()) document << "/DecodeParms<<" << sample.parameters << ">>";
        document << "/Length " << data.size() << ">>\nstream\n" << data << "\nendstream\nendobj\n";
    }
    document << "trailer\n<</Root 1 0 R>>\n%%EOF\n";
    mFolder.Put("all.pdf", document.str());
    ASSERT_TRUE(
        Run("qpdf --warning-exit-0 --json-output --decode-level=all --json-stream-data=file "
            "--json-stream-prefix=stream all.pdf all.json"));
    for (std::size_t i = 0; i < mSamples.size(); ++i) {
        SCOPED_TRACE(mSamples[i].filter + mSamples[i].parameters);
        EXPECT_EQ((Outcome{mFolder.Take("stream-" + std::to_string(i + 3)), 0}),
                  (Outcome{mSamples[i].input, 0}));
    }
}

using Tagged = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

Tagged Open(const std::string& path) {
    return Tagged(TIFFOpen(path.c_str(), "r"), TIFFClose);
}

/// A row of so many grey pixels; the file is there when the result goes.
Tagged Create(const std::string& path, std::size_t length) {
    Tagged image(TIFFOpen(path.c_str(), "w"), TIFFClose);
    TIFFSetField(image.get(), TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(length));
    for (const std::uint32_t one : {TIFFTAG_IMAGELENGTH, TIFFTAG_ROWSPERSTRIP, TIFFTAG_SAMPLESPERPIXEL})
        TIFFSetField(image.get(), one, 1);
    TIFFSetField(image.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(image.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(image.get(), TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    return image;
}

TEST(ImageProof, LibTIFFAgreesBothWaysOnLZW) {
    const TestFolder folder;
    const std::string path = folder.Standard("image.tif").string();
    std::vector<std::string> inputs = Inputs(501);
    inputs.front() = std::string(300000, '\0');  // an image has pixels
    for (const std::string& input : inputs) {
        const auto length = static_cast<tmsize_t>(input.size());
        std::string given = input;  // libtiff may change what it encodes
        ASSERT_EQ(TIFFWriteEncodedStrip(Create(path, input.size()).get(), 0, given.data(), length), length);
        std::string theirs(TIFFRawStripSize(Open(path).get(), 0), '\0');
        TIFFReadRawStrip(Open(path).get(), 0, theirs.data(), static_cast<tmsize_t>(theirs.size()));
        ASSERT_EQ(OutcomeOf(cFilters.at("unlzw"), theirs), (Outcome{input, 0}));

        std::string ours = OutcomeOf(cFilters.at("lzw"), input).bytes, back(input.size(), '\0');
        TIFFWriteRawStrip(Create(path, input.size()).get(), 0, ours.data(),
                          static_cast<tmsize_t>(ours.size()));
        ASSERT_EQ(TIFFReadEncodedStrip(Open(path).get(), 0, back.data(), length), length);
        ASSERT_EQ(back, input);
    }
}

constexpr png_uint_32 cRows = 12;

struct Image {
    png_uint_32 columns;
    int bits;
    int kind;      // of colour, as in a file
    long colours;  // samples of a pixel
    std::size_t rowLength;
    std::string bytes = MixedBytes(rowLength * cRows, columns);
};

Bytef* Raw(std::string& bytes) {
    return reinterpret_cast<Bytef*>(bytes.data());
}

/// A file of that form, in which `write` puts what follows its header.
std::string FileOf(const Image& image, const auto& write) {
    std::string file;
    const auto append = [](png_structp png, png_bytep bytes, png_size_t count) {
        static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<char*>(bytes), count);
    };
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, append, nullptr);
    png_set_IHDR(png, info, image.columns, cRows, image.bits, image.kind, 0, 0, 0);
    png_write_info(png, info);
    write(png);
    png_destroy_write_struct(&png, &info);
    return file;
}

/// The image's rows as libpng filters them.
std::string FilteredRows(Image image, int filters) {
    const std::string file = FileOf(image, [&](png_structp png) {
        png_set_filter(png, 0, filters);
        png_set_compression_buffer_size(png, 1 << 20);  // all rows in one piece
        for (std::size_t i = 0; i < cRows; ++i) png_write_row(png, Raw(image.bytes) + i * image.rowLength);
        png_write_end(png, nullptr);
    });
    // In front stand the signature, the header, and the length and name of the piece; behind it, its check
    // sum and the end.
    constexpr std::size_t cFront = 8 + 25 + 8, cBehind = 4 + 12;
    std::string packed = file.substr(cFront, file.size() - cFront - cBehind),
                rows(image.bytes.size() + cRows, '\0');
    uLongf count = rows.size();
    EXPECT_EQ(uncompress(Raw(rows), &count, Raw(packed), packed.size()), Z_OK);
    return rows;
}

/// What libpng reads when these are the filtered rows.
std::string PixelsOf(const Image& image, std::string rows) {
    uLongf count = compressBound(rows.size());
    std::string packed(count, '\0'), pixels(image.bytes.size(), '\0');
    compress(Raw(packed), &count, Raw(rows), rows.size());
    std::string file = FileOf(image, [&](png_structp png) {
        png_write_chunk(png, reinterpret_cast<png_const_bytep>("IDAT"), Raw(packed), count);
        png_write_chunk(png, reinterpret_cast<png_const_bytep>("IEND"), nullptr, 0);
    });
    const auto take = [](png_structp png, png_bytep bytes, png_size_t length) {
        auto& rest = *static_cast<std::string*>(png_get_io_ptr(png));
        rest.erase(0, rest.copy(reinterpret_cast<char*>(bytes), length));
    };
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &file, take);
    png_read_info(png, info);
    for (std::size_t i = 0; i < cRows; ++i) png_read_row(png, Raw(pixels) + i * image.rowLength, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return pixels;
}

TEST(ImageProof, LibPNGAgreesBothWays) {
    const int kinds[] = {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GA, PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_RGBA};
    const int filters[] = {PNG_FILTER_NONE, PNG_FILTER_SUB, PNG_FILTER_UP, PNG_FILTER_AVG, PNG_FILTER_PAETH};
    for (const long colours : {1L, 2L, 3L, 4L}) {
        for (const int bits : {1, 2, 4, 8, 16}) {
            for (const unsigned width : {1U, 3U, 8U, 16U, 17U, 40U, 100U, 333U, 1000U}) {
                if (bits < 8 && colours > 1) continue;  // there are no such files
                SCOPED_TRACE(testing::Message() << bits << " bits, " << colours << " colours, " << width);
                // Libpng clears what fills the last byte of a row; here rows have no such bits.
                const unsigned columns = bits < 8 ? width * 8 : width;
                const Image image{columns, bits, kinds[colours - 1], colours,
                                  columns * static_cast<std::size_t>(colours * bits) / 8};
                const Outcome pixels = {image.bytes, 0};
                const std::vector<FilterMaker> encoders = PNGEncoders(columns, colours, bits);
                for (std::size_t i = 0; i < std::size(filters); ++i) {
                    const FilterMaker decoder = Maker<GPNGUpDecode>(columns, colours, bits);
                    EXPECT_EQ(OutcomeOf(decoder, FilteredRows(image, filters[i])), pixels);
                    EXPECT_EQ(PixelsOf(image, OutcomeOf(encoders[i], image.bytes).bytes), image.bytes);
                }
                const FilterMaker decoder = Maker<GPNGOptiDecode>(columns, colours, bits);
                EXPECT_EQ(OutcomeOf(decoder, FilteredRows(image, PNG_ALL_FILTERS)), pixels);
            }
        }
    }
}

}  // namespace
