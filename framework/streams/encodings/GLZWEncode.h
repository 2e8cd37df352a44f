#pragma once

#include <vector>

#include "framework/streams/GFilterInStream.h"
#include "framework/streams/encodings/GLZWCodes.h"

/// GLZWEncode: the reverse of GLZWDecode. The data begins with the code 256, which also clears the table
/// each time it is full, and ends with 257; the last byte is filled with zero bits.
class QUILLON_EXPORT GLZWEncode : public GFilterInStream {
public:
    /// As for GLZWDecode.
    explicit GLZWEncode(GHeldStream<GInStream> source, long earlyChange = 1);

    GLZWEncode* CreateClone() const override;

private:
    class Run;

    struct State {
        std::int32_t next = 0;  // the code of the next string; 0: nothing is written yet
        std::int32_t width = GLZWCodes::cFirstWidth;  // of the next code, in bits
        std::int32_t prefix = -1;                     // the string met so far, -1: none
        std::uint64_t bits = 0;                       // of codes that do not fill a byte yet, at the bottom
        std::int32_t bitCount = 0;
    };

    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;

    std::int32_t mEarlyChange;
    std::vector<std::uint32_t> mSlots;  // strings by hash: prefix (12 bits), byte (8), code (12); 0: free
    State mState;
};
