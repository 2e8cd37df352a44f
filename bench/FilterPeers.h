#pragma once

#include <string>

/// What other programs' code does with the same bytes: MuPDF, libtiff and libpng. Results are dropped.
struct FilterPeers {
    enum class Text { cHex, cASCII85, cRunLength };
    enum class Strip { cLZW, cRunLength };

    static void MuPDFEncode(Text kind, const std::string& data);
    static void MuPDFDecode(Text kind, const std::string& data);
    static void MuPDFDecodeLZW(const std::string& data);
    static void MuPDFDecodeRows(const std::string& data, int columns, int colours);

    /// A file in memory with one strip of the data, and the data of such a file.
    static std::string LibTIFFEncode(Strip kind, const std::string& data);
    static void LibTIFFDecode(const std::string& file, std::size_t length);

    /// Rows of three bytes a pixel under one filter, stored without compression. `filter`: 0 to 4.
    static std::string LibPNGEncode(const std::string& rows, int columns, int filter);
    static void LibPNGDecode(const std::string& file);
};
