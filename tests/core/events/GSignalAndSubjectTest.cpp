#include "framework/core/events/GBasicSignals.h"
#include "framework/core/events/GSignal.h"
#include "framework/core/events/GSubject.h"
#include "framework/core/paths/GPathName.h"
#include "tests/Testing.h"

namespace {

/// Notes its name whenever it is told of something.
class Listener : public GReceiver<GEmptyMessage>, public GObserver {
public:
    Listener(int name, std::vector<int>& log) : mName(name), mLog(log) {}
    void Receive(long number, const GEmptyMessage&) override {
        mNumber = number;
        Note();
    }
    void Update(GSubject&) override { Note(); }

    long mNumber = 0;
    std::function<void()> mReaction;

private:
    void Note() {
        mLog.push_back(mName);
        if (mReaction) mReaction();
    }

    int mName;
    std::vector<int>& mLog;
};

struct GSignalTest : testing::Test {
    GSignalTest() {
        for (Listener* receiver : {&mFirst, &mSecond, &mThird}) mSignal.Subscribe(*receiver);
    }
    std::vector<int> Fire() {
        mLog.clear();
        mSignal.Fire(GEmptyMessage());
        return mLog;
    }

    std::vector<int> mLog;
    GSignal<GEmptyMessage> mSignal{7};
    Listener mFirst{1, mLog}, mSecond{2, mLog}, mThird{3, mLog}, mFourth{4, mLog};
};

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
        {"one comes a second time", [&] { mSignal.Subscribe(mFirst); }, {1, 2, 3}, {1, 2, 3}},
        {"a new one comes", [&] { mSignal.Subscribe(mFourth); }, {1, 2, 3, 4}, {1, 2, 3, 4}}};
    for (const auto& [what, reaction, now, next] : rows) {
        SCOPED_TRACE(what);
        for (Listener* receiver : {&mFirst, &mSecond, &mThird, &mFourth}) mSignal.Unsubscribe(*receiver);
        EXPECT_FALSE(mSignal.IsSubscribed(mFirst));
        for (Listener* receiver : {&mFirst, &mSecond, &mThird}) mSignal.Subscribe(*receiver);
        mSecond.mReaction = reaction;
        EXPECT_EQ(Fire(), now);
        mSecond.mReaction = nullptr;
        EXPECT_EQ(Fire(), next);
        EXPECT_EQ(mSecond.mNumber, 7);
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
    Listener receiver(1, log);
    GBasicSignals::GetRepeaters().Subscribe(receiver);
    GBasicSignals::DevoteTimeToRepeaters();
    GBasicSignals::DevoteTimeToRepeaters();
    GBasicSignals::GetRepeaters().Unsubscribe(receiver);
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_EQ(receiver.mNumber, 101);
    EXPECT_EQ(log.size(), 2u);
}

TEST(GSubject, AValueTellsOfChangesOnly) {
    std::vector<int> log;
    Listener watcher(1, log);
    GSubjectT<GPathName> folder(GPathName("C:/jobs"));
    folder.Attach(watcher);
    folder.Attach(watcher);
    folder.SetValue(GPathName("c:/JOBS"));  // the same folder
    EXPECT_TRUE(log.empty());
    folder.SetValue(GPathName("C:/out"));
    EXPECT_EQ(log, std::vector<int>{1});
    EXPECT_TRUE(folder.GetValue() == GPathName("C:/out"));
    folder.Detach(watcher);
    folder.SetValue(GPathName());
    EXPECT_EQ(log, std::vector<int>{1});
}

TEST(GSubject, ObserversComeGoAndEndWhileTheyAreTold) {
    std::vector<int> log;
    GSubject subject;
    Listener first(1, log), last(3, log), added(4, log);
    auto second = std::make_unique<Listener>(2, log);
    for (Listener* watcher : {&first, second.get(), &last}) {
        GSubject().Attach(*watcher);  // which ends before its observer
        subject.Attach(*watcher);
    }
    first.mReaction = [&] {
        second.reset();
        subject.Attach(added);
        subject.Detach(first);
    };
    subject.Notify();
    EXPECT_EQ(log, (std::vector<int>{1, 3, 4}));
    EXPECT_FALSE(subject.IsAttached(first));
    subject.Notify();
    EXPECT_EQ(log, (std::vector<int>{1, 3, 4, 3, 4}));
}

}  // namespace
