#include "bench/Rounds.h"

#include <algorithm>
#include <chrono>

namespace {

double TimeOf(const std::function<void()>& run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

double Rounds::Median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::ranges::sort(values);
    return values[values.size() / 2];
}

std::vector<Cost> Rounds::Measure(const std::vector<Contender>& contenders) const {
    std::vector<std::vector<double>> times(contenders.size());
    std::vector<std::vector<double>> ratios(contenders.size());
    for (const Contender& contender : contenders) contender.run();  // warms caches and files up
    for (int round = 0; round < mRounds; ++round) {
        for (std::size_t i = 0; i < contenders.size(); ++i) {
            times[i].push_back(TimeOf(contenders[i].run) / mCount);
            ratios[i].push_back(times[0].back() / times[i].back());
        }
    }
    std::vector<Cost> costs;
    for (std::size_t i = 0; i < contenders.size(); ++i)
        costs.push_back({Median(times[i]), Median(ratios[i])});
    return costs;
}
