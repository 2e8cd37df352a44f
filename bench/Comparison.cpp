#include "bench/Comparison.h"

#include <cstdio>

#include "bench/Rounds.h"

void Comparison::Print(const std::string& what, int count, const std::string& peer,
                       const std::function<void()>& ours, const std::function<void()>& theirs) {
    constexpr int cRounds = 31;
    constexpr double cNanoseconds = 1000;
    const auto medians = Rounds(cRounds, count).Measure({{"ours", ours}, {peer, theirs}});
    std::printf("%-44s %10.2f ns   %-24s %10.2f ns   %5.2f of it\n", what.c_str(), medians[0] * cNanoseconds,
                peer.c_str(), medians[1] * cNanoseconds, medians[0] / medians[1]);
}
