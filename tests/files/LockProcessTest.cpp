// Lock files between processes.

#include "framework/files/GLockFile.h"
#include "framework/system/PSystem.h"
#include "tests/files/TestFolder.h"
#include "tests/ipc/StartPeer.h"

namespace {

/// Another process that takes a lock; it makes a file of its name when it has it.
struct Holder {
    Holder(const TestFolder& folder, const std::string& kind, const std::string& name)
        : mMade(folder.Standard(name)),
          mProcess(StartPeer(kind + "-lock " + TextOf(folder.Portable("lock")) + " " +
                             TextOf(folder.Portable(name)))) {}

    bool Has() const { return std::filesystem::exists(mMade); }
    /// False when it ends without having got the lock.
    bool WaitUntilItHas() const {
        while (!Has() && mProcess->IsRunning()) PSystem::MilliSleep(1);
        return Has();
    }

    const std::filesystem::path mMade;
    const std::unique_ptr<ChildProcess> mProcess;
};

using LockProcessTest = FolderTest;

TEST_F(LockProcessTest, ReadersShareAWriterWaitsAndTheDeadHoldNothing) {
    const GPathName path = mFolder.Portable("lock");
    const Holder first(mFolder, "read", "first"), second(mFolder, "read", "second");
    EXPECT_TRUE(first.WaitUntilItHas());
    EXPECT_TRUE(second.WaitUntilItHas());
    EXPECT_TRUE(GLockFile(path).Lock(GLockFile::cReadLock));
    EXPECT_FALSE(GLockFile(path).Lock(GLockFile::cWriteLock));
    const Holder writer(mFolder, "write", "writer");
    first.mProcess->Kill();
    EXPECT_FALSE(GLockFile(path).Lock(GLockFile::cWriteLock)) << "one reader is left";
    EXPECT_FALSE(writer.Has());
    second.mProcess->Kill();
    EXPECT_TRUE(writer.WaitUntilItHas());
    EXPECT_FALSE(GLockFile(path).Lock(GLockFile::cReadLock));
    writer.mProcess->Kill();
    EXPECT_TRUE(GLockFile(path).Lock(GLockFile::cReadLock));
}

TEST_F(LockProcessTest, HoldersKilledAtAnyMomentHoldNothing) {
    GLockFile lock(mFolder.Portable("lock"));
    std::mt19937 random(5);
    int held = 0;
    for (int kills = 0; kills < QUILLON_TEST_KILLS;) {
        // Readers alone, one to three of them, or with a writer, who waits for them or keeps them out.
        std::vector<std::unique_ptr<Holder>> holders;
        const unsigned readers = 1 + random() % 3;
        const unsigned count = readers + random() % 2;
        for (unsigned i = 0; i < count; ++i, ++kills)
            holders.push_back(std::make_unique<Holder>(mFolder, i < readers ? "read" : "write",
                                                       "holder" + std::to_string(kills)));
        const auto has = [](const auto& holder) { return holder->Has(); };
        // Before, while or after they take the lock.
        if (random() % 4 != 0)
            while (std::ranges::none_of(holders, has) && holders[0]->mProcess->IsRunning())
                PSystem::MilliSleep(1);
        PSystem::MilliSleep(static_cast<long>(random() % 30));
        held += std::ranges::any_of(holders, has) ? 1 : 0;
        std::ranges::shuffle(holders, random);
        for (const auto& holder : holders) holder->mProcess->Kill();
        ASSERT_TRUE(lock.Lock(GLockFile::cWriteLock)) << kills;
        lock.UnLock();
    }
    EXPECT_GT(held, 0);
}

}  // namespace
