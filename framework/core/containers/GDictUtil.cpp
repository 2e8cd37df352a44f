#include "framework/core/containers/GDictUtil.h"

#include <algorithm>
#include <iterator>

#include "framework/core/memory/GAllocator.h"

namespace {

constexpr std::int32_t cAllocations[] = {
    7,     13,    23,    41,    67,    89,    127,    173,    263,    307,     389,     467,     587,   751,
    937,   1091,  1367,  1709,  2131,  2663,  3329,   4177,   5471,   8219,    10949,   13691,   16433, 19181,
    21911, 27407, 32887, 38371, 43853, 87701, 175433, 350843, 701653, 1403309, 2806597, 5613217,
};
static_assert(std::ranges::is_sorted(cAllocations));
static_assert(cAllocations[0] == GDictUtil::cFirstAllocation);

}  // namespace

long GDictUtil::GetAllocation(long count) {
    const std::int32_t* const found =
        std::lower_bound(std::begin(cAllocations), std::end(cAllocations), count);
    if (found != std::end(cAllocations)) return *found;
    std::int64_t allocation = cAllocations[std::size(cAllocations) - 1];
    while (allocation < count && allocation <= INT32_MAX) allocation *= 2;
    if (allocation > INT32_MAX) GAllocator::ThrowOutOfMemory();
    return static_cast<long>(allocation);
}
