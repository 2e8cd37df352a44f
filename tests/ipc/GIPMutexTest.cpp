#include "framework/ipc/GIPMutex.h"

#include "tests/ipc/IPCTestSupport.h"
#include "tests/ipc/PlatformsUnderTest.h"

namespace {

TEST(GIPPrefix, HasFourPrefixesOfSixCharacters) {
    const std::tuple<long, const char*> rows[] = {{-1, nullptr},        {0, "QulDef"}, {1, "QulMtx"},
                                                  {2, "QulShD"},        {3, "QulShL"}, {4, nullptr},
                                                  {0x7FFFFFFF, nullptr}};
    for (const auto& [id, prefix] : rows) EXPECT_STREQ(GIPPrefix::GetPrefix(id), prefix) << id;
}

template <class Imp>
struct GIPMutexTest : testing::Test {
    using Mutex = GIPMutexBase<Imp>;

    /// Whether another thread, which has no hold on the mutex, can take it at once.
    static bool IsFree(const char* identifier) {
        bool taken = false;
        std::thread([&] {
            Mutex other{GShMemID(identifier)};
            taken = other.TryToLock(0);
            if (taken) other.Unlock();
        }).join();
        return taken;
    }
};
TYPED_TEST_SUITE(GIPMutexTest, MutexesUnderTest);

TYPED_TEST(GIPMutexTest, IsHeldFromTheFirstLockToTheLastUnlockUnderItsOwnNameOnly) {
    typename TestFixture::Mutex mutex{GShMemID("TestA")};
    EXPECT_TRUE(this->IsFree("TestA"));
    mutex.Lock();
    EXPECT_TRUE(mutex.TryToLock(0.5));
    mutex.Unlock();
    EXPECT_FALSE(this->IsFree("TestA"));
    EXPECT_TRUE(this->IsFree("TestB"));
    mutex.Unlock();
    EXPECT_TRUE(this->IsFree("TestA"));
    EXPECT_EQ(ThrownBy([&] { mutex.Unlock(); }), 2450);
    typename TestFixture::Mutex otherPrefix(GShMemID("TestA"), GIPPrefix::cSharedMemoryLock);
    otherPrefix.Lock();
    EXPECT_TRUE(this->IsFree("TestA"));
    otherPrefix.Unlock();
    EXPECT_EQ(ThrownBy([] { typename TestFixture::Mutex(GShMemID("TestA"), 4); }), 40162);
}

TYPED_TEST(GIPMutexTest, ALockerHoldsItForItsLifetimeAndThrowsWhenItMayNotWait) {
    typename TestFixture::Mutex mutex{GShMemID("TestA")};
    EXPECT_EQ(ThrownBy([&] {
                  const GIPMutexLocker locker(mutex);
                  std::thread([] {
                      typename TestFixture::Mutex other{GShMemID("TestA")};
                      GWaitBudget budget(0);
                      EXPECT_EQ(ThrownBy([&] { const GIPMutexLocker late(other, &budget); }), 40202);
                  }).join();
                  EXPECT_FALSE(this->IsFree("TestA"));
                  throw GSimpleException(40160);
              }),
              40160);
    EXPECT_TRUE(this->IsFree("TestA"));
}

}  // namespace
