#include "monitor/spooling/JobFileMaker.h"

#include <filesystem>

#include "framework/streams/GFileOutStream.h"
#include "monitor/spooling/JobFileRules.h"
#include "monitor/spooling/ServiceRights.h"
#include "tests/core/TextForTests.h"
#include "tests/core/ThrownBy.h"
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
    const GPathName parent("/Device/Disk1/Temp/anna"), here("/Device/Disk1/Temp/anna/a.ps");
    const auto ofFolder = [&](const GFileFacts& facts) {
        return FaultText(JobFileRules::FindFolderFault(facts, parent));
    };
    const auto ofFile = [&](const GFileFacts& facts) {
        return FaultText(JobFileRules::FindFileFault(facts, parent, GString("a.ps")));
    };
    for (const Owner owner : {Owner::cUser, Owner::cSystem, Owner::cAdministrators, Owner::cTrustedInstaller,
                              Owner::cNotKept, Owner::cOther}) {
        SCOPED_TRACE(static_cast<int>(owner));
        const std::string fault = owner == Owner::cOther ? "it belongs to somebody else" : "none";
        EXPECT_EQ(ofFolder({Kind::cFolder, owner, false, 3, here}), fault);
        EXPECT_EQ(ofFile({Kind::cFile, owner, false, 1, here}), fault);
        EXPECT_EQ(ofFolder({Kind::cFolder, owner, true, 1, here}), "it leads to another place");
        EXPECT_EQ(ofFile({Kind::cFile, owner, true, 1, here}), "it leads to another place");
    }
    ForEachRow<3>({"/Device/Disk1/TEMP/Anna/A.PS -> none -> none",
                   "/Device/Disk1/TEMP/Anna/Long name -> none -> it has another name",
                   "/Device/Disk1/Temp/a.ps -> it lies in another place -> it lies in another place",
                   "/Device/Disk1/Temp/anna/b/a.ps -> it lies in another place -> it lies in another place",
                   " -> it lies in another place -> it lies in another place"},
                  [&](auto path, auto folderFault, auto fileFault) {
                      const GPathName place(GString(std::string(path).c_str()));
                      EXPECT_EQ(ofFolder({Kind::cFolder, Owner::cUser, false, 1, place}), folderFault);
                      EXPECT_EQ(ofFile({Kind::cFile, Owner::cUser, false, 1, place}), fileFault);
                  });
    EXPECT_EQ(ofFile({Kind::cFile, Owner::cUser, false, 2, here}), "it is linked twice");
    for (const Kind kind : {Kind::cFolder, Kind::cFile, Kind::cDevice, Kind::cUnknown}) {
        const GFileFacts facts = {kind, Owner::cSystem, false, 1, here};
        EXPECT_EQ(ofFolder(facts) == "it is no folder", kind != Kind::cFolder);
        EXPECT_EQ(ofFile(facts) == "it is no file", kind != Kind::cFile);
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

struct JobFileMakerTest : testing::Test {
    /// Makes the file, and writes to it.
    std::string Make() {
        GFileOutStream(JobFileMaker(mPlatform).Open(mPath)).Write(GBuffer("the job"));
        return mFolder.ContentOf("a.ps");
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

    /// A link to another place where there is that file; false where nobody may make one.
    bool PutLink(const std::string& there, const std::string& fileInIt) {
        Put("elsewhere" + fileInIt);
        fs::create_directories(mFolder.Standard(there).parent_path());
        std::error_code refused;
        fs::create_directory_symlink(mFolder.Standard("elsewhere"), mFolder.Standard(there), refused);
        return !refused;
    }
    JobFolder mFolder;
    FakeMonitorPlatform mPlatform;
    const JobPath mPath{GString("Proof"), GString("a.txt")};
    const std::string mUser = TextOf(mPath.GetUserName());
    std::string mAside;  // the name that something is to get, relative to the temporary folder
};

TEST_F(JobFileMakerTest, SetsAsideWhatMustNotBeUsedAndPrints) {
    using Changer = std::function<void(GFileFacts&)>;
    const std::string printer = mUser + "/Proof", file = printer + "/a.ps";
    const Changer another = [](GFileFacts& facts) { facts.mOwner = Owner::cOther; };
    const Changer link = [](GFileFacts& facts) { facts.mIsReparsePoint = true; };
    const Changer shortName = [](GFileFacts& facts) { facts.mFinalPath.ReplaceLeaf(GString("longer.ps")); };
    const std::tuple<std::string, std::string, Changer, std::string> rows[] = {
        // what is there, a file in it, how it is changed, the fault
        {mUser, "", nullptr, "it is no folder"},
        {printer, "", nullptr, "it is no folder"},
        {mUser, "/x/f", another, "it belongs to somebody else"},
        {printer, "/a.ps", link, "it leads to another place"},
        {file, "", link, "it leads to another place"},
        {file, "/f", nullptr, "it is no file"},
        {file, "", another, "it belongs to somebody else"},
        {file, "", shortName, "it has another name"},
        {file, "", nullptr, "it is linked twice"}};
    for (const auto& [there, fileInIt, change, fault] : rows) {
        for (const char* ending : {" (set aside 1)", " (set aside 2)"}) {
            SCOPED_TRACE(testing::Message() << there << ": " << fault << ending);
            mAside = there + ending;
            if (fault != "it leads to another place" || !PutLink(there, fileInIt)) {
                Put(there + fileInIt);
                if (change != nullptr) Change(fs::path(there).filename().string(), change);
            }
            if (fault == "it is linked twice")
                fs::create_hard_link(mFolder.Standard(there), mFolder.Standard(std::string("also") + ending));
            EXPECT_EQ(Make(), "the job");
            EXPECT_EQ(mFolder.Take(mAside + fileInIt), "old");
            EXPECT_EQ(mPlatform.TakeEvents(), (Words{"PPMStartDocPort: set aside, " + fault,
                                                     "text " + fs::path(mAside).filename().string()}));
            EXPECT_FALSE(mPlatform.mIsService);
            mPlatform.mOnFacts = nullptr;
            fs::remove_all(mFolder.Standard(there));
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
    const JobPath remote(GString("\\\\server\\Proof"), GString("a.txt"));
    GFileOutStream(JobFileMaker(mPlatform).Open(remote)).Write(GBuffer("from far"));
    EXPECT_EQ(mFolder.Take(mUser + "/server/Proof/a.ps"), "from far");
}

TEST_F(JobFileMakerTest, GivesUpWhereEvenItsOwnIsNotToBeTrusted) {
    for (const std::string& name : {mUser, std::string("Proof"), std::string("a.ps")}) {
        SCOPED_TRACE(name);
        Change(name, [](GFileFacts& facts) { facts.mOwner = Owner::cOther; });
        mAside = "never";
        EXPECT_EQ(ThrownBy([this] { Make(); }), GExceptionID::cCouldNotOpenFile);
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
    EXPECT_EQ(mPlatform.TakeEvents(), (Words{"The rights of the service cannot be taken!"}));
    mPlatform.mCanPutAside = true;
    mPlatform.mCanPutBack = false;
    EXPECT_THROW(RunAsService(mPlatform, [] { throw 7; }), ServiceRightsException);
    EXPECT_EQ(mPlatform.TakeEvents(), (Words{"The rights of the job's user cannot be given back!"}));
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
