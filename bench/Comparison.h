#pragma once

#include <functional>
#include <string>

/// Comparison: prints how long our way of doing something takes beside another's, a line each.
class Comparison {
public:
    /// What is compared, and how often a run does it. The ways take turns for so many rounds.
    static void Print(const std::string& what, int count, const std::string& peer,
                      const std::function<void()>& ours, const std::function<void()>& theirs);

    /// Makes the compiler believe that a value is used.
    template <class T>
    static void Use(const T& value) {
        asm volatile("" : : "r,m"(value) : "memory");
    }
};
