#pragma once

#include <functional>

/// FailingCalls: lets calls of the system by which files are copied, moved and removed fail, in this program.
/// One thread.
struct FailingCalls {
    enum class Failure { cNone, cDevice, cOtherVolume };
    enum class Kind { cMove, cRemove, cOther };

    /// From now on `rule` says how each call fails; without one all work.
    static void Choose(std::function<Failure(Kind)> rule = nullptr) {
        sRule = std::move(rule);
        sHasFailed = false;
    }

    /// For the replaced calls: how this one is to fail.
    static Failure Next(Kind kind) {
        const Failure failure = sRule ? sRule(kind) : Failure::cNone;
        sHasFailed = sHasFailed || failure != Failure::cNone;
        return failure;
    }

    static inline std::function<Failure(Kind)> sRule;
    static inline bool sHasFailed = false;  // since the rule was chosen
};
