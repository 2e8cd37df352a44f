#include <png.h>
#include <tiffio.h>
#include <zlib.h>

#include "tests/streams/proof/ProofSupport.h"

// What libtiff and libpng write is read here, and what is written here is read by them, byte for byte.

namespace {

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
    std::vector<std::string> inputs = ProofInputs(501);
    inputs.front() = std::string(300000, '\0');  // an image has pixels
    for (const std::string& input : inputs) {
        const auto length = static_cast<tmsize_t>(input.size());
        std::string given = input;  // libtiff may change what it encodes
        ASSERT_EQ(TIFFWriteEncodedStrip(Create(path, input.size()).get(), 0, given.data(), length), length);
        std::string theirs(TIFFRawStripSize(Open(path).get(), 0), '\0');
        TIFFReadRawStrip(Open(path).get(), 0, theirs.data(), static_cast<tmsize_t>(theirs.size()));
        ASSERT_EQ(OutcomeOf(FilterNamed("unlzw"), theirs), (Outcome{input, 0}));

        std::string ours = OutcomeOf(FilterNamed("lzw"), input).bytes, back(input.size(), '\0');
        TIFFWriteRawStrip(Create(path, input.size()).get(), 0, ours.data(),
                          static_cast<tmsize_t>(ours.size()));
        ASSERT_EQ(TIFFReadEncodedStrip(Open(path).get(), 0, back.data(), length), length);
        ASSERT_EQ(back, input);
    }
}

struct Image {
    png_uint_32 columns;
    png_uint_32 rows;
    int bits;
    int kind;     // of colour, as in a file
    int colours;  // samples of a pixel
    std::string bytes;

    std::size_t GetRowLength() const { return bytes.size() / rows; }
};

void Fail(png_structp, png_const_charp text) {
    ADD_FAILURE() << text;
    std::abort();
}

void Append(png_structp png, png_bytep bytes, png_size_t count) {
    static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<char*>(bytes), count);
}

void Take(png_structp png, png_bytep bytes, png_size_t count) {
    auto& file = *static_cast<std::string*>(png_get_io_ptr(png));
    std::memcpy(bytes, file.data(), count);
    file.erase(0, count);
}

/// A file of that form, in which `write` puts what follows its header.
template <class Write>
std::string FileOf(const Image& image, const Write& write) {
    std::string file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, Append, nullptr);
    png_set_IHDR(png, info, image.columns, image.rows, image.bits, image.kind, 0, 0, 0);
    png_write_info(png, info);
    write(png);
    png_destroy_write_struct(&png, &info);
    return file;
}

Bytef* Raw(std::string& bytes) {
    return reinterpret_cast<Bytef*>(bytes.data());
}

/// The image's rows as libpng filters them.
std::string FilteredRows(const Image& image, int filters) {
    const std::string file = FileOf(image, [&](png_structp png) {
        png_set_filter(png, 0, filters);
        png_set_compression_buffer_size(png, 1 << 20);  // all rows in one piece
        const auto* const pixels = reinterpret_cast<png_const_bytep>(image.bytes.data());
        for (std::size_t row = 0; row < image.rows; ++row)
            png_write_row(png, pixels + row * image.GetRowLength());
        png_write_end(png, nullptr);
    });
    // In front stand the signature, the header, and the length and name of the piece; behind it, its check
    // sum and the end.
    constexpr std::size_t cFront = 8 + 25 + 8, cBehind = 4 + 12;
    std::string packed = file.substr(cFront, file.size() - cFront - cBehind);
    std::string rows(image.bytes.size() + image.rows, '\0');
    uLongf count = rows.size();
    EXPECT_EQ(uncompress(Raw(rows), &count, Raw(packed), packed.size()), Z_OK);
    return rows;
}

/// What libpng reads when these are the filtered rows.
std::string PixelsOf(const Image& image, std::string rows) {
    uLongf count = compressBound(rows.size());
    std::string packed(count, '\0');
    compress(Raw(packed), &count, Raw(rows), rows.size());
    std::string file = FileOf(image, [&](png_structp png) {
        png_write_chunk(png, reinterpret_cast<png_const_bytep>("IDAT"), Raw(packed), count);
        png_write_chunk(png, reinterpret_cast<png_const_bytep>("IEND"), nullptr, 0);
    });
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &file, Take);
    png_read_info(png, info);
    std::string pixels(image.bytes.size(), '\0');
    for (std::size_t i = 0; i < pixels.size(); i += image.GetRowLength())
        png_read_row(png, reinterpret_cast<png_bytep>(pixels.data()) + i, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return pixels;
}

void ExpectAgreement(const Image& image) {
    const long columns = image.columns, colours = image.colours, bits = image.bits;
    const std::vector<FilterMaker> encoders = PNGEncoders(columns, colours, bits);
    const int filters[] = {PNG_FILTER_NONE, PNG_FILTER_SUB, PNG_FILTER_UP, PNG_FILTER_AVG, PNG_FILTER_PAETH};
    for (std::size_t i = 0; i < std::size(filters); ++i) {
        EXPECT_EQ(OutcomeOf(Maker<GPNGUpDecode>(columns, colours, bits), FilteredRows(image, filters[i])),
                  (Outcome{image.bytes, 0}));
        EXPECT_EQ(PixelsOf(image, OutcomeOf(encoders[i], image.bytes).bytes), image.bytes);
    }
    EXPECT_EQ(OutcomeOf(Maker<GPNGOptiDecode>(columns, colours, bits), FilteredRows(image, PNG_ALL_FILTERS)),
              (Outcome{image.bytes, 0}));
}

TEST(ImageProof, LibPNGAgreesBothWays) {
    const std::tuple<int, int, std::vector<int>> kinds[] = {{PNG_COLOR_TYPE_GRAY, 1, {1, 2, 4, 8, 16}},
                                                            {PNG_COLOR_TYPE_GRAY_ALPHA, 2, {8, 16}},
                                                            {PNG_COLOR_TYPE_RGB, 3, {8, 16}},
                                                            {PNG_COLOR_TYPE_RGB_ALPHA, 4, {8, 16}}};
    for (const auto& [kind, colours, depths] : kinds) {
        for (const int bits : depths) {
            for (const unsigned columns : {1U, 3U, 8U, 16U, 17U, 40U, 100U, 333U, 1000U}) {
                SCOPED_TRACE(testing::Message() << bits << " bits, " << colours << " colours, " << columns);
                // Libpng clears what fills the last byte of a row; here rows have no such bits.
                const unsigned whole = bits < 8 ? columns * 8 : columns;
                const std::size_t length = whole * static_cast<unsigned>(colours * bits) / 8;
                ExpectAgreement({whole, 12, bits, kind, colours, MixedBytes(length * 12, columns)});
            }
        }
    }
}

}  // namespace
