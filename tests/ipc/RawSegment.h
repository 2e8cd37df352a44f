#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

/// A named segment as a process sees it that keeps to no rules: all its bytes, the size word included.
class RawSegment {
public:
    /// `name` without its path is "QulShD" and the identifier. Null when there is none.
    static std::unique_ptr<RawSegment> Open(const std::string& path, const std::string& name);
    /// Makes one of `size` bytes in all (a system may round that up, or give one that exists). Null when
    /// refused.
    static std::unique_ptr<RawSegment> Make(const std::string& path, const std::string& name, long size);
    /// `owner` keeps the bytes there.
    RawSegment(std::shared_ptr<void> owner, unsigned char* bytes, long size)
        : mOwner(std::move(owner)), mBytes(bytes), mSize(size) {}

    unsigned char* GetBytes() noexcept { return mBytes; }
    /// The bytes that can be touched.
    long GetSize() const noexcept { return mSize; }
    void SetWord(long offset, std::uint32_t value) { std::memcpy(mBytes + offset, &value, sizeof value); }
    std::uint32_t GetWord(long offset) const {
        std::uint32_t value = 0;
        std::memcpy(&value, mBytes + offset, sizeof value);
        return value;
    }
    std::vector<unsigned char> Copy() const { return Copy(0, mSize); }
    std::vector<unsigned char> Copy(long offset, long count) const {
        return {mBytes + offset, mBytes + offset + count};
    }

private:
    std::shared_ptr<void> mOwner;
    unsigned char* mBytes;
    long mSize;
};
