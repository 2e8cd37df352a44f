#include "monitor/spooling/RunCallback.h"

#include "tests/monitor/spooling/FakeMonitorPlatform.h"

namespace {

struct RunCallbackTest : testing::Test {
    template <class Body>
    bool Run(CallbackFailure failure, Body body) {
        return RunCallback(mPlatform, mState, L"PPMTest", failure, [&] {
            mPlatform.mLastError = 5;  // what the work leaves behind
            return body();
        });
    }
    bool IsLockFree() {
        bool free = false;
        std::thread([&] {
            free = mState.sMonitorLock.TryToLock();
            if (free) mState.sMonitorLock.Unlock();
        }).join();
        return free;
    }

    FakeMonitorPlatform mPlatform;
    MonitorState mState;
};

TEST_F(RunCallbackTest, LeavesTheLastErrorUnlessTheOutcomeNamesOne) {
    constexpr std::uint32_t cUntouched = FakeMonitorPlatform::cUntouched;
    const std::tuple<CallbackOutcome, std::uint32_t> rows[] = {{CallbackOutcome::Success(), cUntouched},
                                                               {CallbackOutcome::Failure(39), 39},
                                                               {CallbackOutcome::SilentFailure(), cUntouched},
                                                               {{true, 1906}, 1906}};
    for (const auto& [outcome, lastError] : rows) {
        mPlatform.mLastError = cUntouched;
        EXPECT_EQ(Run({1003}, [&] { return outcome; }), outcome.mSucceeded);
        EXPECT_EQ(mPlatform.mLastError, lastError);
    }
}

TEST_F(RunCallbackTest, TracesLocksAndTurnsAnyExceptionIntoTheFailureCodeUnlessAskedToLetItOut) {
    EXPECT_FALSE(Run({14}, [&]() -> CallbackOutcome {
        EXPECT_EQ(mPlatform.mEvents, (Words{"PPMTest"}));
        EXPECT_FALSE(IsLockFree());
        throw std::runtime_error("lost");
    }));
    EXPECT_EQ(mPlatform.mLastError, 14u);
    EXPECT_TRUE(IsLockFree());
    EXPECT_FALSE(Run({1003}, []() -> CallbackOutcome { throw 7; }));
    EXPECT_EQ(mPlatform.mLastError, 1003u);
    EXPECT_THROW(Run({}, []() -> CallbackOutcome { throw std::runtime_error("lost"); }), std::runtime_error);
    EXPECT_TRUE(IsLockFree());
}

}  // namespace
