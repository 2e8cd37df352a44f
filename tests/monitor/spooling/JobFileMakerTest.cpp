#include "monitor/spooling/JobFileMaker.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <string>
#include <tuple>

#include "framework/core/errors/GException.h"
#include "framework/streams/GFileOutStream.h"
#include "monitor/spooling/JobFileRules.h"
#include "monitor/spooling/ServiceRights.h"
#include "tests/monitor/spooling/FakeMonitorPlatform.h"
#include "tests/monitor/spooling/JobFolder.h"

namespace {

namespace fs = std::filesystem;
using Kind = GFileFacts::Kind;
using Owner = GFileFacts::Owner;

std::string FaultText(const wchar_t* fault) {
    const std::wstring text = fault != nullptr ? fault : L"PPMStartDocPort: set aside, none";
    return std::string(text.begin() + std::wstring(L"PPMStartDocPort: set aside, ").size(), text.end());
}

TEST(JobFileRules, LetOnlyWhatTheUserOrTheSystemHasMadeHereBeUsed) {
    const GPathName parent("/Device/Disk1/Temp/anna");
    const char* const here = "/Device/Disk1/Temp/anna/a.ps";
    const struct {
        Kind kind;
        Owner owner;
        bool leadsAway;
        std::int32_t links;
        const char* path;
        const char* asFolder;
        const char* asFile;
    } rows[] = {
        {Kind::cFolder, Owner::cUser, false, 1, here, "none", "it is no file"},
        {Kind::cFolder, Owner::cSystem, false, 3, here, "none", "it is no file"},
        {Kind::cFolder, Owner::cAdministrators, false, 1, here, "none", "it is no file"},
        {Kind::cFolder, Owner::cTrustedInstaller, false, 1, here, "none", "it is no file"},
        {Kind::cFolder, Owner::cNotKept, false, 1, here, "none", "it is no file"},
        {Kind::cFolder, Owner::cOther, false, 1, here, "it belongs to somebody else", "it is no file"},
        {Kind::cFolder, Owner::cUser, true, 1, here, "it leads to another place", "it is no file"},
        {Kind::cFolder, Owner::cUser, false, 1, "/Device/Disk1/TEMP/Anna/Long name", "none", "it is no file"},
        {Kind::cFolder, Owner::cUser, false, 1, "/Device/Disk1/Temp/a.ps", "it lies in another place",
         "it is no file"},
        {Kind::cFolder, Owner::cUser, false, 1, "/Device/Disk1/Temp/anna/b/a.ps", "it lies in another place",
         "it is no file"},
        {Kind::cFolder, Owner::cUser, false, 1, "", "it lies in another place", "it is no file"},
        {Kind::cFile, Owner::cUser, false, 1, here, "it is no folder", "none"},
        {Kind::cFile, Owner::cAdministrators, false, 1, "/Device/Disk1/TEMP/Anna/A.PS", "it is no folder",
         "none"},
        {Kind::cFile, Owner::cOther, false, 1, here, "it is no folder", "it belongs to somebody else"},
        {Kind::cFile, Owner::cUser, true, 1, here, "it is no folder", "it leads to another place"},
        {Kind::cFile, Owner::cUser, false, 2, here, "it is no folder", "it is linked twice"},
        {Kind::cFile, Owner::cUser, false, 1, "/Device/Disk1/Temp/bob/a.ps", "it is no folder",
         "it lies in another place"},
        {Kind::cFile, Owner::cUser, false, 1, "/Device/Disk1/Temp/anna/a long title.ps", "it is no folder",
         "it has another name"},
        {Kind::cDevice, Owner::cSystem, false, 1, here, "it is no folder", "it is no file"},
        {Kind::cUnknown, Owner::cOther, false, 0, "", "it is no folder", "it is no file"},
    };
    for (const auto& [kind, owner, leadsAway, links, path, asFolder, asFile] : rows) {
        SCOPED_TRACE(testing::Message() << path << ": " << asFolder << ", " << asFile);
        const GFileFacts facts = {kind, owner, leadsAway, links, GPathName(path)};
        EXPECT_EQ(FaultText(JobFileRules::FindFolderFault(facts, parent)), asFolder);
        EXPECT_EQ(FaultText(JobFileRules::FindFileFault(facts, parent, GString("a.ps"))), asFile);
    }
}

TEST(JobFileRules, NameWhatIsSetAsideSoThatNobodyCanTakeAllNamesBefore) {
    const auto name = [](const std::string& leaf, int attempt, std::uint64_t seed) {
        return TextOf(JobFileRules::MakeSetAsideName(GString(leaf.c_str()), attempt, seed));
    };
    EXPECT_EQ(name("anna", 1, 7), "anna (set aside 1)");
    EXPECT_EQ(name("a.ps", 32, 7), "a.ps (set aside 32)");
    EXPECT_EQ(name("anna", 33, 7), name("anna", 33, 7));
    EXPECT_NE(name("anna", 33, 7), name("anna", 33, 8));
    EXPECT_NE(name("anna", 33, 7), name("anna", 34, 7));
    EXPECT_EQ(name(std::string(255, 'x'), 1, 7), std::string(241, 'x') + " (set aside 1)");
}

class JobFileMakerTest : public testing::Test {
protected:
    JobFileMakerTest() : mUser(TextOf(mPath.GetUserName())) {}

    /// Makes the file, and writes to it.
    std::string Make() {
        GFileOutStream(JobFileMaker(mPlatform).Open(mPath)).Write(GBuffer("the job"));
        return mFolder.ContentOf("a.ps");
    }
    /// The failure of making the file, or 0.
    long MakeFails() {
        try {
            Make();
        } catch (const GException& failure) {
            return failure.GetExceptionID();
        }
        return 0;
    }
    /// Makes what is found under that name look as told, until there is something set aside beside it.
    void Change(const std::string& name, std::function<void(GFileFacts&)> change) {
        mPlatform.mOnFacts = [this, name, change](GFileFacts& facts) {
            if (TextOf(facts.mFinalPath.GetLeaf()) == name && !mFolder.Has(mAside)) change(facts);
        };
    }
    void Put(const std::string& relative) {
        fs::create_directories(mFolder.Standard(relative).parent_path());
        mFolder.Put(relative, "old");
    }

    JobFolder mFolder;
    FakeMonitorPlatform mPlatform;
    const JobPath mPath{GString("Proof"), GString("a.txt")};
    const std::string mUser;
    std::string mAside;  // the name that something is to get, relative to the temporary folder
};

TEST_F(JobFileMakerTest, SetsAsideWhatMustNotBeUsedAndPrints) {
    const std::string printer = mUser + "/Proof";
    const std::string file = printer + "/a.ps";
    const auto another = [](GFileFacts& facts) { facts.mOwner = Owner::cOther; };
    const auto link = [](GFileFacts& facts) { facts.mIsReparsePoint = true; };
    const struct {
        const char* what;
        std::function<void()> prepare;
        std::string aside;  // its content is the old one
        std::string kept;   // the path of a file within it, or nothing
        const char* fault;
    } rows[] = {
        {"a file instead of a folder", [&] { Put(mUser); }, mUser, "", "it is no folder"},
        {"a file further down", [&] { Put(printer); }, printer, "", "it is no folder"},
        {"another's folder",
         [&] {
             Put(mUser + "/x/f");
             Change(mUser, another);
         },
         mUser, "/x/f", "it belongs to somebody else"},
        {"a link to a folder",
         [&] {
             Put(file);
             Change("Proof", link);
         },
         printer, "/a.ps", "it leads to another place"},
        {"a folder instead of the file", [&] { Put(file + "/f"); }, file, "/f", "it is no file"},
        {"another's file",
         [&] {
             Put(file);
             Change("a.ps", another);
         },
         file, "", "it belongs to somebody else"},
        {"a file of two names",
         [&] {
             Put(file);
             fs::remove(mFolder.Standard("other"));
             fs::create_hard_link(mFolder.Standard(file), mFolder.Standard("other"));
         },
         file, "", "it is linked twice"},
        {"taken for another by its short name",
         [&] {
             Put(file);
             Change("a.ps",
                    [](GFileFacts& facts) { facts.mFinalPath.ReplaceLeaf(GString("a long name.ps")); });
         },
         file, "", "it has another name"},
    };
    for (const auto& [what, prepare, aside, kept, fault] : rows) {
        for (const char* ending : {" (set aside 1)", " (set aside 2)"}) {
            SCOPED_TRACE(testing::Message() << what << ending);
            mAside = aside + ending;
            prepare();
            mPlatform.mEvents.clear();
            EXPECT_EQ(Make(), "the job");
            EXPECT_EQ(mFolder.Take(mAside + kept), "old");
            EXPECT_THAT(mPlatform.mEvents,
                        testing::ElementsAre(std::string("PPMStartDocPort: set aside, ") + fault,
                                             "text " + mAside.substr(mAside.find_last_of('/') + 1)));
            EXPECT_FALSE(mPlatform.mIsService);
            mPlatform.mOnFacts = nullptr;
            fs::remove_all(mFolder.Standard(aside));
        }
        fs::remove_all(mFolder.Standard(""));
    }
}

TEST_F(JobFileMakerTest, UsesAndEmptiesWhatIsItsOwn) {
    for (const Owner owner : {Owner::cUser, Owner::cSystem, Owner::cNotKept}) {
        Put(mUser + "/Proof/a.ps");
        mPlatform.mOnFacts = [owner](GFileFacts& facts) { facts.mOwner = owner; };
        EXPECT_EQ(Make(), "the job");
    }
    EXPECT_TRUE(mPlatform.mEvents.empty());
    fs::remove_all(mFolder.Standard(""));
    EXPECT_EQ(Make(), "the job") << "also without a temporary folder";
}

TEST_F(JobFileMakerTest, GivesUpWhereEvenItsOwnIsNotToBeTrusted) {
    for (const std::string& name : {mUser, std::string("Proof"), std::string("a.ps")}) {
        SCOPED_TRACE(name);
        Change(name, [](GFileFacts& facts) { facts.mOwner = Owner::cOther; });
        mAside = "never";
        EXPECT_EQ(MakeFails(), GExceptionID::cCouldNotOpenFile);
        EXPECT_TRUE(mPlatform.mEvents.empty()) << "nothing has been set aside";
        fs::remove_all(mFolder.Standard(mUser));
    }
    const JobPath device(GString("a\\NUL"), GString("a.txt"));
    EXPECT_THROW(JobFileMaker(mPlatform).Open(device), GSimpleException);
    EXPECT_FALSE(mFolder.Has(mUser)) << "nothing is made for a path that is none";
}

TEST_F(JobFileMakerTest, FailsWhenTheRightsCannotBeChanged) {
    mPlatform.mCanPutAside = false;
    EXPECT_THROW(Make(), ServiceRightsException);
    EXPECT_THAT(mPlatform.TakeEvents(), testing::ElementsAre("The rights of the service cannot be taken!"));
    mPlatform.mCanPutAside = true;
    mPlatform.mCanPutBack = false;
    EXPECT_THROW(RunAsService(mPlatform, [] { throw 7; }), ServiceRightsException);
    EXPECT_THAT(mPlatform.TakeEvents(),
                testing::ElementsAre("The rights of the job's user cannot be given back!"));
    mPlatform.mCanPutBack = true;
    EXPECT_THROW(RunAsService(mPlatform,
                              [this] {
                                  EXPECT_TRUE(mPlatform.mIsService);
                                  throw 7;
                              }),
                 int);
    EXPECT_FALSE(mPlatform.mIsService);
}

}  // namespace
