#pragma once

#include <array>
#include <vector>

#include "framework/streams/GFilterInStream.h"
#include "framework/streams/encodings/GLZWCodes.h"

/// GLZWDecode: strings from codes of 9 to 12 bits, up to the code 257 (ISO 32000-1, 7.4.4).
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
    class Run;

    /// A string of the table: its last part of up to eight bytes, behind an earlier string that is a
    /// multiple of eight bytes long.
    struct String {
        std::uint64_t tail = 0;   // the first byte at the bottom
        std::uint64_t facts = 0;  // in one word, so that a string is written by two stores
    };
    /// What is left of a string that found no room: a byte that repeats, and others behind it.
    struct Rest {
        bool IsEmpty() const { return runLength == 0 && start == end; }
        /// Puts out as much as there is room for and returns where it ends.
        unsigned char* Give(unsigned char* out, const unsigned char* outEnd);

        std::int32_t runLength = 0;
        unsigned char runByte = 0;
        std::int32_t start = 0;
        std::int32_t end = 0;
        std::array<unsigned char, GLZWCodes::cTableSize + sizeof(std::uint64_t)> bytes{};
    };
    /// Where the data stands between two conversions.
    struct State {
        std::uint32_t next;          // the code of the next string
        std::uint32_t width;         // of the next code, in bits
        std::uint32_t previous;      // the last code
        String string;               // for which that stands; empty: the table was just cleared
        std::uint32_t usedBits = 0;  // of the first byte of the input
    };

    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;

    std::uint32_t mEarlyChange;
    std::vector<String> mStrings;
    State mState;
    Rest mRest;
};
