#include "framework/core/bytes/GCharCode.h"

#include <algorithm>

#include "framework/core/bytes/GByteHash.h"

void GCharCode::Append(const unsigned char* bytes, long length) noexcept {
    if (bytes == nullptr) return;
    const long fitting = std::min(length, cMaxLength - mLength);
    if (fitting <= 0) return;
    std::memcpy(mBytes + mLength, bytes, static_cast<std::size_t>(fitting));
    mLength += static_cast<std::int32_t>(fitting);
}

bool GCharCode::operator<(const GCharCode& other) const noexcept {
    const int order =
        std::memcmp(mBytes, other.mBytes, static_cast<std::size_t>(std::min(mLength, other.mLength)));
    return order != 0 ? order < 0 : mLength < other.mLength;
}

std::uint32_t GCharCode::GetHash() const noexcept {
    return GByteHash::Of(mBytes, mLength);
}
