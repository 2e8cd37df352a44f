#include "bench/FilterPeers.h"

#include <mupdf/fitz.h>
#include <png.h>
#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t cPiece = 102400;
constexpr std::size_t cRowLength = 65536;

fz_context* GetContext() {
    static fz_context* const sContext = fz_new_context(nullptr, nullptr, FZ_STORE_DEFAULT);
    return sContext;
}

void ReadAll(fz_stream* stream) {
    static std::vector<unsigned char> sPiece(cPiece);
    while (fz_read(GetContext(), stream, sPiece.data(), sPiece.size()) > 0) {
    }
    fz_drop_stream(GetContext(), stream);
}

fz_stream* StreamOf(const std::string& data) {
    return fz_open_memory(GetContext(), reinterpret_cast<const unsigned char*>(data.data()), data.size());
}

void Drop(fz_context*, void*, const void*, size_t) {}

/// A TIFF file in memory: one that is read is borrowed.
struct MemoryFile {
    std::string bytes;
    std::string_view read;
    std::size_t position = 0;
};

MemoryFile& FileOf(thandle_t handle) {
    return *static_cast<MemoryFile*>(handle);
}

tmsize_t Read(thandle_t handle, void* out, tmsize_t count) {
    MemoryFile& file = FileOf(handle);
    const std::size_t taken = std::min(static_cast<std::size_t>(count), file.read.size() - file.position);
    std::memcpy(out, file.read.data() + file.position, taken);
    file.position += taken;
    return static_cast<tmsize_t>(taken);
}

tmsize_t Write(thandle_t handle, void* in, tmsize_t count) {
    MemoryFile& file = FileOf(handle);
    const std::size_t end = file.position + static_cast<std::size_t>(count);
    if (file.bytes.size() < end) file.bytes.resize(end);
    std::memcpy(file.bytes.data() + file.position, in, static_cast<std::size_t>(count));
    file.position = end;
    return count;
}

toff_t SizeOf(thandle_t handle) {
    return std::max(FileOf(handle).bytes.size(), FileOf(handle).read.size());
}

toff_t Seek(thandle_t handle, toff_t offset, int from) {
    MemoryFile& file = FileOf(handle);
    const toff_t start = from == SEEK_SET ? 0 : from == SEEK_CUR ? file.position : SizeOf(handle);
    file.position = static_cast<std::size_t>(start + offset);
    return file.position;
}

int Close(thandle_t) {
    return 0;
}

TIFF* Open(MemoryFile& file, const char* mode) {
    return TIFFClientOpen("memory", mode, &file, Read, Write, Seek, Close, SizeOf, nullptr, nullptr);
}

void AppendBytes(png_structp png, png_bytep bytes, png_size_t count) {
    static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<char*>(bytes), count);
}

void TakeBytes(png_structp png, png_bytep bytes, png_size_t count) {
    auto& left = *static_cast<const char**>(png_get_io_ptr(png));
    std::memcpy(bytes, left, count);
    left += count;
}

}  // namespace

void FilterPeers::MuPDFEncode(Text kind, const std::string& data) {
    fz_context* const context = GetContext();
    fz_output* const target = fz_new_output(context, 0, nullptr, Drop, nullptr, nullptr);
    fz_output* const output = kind == Text::cHex       ? fz_new_asciihex_output(context, target)
                              : kind == Text::cASCII85 ? fz_new_ascii85_output(context, target)
                                                       : fz_new_rle_output(context, target);
    fz_write_data(context, output, data.data(), data.size());
    fz_close_output(context, output);
    fz_drop_output(context, output);
    fz_drop_output(context, target);
}

void FilterPeers::MuPDFDecode(Text kind, const std::string& data) {
    fz_context* const context = GetContext();
    fz_stream* const source = StreamOf(data);
    ReadAll(kind == Text::cHex       ? fz_open_ahxd(context, source)
            : kind == Text::cASCII85 ? fz_open_a85d(context, source)
                                     : fz_open_rld(context, source));
    fz_drop_stream(context, source);
}

void FilterPeers::MuPDFDecodeLZW(const std::string& data) {
    fz_stream* const source = StreamOf(data);
    ReadAll(fz_open_lzwd(GetContext(), source, 1, 9, 0, 0));
    fz_drop_stream(GetContext(), source);
}

void FilterPeers::MuPDFDecodeRows(const std::string& data, int columns, int colours) {
    fz_stream* const source = StreamOf(data);
    ReadAll(fz_open_predict(GetContext(), source, 15, columns, colours, 8));
    fz_drop_stream(GetContext(), source);
}

std::string FilterPeers::LibTIFFEncode(Strip kind, const std::string& data) {
    MemoryFile file;
    file.bytes.reserve(data.size());
    TIFF* const image = Open(file, "w");
    const std::size_t rowLength = std::min(cRowLength, data.size());
    const auto rows = static_cast<std::uint32_t>(data.size() / rowLength);
    TIFFSetField(image, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(rowLength));
    TIFFSetField(image, TIFFTAG_IMAGELENGTH, rows);
    TIFFSetField(image, TIFFTAG_ROWSPERSTRIP, rows);
    TIFFSetField(image, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(image, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(image, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(image, TIFFTAG_COMPRESSION, kind == Strip::cLZW ? COMPRESSION_LZW : COMPRESSION_PACKBITS);
    TIFFWriteEncodedStrip(image, 0, const_cast<char*>(data.data()), static_cast<tmsize_t>(data.size()));
    TIFFClose(image);
    return std::move(file.bytes);
}

void FilterPeers::LibTIFFDecode(const std::string& file, std::size_t length) {
    static std::string sBytes;
    sBytes.resize(length);
    MemoryFile memory{"", file};
    TIFF* const image = Open(memory, "r");
    TIFFReadEncodedStrip(image, 0, sBytes.data(), static_cast<tmsize_t>(length));
    TIFFClose(image);
}

std::string FilterPeers::LibPNGEncode(const std::string& rows, int columns, int filter) {
    std::string file;
    file.reserve(rows.size() + rows.size() / 8);
    const std::size_t rowLength = static_cast<std::size_t>(columns) * 3;
    const auto count = static_cast<png_uint_32>(rows.size() / rowLength);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, AppendBytes, nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(columns), count, 8, PNG_COLOR_TYPE_RGB, 0, 0, 0);
    png_set_compression_level(png, 0);
    png_set_filter(png, 0, PNG_FILTER_NONE << filter);
    png_write_info(png, info);
    for (std::size_t i = 0; i < count; ++i) {
        png_write_row(png, reinterpret_cast<png_const_bytep>(rows.data()) + i * rowLength);
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

void FilterPeers::LibPNGDecode(const std::string& file) {
    const char* left = file.data();
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &left, TakeBytes);
    png_set_crc_action(png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
    png_read_info(png, info);
    std::vector<png_byte> row(png_get_rowbytes(png, info));
    for (png_uint_32 i = png_get_image_height(png, info); i > 0; --i) png_read_row(png, row.data(), nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
}
