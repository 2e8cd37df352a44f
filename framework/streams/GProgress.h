#pragma once

#include "framework/core/GExport.h"

class GProgress;

/// GProgressCentre: where every running GProgress reports to; one for the whole process.
///
/// The plain centre does nothing. An application that shows progress installs its own; it is called
/// on whichever thread does the work. It may throw from Report, a GAbortException to cancel: what
/// it throws passes through the operation that reported.
class QUILLON_EXPORT GProgressCentre {
public:
    GProgressCentre() = default;
    GProgressCentre(const GProgressCentre&) = delete;
    GProgressCentre& operator=(const GProgressCentre&) = delete;
    virtual ~GProgressCentre();

    /// Called when `progress` starts, each time it moves, and never after Finished.
    virtual void Report(const GProgress& progress);
    /// Called once when `progress` goes out of scope, also when an exception passes.
    virtual void Finished(const GProgress& progress) noexcept;

    /// Never null; the plain one is made on first use.
    static GProgressCentre* GetInstance();
    /// Takes ownership of `centre` and deletes the one before. Null, and the framework's end, bring the
    /// plain one back. Not while any GProgress is alive.
    static void SetInstance(GProgressCentre* centre);
};

/// GProgress: a scope object that tells the progress centre how far one operation has got.
///
/// Amounts are in the operation's own unit (bytes for a copy). One thread at a time.
class QUILLON_EXPORT GProgress {
public:
    /// For an operation that cannot know its amount beforehand.
    static constexpr long long cUnknownTotal = -1;

    explicit GProgress(long long total = cUnknownTotal);  ///< reports at once that nothing is done
    GProgress(const GProgress&) = delete;
    GProgress& operator=(const GProgress&) = delete;
    ~GProgress();

    /// Adds `amount` to what is done and reports it.
    void Advance(long long amount);

    /// cUnknownTotal when the operation cannot know it beforehand.
    long long GetTotal() const { return mTotal; }
    long long GetDone() const { return mDone; }  ///< the sum of what was advanced by
    /// Between 0 and 1; 0 while the total is unknown.
    double GetFraction() const;

private:
    GProgressCentre* mCentre;
    long long mTotal;
    long long mDone = 0;
};
