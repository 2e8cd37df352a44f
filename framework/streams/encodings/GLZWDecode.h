#pragma once

#include <vector>

#include "framework/streams/GFilterInStream.h"

/// GLZWDecode: strings from codes of 9 to 12 bits, up to the code 257.
///
/// The table need not be cleared by a first code 256. Behind a full table codes are read on with what it
/// holds, until it is cleared. A code that is not in the table yet is wrong data. Without an end code
/// the data may end behind a whole code and less than a byte of zero bits.
class QUILLON_EXPORT GLZWDecode : public GFilterInStream {
public:
    /// `earlyChange`: 1 when codes grow one code earlier than they must, as is the rule; or 0. Anything
    /// else throws GExceptionID::cInvalidParameter.
    explicit GLZWDecode(GHeldStream<GInStream> source, long earlyChange = 1);

    GLZWDecode* CreateClone() const override;

private:
    /// A string of the table: what its last part of up to eight bytes adds to an earlier one, which is
    /// a multiple of eight bytes long.
    struct String {
        std::uint64_t tail;
        std::uint16_t base;
        std::uint16_t length;
        unsigned char first;
    };
    /// The bits that are not used yet, the next one at the top; below them zeros.
    struct Bits {
        void Refill(GFilterWindow& window);
        void Drop(std::int32_t width);
        void PutBackBytes(GFilterWindow& window);
        // How the data ends that has no whole code any more: zero bits may fill its last byte.
        GFilterStep GetEnd() const noexcept {
            return count < 8 && word == 0 ? GFilterStep::cEnd : GFilterStep::cTruncated;
        }

        std::uint64_t word = 0;
        std::int32_t count = 0;
    };

    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;
    void ClearTable();
    GFilterStep TakeCodes(GFilterWindow& window, Bits& bits);
    bool IsKnown(std::int32_t code) const;
    void AddString(std::int32_t code);
    void PutString(std::int32_t code, unsigned char* out) const;

    std::int32_t mEarlyChange;
    std::vector<String> mStrings;
    std::int32_t mNext = 0;       // the code of the next string
    std::int32_t mWidth = 0;      // of the next code, in bits
    std::int32_t mPrevious = -1;  // the last code, -1: the table was just cleared
    Bits mBits;
};
