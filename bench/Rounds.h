#pragma once

#include <functional>
#include <string>
#include <vector>

/// One of several ways to do the same work.
struct Contender {
    std::string name;
    std::function<void()> run;  ///< does the work `count` times, see Rounds
};

/// What a contender takes for the work.
struct Cost {
    double microseconds;  ///< the median of the rounds
    double ratio;         ///< the first contender's time over this one's: the median of the rounds
};

/// Rounds: measures contenders side by side.
///
/// The contenders take turns, so that what else the machine does hits all of them alike. A ratio is taken
/// within a round, whose runs follow one another, and only then the median: of a machine that is busy now
/// and then, most rounds are calm as a whole, or busy as a whole.
class Rounds {
public:
    /// `count` is how often one run of a contender does the work.
    Rounds(int rounds, double count) : mRounds(rounds), mCount(count) {}

    std::vector<Cost> Measure(const std::vector<Contender>& contenders) const;

    /// Of no values, 0.
    static double Median(std::vector<double> values);

private:
    int mRounds;
    double mCount;
};
