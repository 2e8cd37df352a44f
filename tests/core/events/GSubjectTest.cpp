#include "framework/core/events/GSubject.h"

#include "framework/core/paths/GPathName.h"
#include "tests/Testing.h"

namespace {

class Watcher : public GObserver {
public:
    Watcher(int name, std::vector<int>& log) : mName(name), mLog(log) {}
    void Update(GSubject&) override {
        mLog.push_back(mName);
        if (mReaction) mReaction();
    }
    std::function<void()> mReaction;

private:
    int mName;
    std::vector<int>& mLog;
};

TEST(GSubject, AValueTellsOfChangesOnly) {
    std::vector<int> log;
    Watcher watcher(1, log);
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
    Watcher first(1, log), last(3, log), added(4, log);
    auto second = std::make_unique<Watcher>(2, log);
    for (Watcher* watcher : {&first, second.get(), &last}) {
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
