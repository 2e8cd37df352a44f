// Copying, moving and renaming against a model of a tree, and what else the file system tells and sets.

#include <map>

#include "PPlatformFiles.h"
#include "framework/files/GFileSystem.h"
#include "tests/files/FailingCalls.h"
#include "tests/files/TestFolder.h"

namespace {

/// What a file is, for comparison.
struct Facts {
    std::string content;
    bool isWritable = true;
    long day = 0;  // of its last change, in a certain month

    auto operator<=>(const Facts&) const = default;
};

/// Two folders with files of few names, and a model of them.
struct Tree {
    Tree() {
        GException::Initialize();  // the words of the locations
        for (const char* const folder : {"x", "y"}) GFileSystem::CreateFolder(mFolder.Portable(folder));
        for (const char* const file : {"x/a", "x/b", "y/a"}) {
            mFolder.Put(file, file);
            mModel[file].content = file;
            SetDay(file, 1);
        }
    }
    ~Tree() {
        for (const auto& [file, facts] : mModel) GFileSystem::SetWritable(mFolder.Portable(file), true);
    }
    void SetDay(const std::string& file, long day) {
        if (mModel.count(file) == 0 || !mModel[file].isWritable) return;
        GFileSystem::SetModificationDateTime(mFolder.Portable(file),
                                             GDateTime(day, 7, 2014, 12, 0, 0, 1, 0, 0));
        mModel[file].day = day;
    }
    void ToggleWritable(const std::string& file) {
        if (mModel.count(file) == 0) return;
        mModel[file].isWritable = !mModel[file].isWritable;
        GFileSystem::SetWritable(mFolder.Portable(file), mModel[file].isWritable);
    }
    /// One operation on both. What the model forbids must throw and change nothing, and so must what a
    /// failing call of the system keeps from its end.
    void Do(unsigned kind, const std::string& from, const std::string& folder, const std::string& leaf) {
        const std::string here = from.substr(0, 2);
        const std::string own = from.substr(2);
        const std::string to = kind == 0 ? here + leaf : folder + "/" + (kind == 3 ? leaf : own);
        // To become what it is already is fine.
        const bool stays = kind < 2 && from == to;
        const bool allowed = mModel.count(from) != 0 && (stays || mModel.count(to) == 0);
        const GPathName source = mFolder.Portable(from);
        const GPathName target = mFolder.Portable(folder);
        const auto run = [&] {
            const GString name(leaf.c_str());
            GPathName made;
            if (kind == 0) made = GFileSystem::RenameFile(source, name);
            if (kind == 1) made = GFileSystem::MoveFileTo(source, target);
            if (kind == 2) made = GFileSystem::CopyFileTo(source, target);
            if (kind == 3) made = GFileSystem::CopyAndRenameFile(source, target, name);
            EXPECT_EQ(TextOf(made), TextOf(mFolder.Portable(to)));
        };
        const std::string failure = FailureOf(run);
        const bool isDone = failure == "none";
        EXPECT_TRUE(isDone == allowed || (allowed && FailingCalls::sHasFailed))
            << kind << " " << from << " " << to << " " << failure;
        EXPECT_TRUE(isDone || failure.starts_with(kind < 2 ? "Moving " : "Copying ")) << failure;
        if (!isDone || stays) return;
        mModel[to] = mModel[from];
        if (kind < 2) mModel.erase(from);
    }
    /// Everything that the iterator meets is what the model has.
    void Compare() const {
        std::map<std::string, Facts> found;
        int folders = 0;
        PFileSystemIteratorImp iterator;
        iterator.BeginIterate(mFolder.Portable());
        GPathName path;
        bool isFolder = false;
        while (iterator.GetNextFileOrFolder(path, isFolder)) {
            const std::string relative = TextOf(path.GetRelativePathFrom(mFolder.Portable()));
            folders += isFolder;
            if (isFolder) continue;
            found[relative] = {mFolder.Take(relative), GFileSystem::IsWritable(path),
                               GFileSystem::GetModificationDateTime(path).GetDay()};
        }
        EXPECT_EQ(folders, 2);
        EXPECT_TRUE(found == mModel);
    }

    const TestFolder mFolder;
    std::map<std::string, Facts> mModel;
};

using Failure = FailingCalls::Failure;
using Kind = FailingCalls::Kind;

/// Lets the n-th call fail; `otherVolume`: as one that should move a file to another volume, if it moves one.
auto FailOne(unsigned n, bool otherVolume) {
    return [n, otherVolume](Kind kind) mutable {
        if (n == 0 || --n > 0) return Failure::cNone;
        return kind == Kind::cMove && otherVolume ? Failure::cOtherVolume : Failure::cDevice;
    };
}

TEST(GFileServices, RandomOperationsDoWhatTheModelSaysAlsoWhenACallFails) {
    std::mt19937 random(7);
    const auto pick = [&](std::initializer_list<const char*> names) {
        return std::string(names.begin()[random() % names.size()]);
    };
    int failed = 0;
    for (int sequence = 0; sequence < 500 && !testing::Test::HasFailure(); ++sequence) {
        SCOPED_TRACE(sequence);
        Tree tree;
        for (int step = 0; step < 10; ++step) {
            const std::string file = pick({"x/a", "x/b", "x/c", "y/a", "y/b"});
            const unsigned kind = random() % 6;
            if (kind == 4) tree.SetDay(file, 1 + static_cast<long>(random() % 28));
            if (kind == 5) tree.ToggleWritable(file);
            if (step == 9) FailingCalls::Choose(FailOne(1 + random() % 6, random() % 3 == 0));
            if (kind < 4) tree.Do(kind, file, pick({"x", "y"}), pick({"a", "b", "c"}));
            failed += FailingCalls::sHasFailed;
            FailingCalls::Choose();
        }
        tree.Compare();
    }
    EXPECT_GT(failed, 30);
}

TEST(GFileServices, AMoveToAnotherVolumeThatCanRemoveNothingLosesNothing) {
    GException::Initialize();
    const TestFolder folder;
    folder.Put("f", "x");
    GFileSystem::CreateFolder(folder.Portable("sub"));
    FailingCalls::Choose([moved = false](Kind kind) mutable {
        if (kind == Kind::cMove) return std::exchange(moved, true) ? Failure::cNone : Failure::cOtherVolume;
        return kind == Kind::cRemove ? Failure::cDevice : Failure::cNone;
    });
    const std::string failure =
        FailureOf([&] { GFileSystem::MoveFileTo(folder.Portable("f"), folder.Portable("sub")); });
    FailingCalls::Choose();
    const auto native = [&](const char* path) { return TextOf(folder.Portable(path).GetNativePathString()); };
    EXPECT_TRUE(failure.starts_with("Moving " + native("f") + " to " + native("sub/f") + ": ")) << failure;
    EXPECT_EQ(folder.Take("f"), "x");
    EXPECT_EQ(folder.Take("sub/f"), "x") << "whole, under the target's name alone";
    GFileSystem::RemoveFile(folder.Portable("sub/f"));
    GFileSystem::RemoveFolderOnly(folder.Portable("sub"));
}

TEST(GFileServices, AnIteratorGoesDownAndComesBack) {
    const TestFolder folder;
    GFileSystem::CreateFolder(folder.Portable("sub/empty"));
    folder.Put("sub/f", "x");
    PFileSystemIteratorImp iterator;
    GPathName path("as it was");
    bool isFolder = false;
    EXPECT_FALSE(iterator.GetFirstObject(path, isFolder) || iterator.GetNextFileOrFolder(path, isFolder));
    EXPECT_THROW(iterator.BeginSubIterate(), GException);
    iterator.BeginIterate(folder.Portable());
    EXPECT_FALSE(iterator.GetNextObject(path, isFolder)) << "there was no first";
    EXPECT_EQ(TextOf(path), "as it was");
    EXPECT_TRUE(iterator.GetFirstObject(path, isFolder) && isFolder);
    iterator.BeginSubIterate();
    int count = 0;
    for (bool more = iterator.GetFirstObject(path, isFolder); more;
         more = iterator.GetNextObject(path, isFolder))
        ++count;
    EXPECT_EQ(count, 2);
    iterator.EndIterate();
    EXPECT_FALSE(iterator.GetNextObject(path, isFolder));
    iterator.EndIterate();
    iterator.EndIterate();
    iterator.BeginIterate(folder.Portable("sub/empty"));
    EXPECT_FALSE(iterator.GetNextFileOrFolder(path, isFolder));
    iterator.BeginIterate(folder.Portable("missing"));
    EXPECT_NE(FailureOf([&] { iterator.GetFirstObject(path, isFolder); }).find("missing"), std::string::npos);
}

struct FileServices : FolderTest {
    FileServices() {
        for (const char* const file : {"f", "g"}) mFolder.Put(file, "x");
    }
    const GPathName mFile = mFolder.Portable("f"), mOther = mFolder.Portable("g");
    const GPathName mMissing = mFolder.Portable("missing");
};

TEST_F(FileServices, SetDatesAndAttributes) {
    const GDateTime moment(5, 7, 2014, 23, 59, 58, 1, 0, 0);
    GFileSystem::SetModificationDateTime(mFile, moment);
    EXPECT_EQ(GFileSystem::GetModificationDateTime(mFile).CompareWith(moment), 0);
    for (const unsigned long attributes : {1UL, 0UL}) {
        GFileSystem::SetFileAttribute(mFile, attributes);
        EXPECT_EQ(GFileSystem::GetFileAttribute(mFile) & 1, attributes);
        EXPECT_EQ(GFileSystem::IsWritable(mFile), attributes == 0);
    }
    EXPECT_THROW(GFileSystem::SetModificationDateTime(mMissing, moment), GException);
    EXPECT_THROW(GFileSystem::GetFileAttribute(mMissing), GException);
    EXPECT_THROW(GFileSystem::IsWritable(mMissing), GException);
}

TEST_F(FileServices, TellWhatIsTheSame) {
    GFileSystem::CreateFolder(mFolder.Portable("sub"));
    EXPECT_TRUE(GFileSystem::IsSameFileOrFolder(mFile, mFolder.Portable("sub/../f")));
    EXPECT_FALSE(GFileSystem::IsSameFileOrFolder(mFile, mOther));
    EXPECT_TRUE(GFileSystem::IsSameFileOrFolder(mFolder.Portable(), mFolder.Portable()));
    EXPECT_THROW(GFileSystem::IsSameFileOrFolder(mFile, mMissing), GException);
    EXPECT_TRUE(GFileSystem::IsOnSameVolume(mFile, mFolder.Portable("not/yet/there")));
    EXPECT_EQ(GFileSystem::GetUNCPath(mFile), mFile);
}

TEST_F(FileServices, CopyPermissions) {
    EXPECT_TRUE(GFileSystem::CheckIfOwner(mFile));
    const GString before = GFileSystem::GetPermissions(mFile);
    EXPECT_FALSE(before.IsEmpty());
    GFileSystem::CopyPermissions(mFile, mOther);
    EXPECT_EQ(TextOf(GFileSystem::GetPermissions(mOther)), TextOf(before));
    EXPECT_THROW(GFileSystem::SetPermissions(mFile, "no permissions"), GException);
    EXPECT_EQ(TextOf(GFileSystem::GetPermissions(mFile)), TextOf(before));
    EXPECT_THROW(GFileSystem::GetPermissions(mMissing), GException);
}

TEST_F(FileServices, AliasesLeadToTheirTargets) {
    const GPathName alias = mFolder.Portable("to f.lnk"), other = mFolder.Portable("to g.lnk");
    GFileSystem::CreateAlias(alias, mFile);
    GFileSystem::CreateAlias(other, mOther);
    EXPECT_TRUE(GFileSystem::IsAlias(alias));
    EXPECT_FALSE(GFileSystem::IsAlias(mFile));
    EXPECT_EQ(GFileSystem::GetAliasTarget(alias), mFile);
    EXPECT_TRUE(GFileSystem::AliasHasTarget(alias));
    EXPECT_TRUE(GFileSystem::CheckIfAliasOwner(alias));
    GFileSystem::CopyAliasPermissions(alias, other);
    GFileSystem::SetAliasPermissions(alias, GFileSystem::GetPermissions(mOther));
    EXPECT_EQ(TextOf(GFileSystem::GetAliasPermissions(alias)), TextOf(GFileSystem::GetPermissions(mFile)));
    EXPECT_EQ(TextOf(GFileSystem::GetAliasPermissions(other)), TextOf(GFileSystem::GetPermissions(mFile)));
    EXPECT_THROW(GFileSystem::CreateAlias(alias, mFile), GException);
    const GPathName renamed = GFileSystem::RenameFile(alias, "other");
    EXPECT_EQ(TextOf(renamed.GetLeaf()), "other.lnk");
    GFileSystem::RemoveFile(mFile);
    EXPECT_FALSE(GFileSystem::AliasHasTarget(renamed));
    EXPECT_THROW(GFileSystem::GetAliasTarget(mFolder.Portable("missing.lnk")), GException);
}

}  // namespace
