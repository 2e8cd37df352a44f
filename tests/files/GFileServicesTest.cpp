// Copying, moving and renaming against a model of a tree, and what else the file system tells and sets.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "PPlatformFiles.h"
#include "framework/core/errors/GException.h"
#include "framework/files/GFileSystem.h"
#include "tests/files/FailingCalls.h"
#include "tests/files/TestFolder.h"

namespace {

std::string DescriptionOf(const auto& call) {
    try {
        call();
    } catch (const GException& failure) {
        return TextOf(failure.GetFullDescription());
    }
    return "nothing thrown";
}

/// What a file is, for comparison.
struct Facts {
    std::string content;
    bool isWritable = true;
    long day = 0;  // of its last change, in a certain month

    auto operator<=>(const Facts&) const = default;
};

/// Two folders with files of few names, and a model of them.
class Tree {
public:
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
            if (kind == 0) GFileSystem::RenameFile(source, name);
            if (kind == 1) GFileSystem::MoveFileTo(source, target);
            if (kind == 2) GFileSystem::CopyFileTo(source, target);
            if (kind == 3) GFileSystem::CopyAndRenameFile(source, target, name);
        };
        const std::string failure = DescriptionOf(run);
        const bool isDone = failure == "nothing thrown";
        EXPECT_TRUE(isDone == allowed || (allowed && FailingCalls::HasFailed()))
            << kind << " " << from << " " << to << " " << failure;
        const std::string location = kind < 2 ? "Moving " : "Copying ";
        EXPECT_TRUE(isDone || failure.starts_with(location)) << failure;
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
            if (isFolder) {
                ++folders;
            } else {
                found[relative] = {mFolder.Take(relative), GFileSystem::IsWritable(path),
                                   GFileSystem::GetModificationDateTime(path).GetDay()};
            }
        }
        EXPECT_EQ(folders, 2);
        EXPECT_TRUE(found == mModel);
    }

private:
    const TestFolder mFolder;
    std::map<std::string, Facts> mModel;
};

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
            if (step == 9) FailingCalls::Arm(1 + static_cast<int>(random() % 6), random() % 3 == 0);
            if (kind < 4) tree.Do(kind, file, pick({"x", "y"}), pick({"a", "b", "c"}));
            failed += FailingCalls::HasFailed();
            FailingCalls::Disarm();
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
    FailingCalls::ArmRemovals();
    const std::string failure =
        DescriptionOf([&] { GFileSystem::MoveFileTo(folder.Portable("f"), folder.Portable("sub")); });
    FailingCalls::Disarm();
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
    EXPECT_NE(DescriptionOf([&] { iterator.GetFirstObject(path, isFolder); }).find("missing"),
              std::string::npos);
}

TEST(GFileServices, SetsDatesAndAttributes) {
    const TestFolder folder;
    folder.Put("f", "x");
    const GPathName path = folder.Portable("f");
    const GDateTime moment(5, 7, 2014, 23, 59, 58, 1, 0, 0);
    GFileSystem::SetModificationDateTime(path, moment);
    EXPECT_EQ(GFileSystem::GetModificationDateTime(path).CompareWith(moment), 0);
    GFileSystem::SetFileAttribute(path, 1);
    EXPECT_EQ(GFileSystem::GetFileAttribute(path) & 1, 1u);
    EXPECT_FALSE(GFileSystem::IsWritable(path));
    GFileSystem::SetFileAttribute(path, 0);
    EXPECT_TRUE(GFileSystem::IsWritable(path));
    const GPathName missing = folder.Portable("missing");
    EXPECT_THROW(GFileSystem::SetModificationDateTime(missing, moment), GException);
    EXPECT_THROW(GFileSystem::GetFileAttribute(missing), GException);
    EXPECT_THROW(GFileSystem::IsWritable(missing), GException);
}

TEST(GFileServices, TellsWhatIsTheSame) {
    const TestFolder folder;
    folder.Put("f", "x");
    folder.Put("g", "x");
    const GPathName f = folder.Portable("f");
    GFileSystem::CreateFolder(folder.Portable("sub"));
    EXPECT_TRUE(GFileSystem::IsSameFileOrFolder(f, folder.Portable("sub/../f")));
    EXPECT_FALSE(GFileSystem::IsSameFileOrFolder(f, folder.Portable("g")));
    EXPECT_TRUE(GFileSystem::IsSameFileOrFolder(folder.Portable(), folder.Portable()));
    EXPECT_THROW(GFileSystem::IsSameFileOrFolder(f, folder.Portable("missing")), GException);
    EXPECT_TRUE(GFileSystem::IsOnSameVolume(f, folder.Portable("not/yet/there")));
    EXPECT_EQ(GFileSystem::GetUNCPath(f), f);
}

TEST(GFileServices, PermissionsAreCopied) {
    const TestFolder folder;
    folder.Put("f", "x");
    folder.Put("g", "x");
    const GPathName f = folder.Portable("f");
    EXPECT_TRUE(GFileSystem::CheckIfOwner(f));
    const GString before = GFileSystem::GetPermissions(f);
    EXPECT_FALSE(before.IsEmpty());
    GFileSystem::CopyPermissions(f, folder.Portable("g"));
    EXPECT_EQ(TextOf(GFileSystem::GetPermissions(folder.Portable("g"))), TextOf(before));
    EXPECT_THROW(GFileSystem::SetPermissions(f, "no permissions"), GException);
    EXPECT_EQ(TextOf(GFileSystem::GetPermissions(f)), TextOf(before));
    EXPECT_THROW(GFileSystem::GetPermissions(folder.Portable("missing")), GException);
}

TEST(GFileServices, AliasesLeadToTheirTargets) {
    const TestFolder folder;
    folder.Put("f", "x");
    const GPathName alias = folder.Portable("to f.lnk");
    GFileSystem::CreateAlias(alias, folder.Portable("f"));
    EXPECT_TRUE(GFileSystem::IsAlias(alias));
    EXPECT_FALSE(GFileSystem::IsAlias(folder.Portable("f")));
    EXPECT_EQ(GFileSystem::GetAliasTarget(alias), folder.Portable("f"));
    EXPECT_TRUE(GFileSystem::AliasHasTarget(alias));
    EXPECT_EQ(TextOf(GFileSystem::GetAliasPermissions(alias)),
              TextOf(GFileSystem::GetPermissions(folder.Portable("f"))));
    EXPECT_TRUE(GFileSystem::CheckIfAliasOwner(alias));
    folder.Put("g", "x");
    GFileSystem::CreateAlias(folder.Portable("to g.lnk"), folder.Portable("g"));
    GFileSystem::CopyAliasPermissions(alias, folder.Portable("to g.lnk"));
    GFileSystem::SetAliasPermissions(alias, GFileSystem::GetPermissions(folder.Portable("g")));
    EXPECT_EQ(TextOf(GFileSystem::GetPermissions(folder.Portable("g"))),
              TextOf(GFileSystem::GetAliasPermissions(alias)));
    EXPECT_THROW(GFileSystem::CreateAlias(alias, folder.Portable("f")), GException);
    const GPathName renamed = GFileSystem::RenameFile(alias, "other");
    EXPECT_EQ(TextOf(renamed.GetLeaf()), "other.lnk");
    GFileSystem::RemoveFile(folder.Portable("f"));
    EXPECT_FALSE(GFileSystem::AliasHasTarget(renamed));
    EXPECT_THROW(GFileSystem::GetAliasTarget(folder.Portable("missing.lnk")), GException);
}

}  // namespace
