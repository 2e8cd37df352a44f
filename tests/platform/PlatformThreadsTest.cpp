#include <mutex>

#include "PPlatformTypes.h"

#include "tests/Testing.h"

TEST(PCriticalSection, IsRecursiveOnItsThreadAndShutsOutOthers) {
    PCriticalSection section;
    const auto otherGetsIn = [&section] {
        bool entered = false;
        std::thread([&] {
            entered = section.TryToLock();
            if (entered) section.Unlock();
        }).join();
        return entered;
    };
    EXPECT_TRUE(otherGetsIn());
    section.Lock();
    EXPECT_TRUE(section.TryToLock());
    EXPECT_FALSE(otherGetsIn());
    section.Unlock();
    EXPECT_FALSE(otherGetsIn()) << "locked twice, unlocked once";
    section.Unlock();
    EXPECT_TRUE(otherGetsIn());
}

TEST(PCriticalSection, GuardsACount) {
    PCriticalSection section;
    long count = 0;
    const auto countUp = [&] {
        for (int i = 0; i < 20000; ++i) {
            const std::lock_guard<PCriticalSection> outer(section), inner(section);
            ++count;
        }
    };
    { const std::jthread threads[] = {std::jthread(countUp), std::jthread(countUp), std::jthread(countUp)}; }
    EXPECT_EQ(count, 60000);
}

TEST(PThreadLocalSlot, EachThreadHasItsOwnPointerAndManyMayComeAndGo) {
    PThreadLocalSlot slot;
    int mine = 0;
    EXPECT_EQ(slot.Get(), nullptr);
    slot.Set(&mine);
    std::thread([&] {
        EXPECT_EQ(slot.Get(), nullptr);
        int theirs = 0;
        slot.Set(&theirs);
        EXPECT_EQ(slot.Get(), &theirs);
    }).join();
    for (int i = 0; i < 5000; ++i) {
        PThreadLocalSlot another;
        EXPECT_EQ(another.Get(), nullptr);
        another.Set(&another);
    }
    EXPECT_EQ(slot.Get(), &mine);
    slot.Set(nullptr);
    EXPECT_EQ(slot.Get(), nullptr);
}
