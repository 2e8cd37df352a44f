#include "receiver/JobIntake.h"

#include <chrono>

#include "receiver/PendingJobs.h"
#include "tests/WindowsTesting.h"
#include "tools/console/Console.h"

namespace {

using testing::ElementsAre;

class JobIntakeTest : public testing::Test {
protected:
    /// A file that was written so many minutes ago.
    void Put(const std::string& path, int age, const char* bytes = "%!PS") {
        std::filesystem::create_directories(mFolder.Standard(path).parent_path());
        const auto now = std::filesystem::file_time_type::clock::now();
        std::filesystem::last_write_time(mFolder.Put(path, bytes), now - std::chrono::minutes(age));
    }
    std::wstring Root() const { return mFolder.Standard("").wstring(); }
    std::vector<std::string> Find(const wchar_t* folder = L"") const {
        std::vector<std::string> found;
        for (const std::wstring& path : PendingJobs::Find(Root() + folder, L"anna"))
            found.push_back(ToUTF8(path.substr(Root().size())));
        return found;
    }
    GPPJobRecord RecordOf(const std::string& path) const {
        return GPPJobRecord("anna", mFolder.Portable(path), "Proof", "Port", 1);
    }

    TestFolder mFolder;
    std::wstring mReported;
    JobIntake mIntake{Root(), false, [this](const std::wstring& line) { mReported += line; }};
};

TEST_F(JobIntakeTest, PendingIsWhatNobodyHasBeenHandedTheOldestFirst) {
    Put("anna/Proof/new.ps", 1);
    Put("anna/Proof/old.PS", 3);
    Put("berta/Other/middle (waiting 4711-3).ps", 2);
    Put("anna/server/Proof/remote.ps", 0);
    for (const char* other :
         {"anna/Proof/a (taken 4711-2).ps", "anna/Proof/a.ps (set aside 1)", "anna (set aside 1)/Proof/a.ps",
          "anna/Proof/a.pdf", "anna/a.ps", "a.ps", "anna/server/Proof/deep/a.ps"})
        Put(other, 0);
    Put("anna/Proof/_.ps", 0, "");
    EXPECT_THAT(Find(), ElementsAre("anna\\Proof\\old.PS", "berta\\Other\\middle (waiting 4711-3).ps",
                                    "anna\\Proof\\new.ps", "anna\\server\\Proof\\remote.ps"));
    EXPECT_THAT(Find(L"missing\\"), ElementsAre());
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"anna\\Proof\\a.ps", L"Proof"},
        {L"anna\\e\u0301\\e\u0301.ps", L"e\u0301"},
        {L"anna\\server\\Proof\\a.ps", L"\\\\server\\Proof"}};
    for (const auto& [path, printer] : rows) {
        const GPPJobRecord record = PendingJobs::MakeRecord(Root() + path, Root());
        EXPECT_EQ(std::wstring(AsWide(record.GetJobPath())), Root() + path);
        EXPECT_EQ(record.GetUserName(), GString("anna"));
        EXPECT_EQ(std::wstring(AsWide(record.GetPrinterName())), printer);
        EXPECT_EQ(record.GetPortName(), GString("QuillonPDFPort:"));
        EXPECT_EQ(record.GetCopyCount(), 1);
    }
}

TEST_F(JobIntakeTest, AJobThatIsPendingAndAnnouncedIsGivenOutOnce) {
    EXPECT_FALSE(mIntake.TakePending()) << "before the program listens";
    EXPECT_TRUE(mIntake.IsLookDue());
    Put("anna/Proof/a.ps", 0);
    EXPECT_TRUE(mIntake.TakePending());
    EXPECT_FALSE(mIntake.TakePending());
    EXPECT_FALSE(mIntake.IsLookDue());
    EXPECT_FALSE(mIntake.TakeAnnounced(RecordOf("anna/Proof/a.ps")));
    // The next one of its title is another job, and one that somebody else has got is still told of.
    Put("anna/Proof/a.ps", 0);
    EXPECT_TRUE(mIntake.TakeAnnounced(RecordOf("anna/Proof/a.ps"))->file.bytes);
    EXPECT_FALSE(mIntake.TakeAnnounced(RecordOf("anna/Proof/a.ps"))->file.bytes);
}

TEST_F(JobIntakeTest, AFileThatTheMonitorHasOpenIsLookedAtAgain) {
    Put("anna/Proof/a.ps", 0);
    EXPECT_FALSE(JobIntake(L"C:\\missing\\", false, {}).TakePending());
    PWin32ScopedHandle<PWin32FileHandle> writer(::CreateFileW(mFolder.Standard("anna/Proof/a.ps").c_str(),
                                                              GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                                              OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(mIntake.TakePending());
    EXPECT_FALSE(mIntake.TakePending());
    while (!mIntake.IsLookDue()) ::Sleep(10);
    writer = {};
    EXPECT_TRUE(mIntake.TakePending());
    EXPECT_FALSE(mIntake.TakePending());
    EXPECT_FALSE(mIntake.IsLookDue());
}

}  // namespace
