#include "bench/Rounds.h"

#include <algorithm>
#include <chrono>

namespace {

double TimeOf(const std::function<void()>& run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

}  // namespace

std::vector<double> Rounds::Measure(const std::vector<Contender>& contenders) const {
    std::vector<std::vector<double>> times(contenders.size());
    for (const Contender& contender : contenders) contender.run();  // warms caches and files up
    for (int round = 0; round < mRounds; ++round) {
        for (std::size_t i = 0; i < contenders.size(); ++i) {
            times[i].push_back(TimeOf(contenders[i].run) / mCount);
        }
    }
    std::vector<double> medians;
    for (const std::vector<double>& rounds : times) medians.push_back(Median(rounds));
    return medians;
}
