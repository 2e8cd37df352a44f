#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/Rounds.h"

/// How many times another's cost ours may be. Below 1 ours is ahead. Both are 0 for what is shown for
/// orientation alone.
struct Limits {
    double goal;  ///< what is wanted
    /// `./dev bench --check` fails beyond it. The goal with room for what machines differ in; where the
    /// goal is not reached, what is.
    double bar;

    bool HasGoal() const { return goal != 0; }
};

/// Another way to do the same, and what ours is held to beside it.
struct Peer {
    std::string name;
    Limits limits;
    std::function<void()> run;
};

/// What is measured.
struct Work {
    std::string what;         ///< one line of a plot, if it comes in several sizes
    long size = 0;            ///< bytes or elements; 0 when there is no such thing
    double count = 1;         ///< of these in one run
    const char* unit = "ns";  ///< of the cost of one: ns, us, ms, or us/MiB, which counts mebibytes
    int rounds = 31;
};

/// Comparison: what our way of doing something costs beside others', a row of a table for each of them.
///
/// The rows are printed, and added to the file that the environment names in BENCH_ROWS, each as a JSON
/// object on a line of its own.
class Comparison {
public:
    /// Measures and reports. What is beyond a bar is measured again, twice at most, and the best counts: what
    /// has become slower stays so, what the machine did meanwhile does not.
    static void Run(const Work& work, const std::function<void()>& ours, const std::vector<Peer>& peers);

    /// Reports what was measured in another way: both costs in the unit, and the ratio to judge by.
    static void Report(const Work& work, const std::string& peer, const Limits& limits, double ours,
                       double theirs, double ratio);

    /// Makes the compiler believe that a value is used.
    template <class T>
    static void Use(const T& value) {
        asm volatile("" : : "r,m"(value) : "memory");
    }
};
