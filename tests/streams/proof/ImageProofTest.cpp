#include <png.h>
#include <tiffio.h>
#include <zlib.h>

#include "tests/streams/proof/ProofSupport.h"

// What libtiff and libpng write is read here, and what is written here is read by them, byte for byte.

namespace {

TIFF* OpenImage(const std::string& path, std::size_t length) {
    TIFF* const image = TIFFOpen(path.c_str(), "w");
    TIFFSetField(image, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(length));
    TIFFSetField(image, TIFFTAG_IMAGELENGTH, 1U);
    TIFFSetField(image, TIFFTAG_ROWSPERSTRIP, 1U);
    TIFFSetField(image, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(image, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(image, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(image, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    return image;
}

TEST(ImageProof, LibTIFFAgreesBothWaysOnLZW) {
    const TestFolder folder;
    const std::string path = folder.Standard("image.tif").string();
    std::vector<std::string> inputs = ProofInputs(501);
    inputs.push_back(std::string(300000, '\0'));
    for (std::string& input : inputs) {
        if (input.empty()) continue;
        const auto length = static_cast<tmsize_t>(input.size());
        TIFF* image = OpenImage(path, input.size());
        std::string given = input;  // libtiff may change what it encodes
        ASSERT_EQ(TIFFWriteEncodedStrip(image, 0, given.data(), length), length);
        TIFFClose(image);
        image = TIFFOpen(path.c_str(), "r");
        std::string theirs(TIFFRawStripSize(image, 0), '\0');
        TIFFReadRawStrip(image, 0, theirs.data(), static_cast<tmsize_t>(theirs.size()));
        TIFFClose(image);
        ASSERT_EQ(OutcomeOf(FilterNamed("unlzw"), theirs), (Outcome{input, 0}));

        std::string ours = OutcomeOf(FilterNamed("lzw"), input).bytes;
        image = OpenImage(path, input.size());
        TIFFWriteRawStrip(image, 0, ours.data(), static_cast<tmsize_t>(ours.size()));
        TIFFClose(image);
        image = TIFFOpen(path.c_str(), "r");
        std::string back(input.size(), '\0');
        ASSERT_EQ(TIFFReadEncodedStrip(image, 0, back.data(), length), length);
        TIFFClose(image);
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

std::string FileOf(const Image& image, int filters) {
    std::string file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, Append, nullptr);
    png_set_IHDR(png, info, image.columns, image.rows, image.bits, image.kind, 0, 0, 0);
    png_set_filter(png, 0, filters);
    png_set_compression_buffer_size(png, 1 << 20);  // all rows in one piece
    png_write_info(png, info);
    for (std::size_t row = 0; row < image.rows; ++row) {
        png_write_row(png,
                      reinterpret_cast<png_const_bytep>(image.bytes.data()) + row * image.GetRowLength());
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

std::string RowsOf(std::string file, std::size_t rowLength) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &file, Take);
    png_read_info(png, info);
    std::string rows(rowLength * png_get_image_height(png, info), '\0');
    for (std::size_t i = 0; i < rows.size(); i += rowLength) {
        png_read_row(png, reinterpret_cast<png_bytep>(rows.data()) + i, nullptr);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return rows;
}

std::string NumberBytes(std::uint32_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift);
    return bytes;
}

// In front of the filtered rows of a file: its signature, its header, and the length and name of what
// follows; behind them: their check sum and the end.
constexpr std::size_t cHeader = 8 + 25;
constexpr std::size_t cEnd = 12;

// The filtered rows of a file.
std::string DataOf(const std::string& file, std::size_t length) {
    const std::string packed = file.substr(cHeader + 8, file.size() - cHeader - 8 - 4 - cEnd);
    std::string data(length, '\0');
    uLongf count = length;
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(data.data()), &count,
                         reinterpret_cast<const Bytef*>(packed.data()), packed.size()),
              Z_OK);
    return data;
}

// That file with other filtered rows.
std::string WithData(const std::string& file, const std::string& data) {
    uLongf count = compressBound(data.size());
    std::string chunk = "IDAT" + std::string(count, '\0');
    compress(reinterpret_cast<Bytef*>(chunk.data()) + 4, &count, reinterpret_cast<const Bytef*>(data.data()),
             data.size());
    chunk.resize(4 + count);
    const auto sum = crc32(0, reinterpret_cast<const Bytef*>(chunk.data()), static_cast<uInt>(chunk.size()));
    return file.substr(0, cHeader) + NumberBytes(static_cast<std::uint32_t>(count)) + chunk +
           NumberBytes(static_cast<std::uint32_t>(sum)) + file.substr(file.size() - cEnd);
}

void ExpectAgreement(const Image& image) {
    const long columns = image.columns, colours = image.colours, bits = image.bits;
    const std::size_t dataLength = image.bytes.size() + image.rows;
    const std::vector<FilterMaker> encoders = PNGEncoders(columns, colours, bits);
    const int filters[] = {PNG_FILTER_NONE, PNG_FILTER_SUB, PNG_FILTER_UP, PNG_FILTER_AVG, PNG_FILTER_PAETH};
    for (std::size_t i = 0; i < std::size(filters); ++i) {
        const std::string theirs = FileOf(image, filters[i]);
        const std::string data = DataOf(theirs, dataLength);
        EXPECT_EQ(OutcomeOf(Maker<GPNGUpDecode>(columns, colours, bits), data), (Outcome{image.bytes, 0}));
        const std::string ours = OutcomeOf(encoders[i], image.bytes).bytes;
        EXPECT_EQ(RowsOf(WithData(theirs, ours), image.GetRowLength()), image.bytes);
    }
    const std::string data = DataOf(FileOf(image, PNG_ALL_FILTERS), dataLength);
    EXPECT_EQ(OutcomeOf(Maker<GPNGOptiDecode>(columns, colours, bits), data), (Outcome{image.bytes, 0}));
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
