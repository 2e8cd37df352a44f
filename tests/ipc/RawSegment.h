#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "framework/core/bytes/GBuffer.h"

/// A named segment as a process sees it that keeps to no rules: all its bytes, the size word included.
class RawSegment {
public:
    virtual ~RawSegment() = default;
    RawSegment(const RawSegment&) = delete;
    RawSegment& operator=(const RawSegment&) = delete;

    /// `name` without its path is "QulShD" and the identifier. Null when there is none.
    static std::unique_ptr<RawSegment> Open(const std::string& path, const std::string& name);
    /// Makes one of `size` bytes in all (a system may round that up), which must not exist.
    static std::unique_ptr<RawSegment> Make(const std::string& path, const std::string& name, long size);

    unsigned char* GetBytes() noexcept { return mBytes; }
    /// The bytes that can be touched.
    long GetSize() const noexcept { return mSize; }
    void SetWord(long offset, std::uint32_t value) {
        for (int i = 0; i < 4; ++i) mBytes[offset + i] = static_cast<unsigned char>(value >> (8 * i));
    }
    std::uint32_t GetWord(long offset) const {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) value |= std::uint32_t{mBytes[offset + i]} << (8 * i);
        return value;
    }
    std::vector<unsigned char> Copy() const { return {mBytes, mBytes + mSize}; }
    std::vector<unsigned char> Copy(long offset, long count) const {
        return {mBytes + offset, mBytes + offset + count};
    }

protected:
    RawSegment() = default;

    unsigned char* mBytes = nullptr;
    long mSize = 0;
};
