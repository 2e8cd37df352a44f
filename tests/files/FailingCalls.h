#pragma once

#include <utility>

/// FailingCalls: lets calls of the system by which files are copied, moved and removed fail, in this program.
/// One thread.
class FailingCalls {
public:
    enum class Failure { cNone, cDevice, cOtherVolume };
    enum class Kind { cMove, cRemove, cOther };

    /// The n-th call from now on fails; `otherVolume`: as one that should move a file to another volume, if
    /// it is one that moves. All others work.
    static void Arm(int n, bool otherVolume) noexcept {
        Disarm();
        sLeft = n;
        sOtherVolume = otherVolume;
    }
    /// The first call that moves is one to another volume, and none removes anything.
    static void ArmRemovals() noexcept {
        Disarm();
        sRefusesRemovals = true;
    }
    static void Disarm() noexcept {
        sLeft = 0;
        sHasFailed = sRefusesRemovals = false;
    }
    static bool HasFailed() noexcept { return sHasFailed; }

    /// For the replaced calls: how this one is to fail.
    static Failure Next(Kind kind) noexcept {
        const bool moves = kind == Kind::cMove;
        if (sRefusesRemovals) {
            if (moves) return std::exchange(sHasFailed, true) ? Failure::cNone : Failure::cOtherVolume;
            return kind == Kind::cRemove ? Failure::cDevice : Failure::cNone;
        }
        if (sLeft == 0 || --sLeft > 0) return Failure::cNone;
        sHasFailed = true;
        return moves && sOtherVolume ? Failure::cOtherVolume : Failure::cDevice;
    }

private:
    static inline int sLeft = 0;
    static inline bool sHasFailed = false;
    static inline bool sOtherVolume = false;
    static inline bool sRefusesRemovals = false;
};
