#pragma once

#include <vector>

#include "framework/streams/GFilterInStream.h"

/// GLZWEncode: the reverse of GLZWDecode. The data begins with the code 256, which also clears the table
/// each time it is full, and ends with 257; the last byte is filled with zero bits.
class QUILLON_EXPORT GLZWEncode : public GFilterInStream {
public:
    /// As for GLZWDecode.
    explicit GLZWEncode(GHeldStream<GInStream> source, long earlyChange = 1);

    GLZWEncode* CreateClone() const override;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;
    void ClearTable();
    void TakeByte(GFilterWindow& window, unsigned char byte);
    void PutCode(GFilterWindow& window, std::int32_t code);
    void Finish(GFilterWindow& window);

    std::int32_t mEarlyChange;
    std::vector<std::uint32_t> mSlots;  // strings by hash: prefix (12 bits), byte (8), code (12); 0: free
    std::int32_t mNext = 0;             // the code of the next string
    std::int32_t mWidth = 0;            // of the next code, in bits
    std::int32_t mPrefix = -1;          // the string met so far, -1: none
    std::uint64_t mBits = 0;            // of codes that do not fill four bytes yet, at the bottom
    std::int32_t mBitCount = 0;
    bool mStarted = false;
};
