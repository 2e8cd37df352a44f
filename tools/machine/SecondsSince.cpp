#include "tools/machine/SecondsSince.h"

#include <algorithm>
#include <cstdint>

namespace {

long long GetTicks(const FILETIME& time) {
    return static_cast<long long>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

}  // namespace

long long SecondsSince(const FILETIME& time) {
    constexpr long long cTicksInSecond = 10000000;
    FILETIME now{};
    ::GetSystemTimeAsFileTime(&now);
    return std::max((GetTicks(now) - GetTicks(time)) / cTicksInSecond, 0LL);
}
