#pragma once

/// @file
/// Steps that must all run, whatever fails.

#include <exception>

/// GFirstFailure: for steps that must not keep each other from running.
///
///     GFirstFailure failure;
///     failure.Run([&] { SendWhatWaits(); });
///     failure.Run([&] { ReceiveWhatCame(); });
///     failure.Throw();
///
/// Whatever a step throws is kept, of several the first. One thread.
class GFirstFailure {
public:
    /// True when the step threw nothing.
    template <class Step>
    bool Run(Step step) {
        try {
            step();
            return true;
        } catch (...) {
            Keep();
            return false;
        }
    }
    /// To be called while an exception is being handled: keeps it, unless one is kept already.
    void Keep() noexcept {
        if (!mFailure) mFailure = std::current_exception();
    }
    bool IsEmpty() const noexcept { return !mFailure; }  ///< whether every step went well so far
    /// Throws what was kept; does nothing when every step went well.
    void Throw() const {
        if (mFailure) std::rethrow_exception(mFailure);
    }

private:
    std::exception_ptr mFailure;
};

/// Runs a step that must go on, whatever it throws, because nobody is left to be told: in destructors and
/// while another failure is on its way. True when it threw nothing.
template <class Step>
bool RunQuietly(Step step) noexcept {
    try {
        step();
        return true;
    } catch (...) {
        return false;
    }
}
