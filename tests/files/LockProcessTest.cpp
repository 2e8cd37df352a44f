// Lock files between processes.
#include <gtest/gtest.h>

#include "framework/files/GLockFile.h"
#include "framework/system/PSystem.h"
#include "tests/files/TestFolder.h"
#include "tests/tools/ChildProcess.h"

namespace {

/// Another process that takes a lock; it makes a file of its name when it has it.
class Holder {
public:
    Holder(const TestFolder& folder, const std::string& kind, const std::string& name)
        : mFolder(folder), mName(name), mProcess(CommandLine(folder, kind, name), L"NUL", L"NUL") {}

    bool Has() const { return mFolder.Has(mName); }
    /// False when it ends without having got the lock.
    bool WaitUntilItHas() const {
        while (!Has() && mProcess.IsRunning()) PSystem::MilliSleep(1);
        return Has();
    }
    void Kill() const { mProcess.Kill(); }

private:
    static std::wstring CommandLine(const TestFolder& folder, const std::string& kind,
                                    const std::string& name) {
        const std::string line = "LockPeer.exe " + kind + " " + TextOf(folder.Portable("lock")) + " " +
                                 TextOf(folder.Portable(name));
        return std::wstring(line.begin(), line.end());
    }

    const TestFolder& mFolder;
    std::string mName;
    ChildProcess mProcess;
};

TEST(LockProcess, ReadersShareAWriterWaitsAndTheDeadHoldNothing) {
    const TestFolder folder;
    const GPathName path = folder.Portable("lock");
    const Holder first(folder, "read", "first"), second(folder, "read", "second");
    EXPECT_TRUE(first.WaitUntilItHas());
    EXPECT_TRUE(second.WaitUntilItHas());
    EXPECT_TRUE(GLockFile(path).Lock(GLockFile::cReadLock));
    EXPECT_FALSE(GLockFile(path).Lock(GLockFile::cWriteLock));
    const Holder writer(folder, "write", "writer");
    first.Kill();
    EXPECT_FALSE(GLockFile(path).Lock(GLockFile::cWriteLock)) << "one reader is left";
    EXPECT_FALSE(writer.Has());
    second.Kill();
    EXPECT_TRUE(writer.WaitUntilItHas());
    EXPECT_FALSE(GLockFile(path).Lock(GLockFile::cReadLock));
    for (int round = 0; round < 5; ++round) {
        const std::string name = "next" + std::to_string(round);
        const Holder next(folder, "write", name);
        if (round == 0) writer.Kill();
        EXPECT_TRUE(next.WaitUntilItHas());
        EXPECT_FALSE(GLockFile(path).Lock(GLockFile::cReadLock));
        next.Kill();
        EXPECT_TRUE(GLockFile(path).Lock(GLockFile::cReadLock)) << "the killed one has let go";
    }
}

}  // namespace
