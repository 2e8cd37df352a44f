#pragma once

#include <functional>
#include <string>
#include <vector>

/// One of several ways to do the same work.
struct Contender {
    std::string name;
    std::function<void()> run;  ///< does the work `count` times, see Rounds
};

/// Rounds: measures contenders side by side.
///
/// The contenders take turns, so that what else the machine does hits all of them alike; the median
/// of the rounds is what counts.
class Rounds {
public:
    /// `count` is how often one run of a contender does the work.
    Rounds(int rounds, int count) : mRounds(rounds), mCount(count) {}

    /// The median time of the work for each contender, in microseconds.
    std::vector<double> Measure(const std::vector<Contender>& contenders) const;

private:
    int mRounds;
    int mCount;
};
