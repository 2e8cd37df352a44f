#pragma once

#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GMemoryOutStream.h"
#include "tests/core/ThrownBy.h"
#include "tests/files/TestFolder.h"

/// All byte values, again and again, with a period that no power of two divides.
inline std::string Pattern(std::size_t length) {
    std::string bytes(length, '\0');
    for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

/// Reads to the end in pieces of `size`; checks that every count is that of the buffer.
inline std::string ReadAll(GInStream& stream, long size) {
    std::string all;
    GBuffer piece("left over");
    for (long count = stream.Read(piece, size); count > 0; count = stream.Read(piece, size)) {
        if (count != piece.GetLength() || count > size) return "a count that is not the buffer's";
        all += BytesOf(piece);
    }
    return piece.IsEmpty() ? all : "the buffer was not emptied at the end";
}

/// A source that does no more than it must and delivers at most `piece` bytes at once.
struct PieceStream : GInStream {
    PieceStream(std::string data, long piece) : mData(std::move(data)), mPiece(piece) {}

    GInStream* CreateClone() const override { return new PieceStream(*this); }

    long Read(GBuffer& out, long maxBytes) override {
        if (mBeforeRead) mBeforeRead();
        mLargestRequest = std::max(mLargestRequest, maxBytes);
        const long rest = static_cast<long>(mData.size()) - mPosition;
        const long count = std::min({maxBytes, mPiece, rest});
        out.Clear();
        if (count < 1) return -1;
        out = BufferOf(mData.substr(static_cast<std::size_t>(mPosition), static_cast<std::size_t>(count)));
        mPosition += count;
        return count;
    }

    void Reset() override { mPosition = 0; }

    std::function<void()> mBeforeRead;
    std::string mData;
    long mPiece;
    long mPosition = 0;
    long mLargestRequest = 0;
};

/// A target that is full after `room` bytes.
struct FullStream : GOutStream {
    explicit FullStream(long room) : mRoom(room) {}

    long Write(const GBuffer& data) override {
        const long count = std::min(data.GetLength(), mRoom);
        mRoom -= count;
        mTaken += BytesOf(data).substr(0, static_cast<std::size_t>(count));
        return count;
    }

    long mRoom;
    std::string mTaken;
};
