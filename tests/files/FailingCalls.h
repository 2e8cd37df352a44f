#pragma once

#include <functional>

/// FailingCalls: lets calls of the system by which files are copied, moved and removed fail, in this program.
/// One thread.
struct FailingCalls {
    enum class Failure { cNone, cDevice, cOtherVolume };
    enum class Kind { cMove, cRemove, cOther };

    /// Says how each call fails; while this is empty, all work.
    static inline std::function<Failure(Kind)> sChoose;
    static inline bool sHasFailed = false;

    /// For the replaced calls: how this one is to fail.
    static Failure Next(Kind kind) {
        const Failure failure = sChoose ? sChoose(kind) : Failure::cNone;
        sHasFailed = sHasFailed || failure != Failure::cNone;
        return failure;
    }
};
