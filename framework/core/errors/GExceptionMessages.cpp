#include "framework/core/errors/GExceptionMessages.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr GStringPoolRow cMessages[] = {
#include "framework/core/errors/GExceptionMessages.inc"
};

static_assert(std::size(cMessages) == 141);
static_assert(std::adjacent_find(std::begin(cMessages), std::end(cMessages),
                                 [](const GStringPoolRow& a, const GStringPoolRow& b) {
                                     return a.mID >= b.mID;
                                 }) == std::end(cMessages),
              "numbers rise, so that a text is found by halving");

}  // namespace

const GStringPoolRow* GExceptionMessages::GetRows() {
    return cMessages;
}

long GExceptionMessages::GetCount() {
    return static_cast<long>(std::size(cMessages));
}
