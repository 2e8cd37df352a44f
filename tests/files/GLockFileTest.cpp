#include "framework/files/GLockFile.h"

#include "tests/files/TestFolder.h"

namespace {

using LockType = GLockFile::LockType;
constexpr LockType cRead = GLockFile::cReadLock, cWrite = GLockFile::cWriteLock;

using GLockFileTest = FolderTest;

TEST_F(GLockFileTest, ReadersGoTogetherAndAWriterAlone) {
    const std::tuple<LockType, LockType, bool> rows[] = {
        {cRead, cRead, true}, {cRead, cWrite, false}, {cWrite, cRead, false}, {cWrite, cWrite, false}};
    for (const auto& [held, wanted, together] : rows) {
        SCOPED_TRACE(10 * held + wanted);
        GLockFile holder(mFolder.Portable("lock")), other(mFolder.Portable("lock"));
        EXPECT_TRUE(holder.Lock(held));
        EXPECT_EQ(other.Lock(wanted), together);
        EXPECT_EQ(other.IsLocked(wanted), together);
        holder.UnLock();
        holder.UnLock();
        EXPECT_EQ(other.Lock(wanted), !together) << "free again";
    }
    EXPECT_EQ(mFolder.Take("lock"), "") << "it stays, empty";
}

TEST_F(GLockFileTest, AnObjectHoldsOneLockAndLetsGoOfItAtItsEnd) {
    const GPathName path = mFolder.Portable("lock");
    GLockFile lock(path);
    EXPECT_FALSE(mFolder.Has("lock") || lock.IsLocked(cRead));
    EXPECT_TRUE(lock.Lock(cRead) && lock.IsLocked(cRead));
    EXPECT_FALSE(lock.Lock(cRead) || lock.Lock(cWrite) || lock.IsLocked(cWrite));
    lock.UnLock();
    {
        GLockFile writer(path);
        EXPECT_TRUE(writer.Lock(cWrite) && writer.IsLocked(cRead) && writer.IsLocked(cWrite));
        EXPECT_FALSE(lock.Lock(cRead));
    }
    EXPECT_TRUE(lock.Lock(cWrite));
    EXPECT_EQ(lock.GetLockFileSpec(), path);
}

/// Throws that number; a GCustomException has a text of its own.
template <class Exception>
auto Fails(long id) {
    return testing::Throws<Exception>(testing::Property(&Exception::GetExceptionID, id));
}

TEST_F(GLockFileTest, APathThatCannotBecomeALockIsAFailureAndNotBusy) {
    mFolder.Put("file", "x");
    GLockFile missing(mFolder.Portable("missing/lock")), inPlace(mFolder.Portable());
    for (const LockType type : {cRead, cWrite}) {
        EXPECT_THAT([&] { missing.Lock(type); }, Fails<GSimpleException>(40092));
        EXPECT_THAT([&] { inPlace.Lock(type); }, Fails<GCustomException>(40092));
        EXPECT_THAT([&] { GLockByFile(mFolder.Portable("missing/lock"), type, true); },
                    Fails<GSimpleException>(40092));
        EXPECT_FALSE(inPlace.IsLocked(type));
    }
    EXPECT_TRUE(GLockFile(mFolder.Portable("file")).Lock(cWrite));
    EXPECT_EQ(mFolder.Take("file"), "x") << "what it holds is left alone";
}

TEST_F(GLockFileTest, IsDeletedOnlyWhenThisObjectHoldsNoLock) {
    GLockFile lock(mFolder.Portable("lock"));
    for (const LockType type : {cRead, cWrite}) {
        lock.DeleteFile();
        EXPECT_FALSE(mFolder.Has("lock"));
        EXPECT_TRUE(lock.Lock(type));
        EXPECT_THAT([&] { lock.DeleteFile(); }, Fails<GSimpleException>(40093));
        EXPECT_TRUE(mFolder.Has("lock"));
        lock.UnLock();
    }
}

TEST_F(GLockFileTest, AGuardHoldsItForItsScope) {
    const GPathName path = mFolder.Portable("lock");
    GLockByFile reader(path, cRead, true);
    EXPECT_TRUE(reader.HasLock());
    EXPECT_TRUE(GLockByFile(path, cRead, true).HasLock());
    GLockByFile writer(path, cWrite, false);
    EXPECT_FALSE(writer.HasLock() || writer.WaitForLock(0) || writer.WaitForLock(1));
    reader.ReleaseLock();
    reader.ReleaseLock();
    EXPECT_FALSE(reader.HasLock());
    EXPECT_TRUE(writer.WaitForLock(150));
    EXPECT_FALSE(GLockByFile(path, cRead, false).HasLock());
}

}  // namespace
