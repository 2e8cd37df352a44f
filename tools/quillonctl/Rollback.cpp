#include "tools/quillonctl/Rollback.h"

#include "tools/machine/Failure.h"

Rollback::~Rollback() {
    for (auto undo = mUndos.rbegin(); undo != mUndos.rend(); ++undo) {
        try {
            mReporter(L"Taking back " + undo->what + L".");
            undo->action();
        } catch (const Failure& failure) {
            mReporter(L"Warning: " + undo->what + L" could not be taken back. " + failure.GetText());
        }
    }
}

void Rollback::AddUndo(std::wstring what, Action undo) {
    mUndos.push_back({std::move(what), std::move(undo)});
}

void Rollback::AddCompletion(Action completion) {
    mCompletions.push_back(std::move(completion));
}

void Rollback::Commit() {
    mUndos.clear();
    for (const Action& completion : mCompletions) {
        try {
            completion();
        } catch (const Failure& failure) {
            mReporter(L"Warning: " + failure.GetText());
        }
    }
    mCompletions.clear();
}
