#include "framework/streams/cipher/GDecryptInStream.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr long cBlock = PCipher::cBlock;

// How many bytes of the last block are data, -1 when its padding is wrong.
long FindDataLength(const PCipher::Block& block) {
    const long padding = block.back();
    if (padding < 1 || padding > cBlock) return -1;
    const bool isPadding =
        std::all_of(block.end() - padding, block.end(), [&](unsigned char byte) { return byte == padding; });
    return isPadding ? cBlock - padding : -1;
}

}  // namespace

GDecryptInStream::GDecryptInStream(GHeldStream<GInStream> source, const GBuffer& key)
    : GFilterInStream(std::move(source), cBlock), mKey(key) {
    PCipher::CheckKey(key);
}

// The clone makes a cipher of its own, which goes on behind the previous block.
GDecryptInStream::GDecryptInStream(const GDecryptInStream& other)
    : GFilterInStream(other), mKey(other.mKey), mPrevious(other.mPrevious), mStarted(other.mStarted) {}

GDecryptInStream::~GDecryptInStream() = default;

GDecryptInStream* GDecryptInStream::CreateClone() const {
    return new GDecryptInStream(*this);
}

void GDecryptInStream::Restart() {
    mStarted = false;
    mCipher.reset();
}

GFilterStep GDecryptInStream::Convert(GFilterWindow& window) {
    if (!mStarted && !TakeStart(window)) {
        return window.isLast ? GFilterStep::cTruncated : GFilterStep::cGoOn;
    }
    if (!mCipher) mCipher = std::make_unique<PCipher>(PCipher::Direction::cDecrypt, mKey, mPrevious);
    // A block is known not to be the last one when a byte stands behind it.
    const long sure = std::max(window.InCount() - 1, 0L) / cBlock * cBlock;
    TakeBlocks(window, std::min(sure, window.OutRoom() / cBlock * cBlock));
    if (!window.isLast || window.InCount() > cBlock || window.OutRoom() < cBlock) return GFilterStep::cGoOn;
    return window.InCount() < cBlock ? GFilterStep::cTruncated : TakeLastBlock(window);
}

bool GDecryptInStream::TakeStart(GFilterWindow& window) {
    if (window.InCount() < cBlock) return false;
    std::copy_n(window.in, mPrevious.size(), mPrevious.begin());
    window.in += cBlock;
    mStarted = true;
    return true;
}

void GDecryptInStream::TakeBlocks(GFilterWindow& window, long count) {
    if (count == 0) return;
    mCipher->Process(window.in, window.out, count);
    window.in += count;
    window.out += count;
    std::copy_n(window.in - cBlock, mPrevious.size(), mPrevious.begin());
}

GFilterStep GDecryptInStream::TakeLastBlock(GFilterWindow& window) {
    PCipher::Block block;
    mCipher->Process(window.in, block.data(), cBlock);
    window.in += cBlock;
    const long length = FindDataLength(block);
    if (length < 0) return GFilterStep::cInvalid;
    std::memcpy(window.out, block.data(), static_cast<std::size_t>(length));
    window.out += length;
    return GFilterStep::cEnd;
}
