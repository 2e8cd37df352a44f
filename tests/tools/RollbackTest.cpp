#include "tools/quillonctl/Rollback.h"

#include "tests/Testing.h"
#include "tools/machine/Failure.h"

namespace {

using testing::ElementsAre;
using Log = std::vector<std::wstring>;

struct RollbackTest : testing::Test {
    Rollback::Action Note(const wchar_t* text) {
        return [this, text] { mLog.push_back(text); };
    }
    Log mLog;
    const Rollback::Reporter mReport = [this](const std::wstring& text) { mLog.push_back(text); };
};

TEST_F(RollbackTest, AFailureTakesTheStepsBackNewestFirstAndNamesWhatCannotBe) {
    try {
        Rollback rollback(mReport);
        rollback.AddUndo(L"the first", Note(L"undo 1"));
        rollback.AddUndo(L"the second", [] { throw Failure(L"In use."); });
        rollback.AddCompletion(Note(L"completion"));
        throw Failure(L"a later step");
    } catch (const Failure& failure) {
        mLog.push_back(failure.GetText());
    }
    EXPECT_THAT(
        mLog, ElementsAre(L"Taking back the second.", L"Warning: the second could not be taken back. In use.",
                          L"Taking back the first.", L"undo 1", L"a later step"));
}

TEST_F(RollbackTest, CommittingKeepsTheStepsAndCompletesThemInOrder) {
    {
        Rollback rollback(mReport);
        rollback.AddUndo(L"it", Note(L"undo"));
        rollback.AddCompletion(Note(L"completion 1"));
        rollback.AddCompletion([] { throw Failure(L"No space."); });
        rollback.AddCompletion(Note(L"completion 3"));
        rollback.Commit();
    }
    EXPECT_THAT(mLog, ElementsAre(L"completion 1", L"Warning: No space.", L"completion 3"));
}

}  // namespace
