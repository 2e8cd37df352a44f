#pragma once

/// @file
/// Rows of images under the filters of PNG.

#include <cstdint>
#include <vector>

/// The tag in front of each PNG row (ISO/IEC 15948): what a byte of the row is counted from.
enum class GPNGTag : unsigned char {
    cNone,
    cSub,      ///< the byte of the pixel to the left
    cUp,       ///< the byte above
    cAverage,  ///< the mean of these two
    cPaeth,    ///< the one of left, above and above left that is nearest to left + above - above left
};

/// GPNGRow: the row being worked on and the one above it, and what filters do between them.
///
/// A row is taken in parts of any size. What lies left of a row and above the first one counts as 0.
/// Memory is taken as bytes come in, whatever length a row is said to have.
class GPNGRow {
public:
    static constexpr unsigned char cTagCount = 5;  ///< the tags are 0 to 4

    static constexpr long cMaxColours = 0xFFFF;  ///< of a pixel; the zeros left of a row are that long

    /// The bytes of a row of so many pixels, without its tag. Throws GExceptionID::cInvalidParameter when
    /// samples cannot have so many bits, or pixels so many samples, and as GBitUtils::RowLength.
    static std::int32_t CheckedLength(long columns, long colours, long bits);

    /// `pixelLength`: bytes from a byte to that of the pixel to its left.
    explicit GPNGRow(std::int32_t pixelLength);

    /// Turns the next `count` bytes of the row into those to be stored; `out` has room for them.
    void Encode(GPNGTag tag, const unsigned char* in, std::int32_t count, unsigned char* out);
    /// The reverse.
    void Decode(GPNGTag tag, const unsigned char* in, std::int32_t count, unsigned char* out);

    /// How many bytes of the row have been taken.
    std::int32_t GetPosition() const { return mPosition; }
    /// The row becomes the one above the next.
    void Finish();
    /// The next row is the first one.
    void Restart();

private:
    void MakeRoom(std::int32_t count);

    std::int32_t mPixelLength;
    std::int32_t mPosition = 0;
    // Both begin with the zeros left of the first pixel.
    std::vector<unsigned char> mRow;
    std::vector<unsigned char> mAbove;
};
