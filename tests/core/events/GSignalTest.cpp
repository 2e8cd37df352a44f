#include "framework/core/events/GSignal.h"

#include "framework/core/events/GBasicSignals.h"
#include "tests/Testing.h"

namespace {

using Signal = GSignal<GEmptyMessage>;

class Recorder : public GReceiver<GEmptyMessage> {
public:
    Recorder(int name, std::vector<int>& log) : mName(name), mLog(log) {}
    void Receive(long number, const GEmptyMessage&) override {
        mLog.push_back(mName);
        mNumber = number;
        if (mReaction) mReaction();
    }

    long mNumber = 0;
    std::function<void()> mReaction;

private:
    int mName;
    std::vector<int>& mLog;
};

struct GSignalTest : testing::Test {
    GSignalTest() {
        for (Recorder* receiver : {&mFirst, &mSecond, &mThird}) mSignal.Subscribe(*receiver);
    }
    std::vector<int> Fire() {
        mLog.clear();
        mSignal.Fire(GEmptyMessage());
        return mLog;
    }

    std::vector<int> mLog;
    Signal mSignal{7};
    Recorder mFirst{1, mLog}, mSecond{2, mLog}, mThird{3, mLog}, mFourth{4, mLog};
};

TEST_F(GSignalTest, TellsEachReceiverOnceInOrderOfSubscription) {
    mSignal.Subscribe(mFirst);
    EXPECT_EQ(Fire(), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(mThird.mNumber, 7);
    mSignal.Unsubscribe(mFirst);
    mSignal.Unsubscribe(mFirst);
    EXPECT_FALSE(mSignal.IsSubscribed(mFirst));
}

TEST_F(GSignalTest, ReceiversComeAndGoWhileItIsDelivered) {
    bool fires = true;
    const auto fireOnce = [&] {
        if (std::exchange(fires, false)) mSignal.Fire(GEmptyMessage());
    };
    const std::tuple<const char*, std::function<void()>, std::vector<int>, std::vector<int>> rows[] = {
        {"it is fired from a receiver", fireOnce, {1, 2, 1, 2, 3, 3}, {1, 2, 3}},
        {"the one itself goes", [&] { mSignal.Unsubscribe(mSecond); }, {1, 2, 3}, {1, 3}},
        {"the next one goes", [&] { mSignal.Unsubscribe(mThird); }, {1, 2}, {1, 2}},
        {"the one before goes", [&] { mSignal.Unsubscribe(mFirst); }, {1, 2, 3}, {2, 3}},
        {"a new one comes", [&] { mSignal.Subscribe(mFourth); }, {1, 2, 3, 4}, {1, 2, 3, 4}}};
    for (const auto& [what, reaction, now, next] : rows) {
        SCOPED_TRACE(what);
        for (Recorder* receiver : {&mFirst, &mSecond, &mThird, &mFourth}) mSignal.Unsubscribe(*receiver);
        for (Recorder* receiver : {&mFirst, &mSecond, &mThird}) mSignal.Subscribe(*receiver);
        mSecond.mReaction = reaction;
        EXPECT_EQ(Fire(), now);
        mSecond.mReaction = nullptr;
        EXPECT_EQ(Fire(), next);
    }
}

TEST_F(GSignalTest, OneThatThrowsDoesNotCostTheOthersTheirTurn) {
    mFirst.mReaction = [] { throw std::runtime_error("first"); };
    mThird.mReaction = [] { throw std::logic_error("third"); };
    EXPECT_THROW(Fire(), std::runtime_error);
    EXPECT_EQ(mLog, (std::vector<int>{1, 2, 3}));
}

TEST(GBasicSignals, TheRepeaterSignalIs101) {
    std::vector<int> log;
    Recorder receiver(1, log);
    GBasicSignals::GetRepeaters().Subscribe(receiver);
    GBasicSignals::DevoteTimeToRepeaters();
    GBasicSignals::DevoteTimeToRepeaters();
    GBasicSignals::GetRepeaters().Unsubscribe(receiver);
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_EQ(receiver.mNumber, 101);
    EXPECT_EQ(log.size(), 2u);
}

}  // namespace
