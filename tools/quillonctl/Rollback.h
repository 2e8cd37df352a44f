#pragma once

#include <functional>
#include <string>
#include <vector>

/// Rollback: takes back what was done so far unless all of it succeeded.
///
/// Each step that changed something adds how to undo it. When the object goes out of scope before
/// Commit(), the undo functions run, newest first. One that throws a Failure is reported as a
/// warning and the others still run.
class Rollback {
public:
    using Action = std::function<void()>;
    /// Takes a text which is shown to the administrator.
    using Reporter = std::function<void(const std::wstring&)>;

    explicit Rollback(Reporter reporter) : mReporter(std::move(reporter)) {}
    Rollback(const Rollback&) = delete;
    Rollback& operator=(const Rollback&) = delete;
    ~Rollback();

    /// `what` names the change, as in "the copied library".
    void AddUndo(std::wstring what, Action undo);
    /// Adds what is to happen once everything has succeeded, such as dropping a saved copy.
    void AddCompletion(Action completion);
    /// Keeps everything, then runs the completions in their order; a Failure of one is a warning.
    void Commit();

private:
    struct Undo {
        std::wstring what;
        Action action;
    };

    Reporter mReporter;
    std::vector<Undo> mUndos;
    std::vector<Action> mCompletions;
};
