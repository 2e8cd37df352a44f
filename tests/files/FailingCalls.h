#pragma once

/// FailingCalls: lets the n-th call of the system by which files are copied, moved and removed fail, in this
/// program. One thread.
class FailingCalls {
public:
    enum class Failure { cNone, cDevice, cOtherVolume };

    /// The n-th call from now on fails; `otherVolume`: as one that should move a file to another volume, if
    /// it is one that moves. All others work.
    static void Arm(int n, bool otherVolume) noexcept {
        sLeft = n;
        sHasFailed = false;
        sOtherVolume = otherVolume;
    }
    static void Disarm() noexcept { Arm(0, false); }
    static bool HasFailed() noexcept { return sHasFailed; }

    /// For the replaced calls: how this one is to fail.
    static Failure Next(bool moves = false) noexcept {
        if (sLeft == 0 || --sLeft > 0) return Failure::cNone;
        sHasFailed = true;
        return moves && sOtherVolume ? Failure::cOtherVolume : Failure::cDevice;
    }

private:
    static inline int sLeft = 0;
    static inline bool sHasFailed = false;
    static inline bool sOtherVolume = false;
};
