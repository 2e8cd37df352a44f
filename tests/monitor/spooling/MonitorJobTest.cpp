#include "monitor/spooling/MonitorJob.h"

#include <optional>

#include "framework/services/GTrace.h"
#include "framework/services/GTraceFile.h"
#include "framework/streams/GMemoryOutStream.h"
#include "monitor/spooling/MonitorPort.h"
#include "tests/monitor/spooling/FakeMonitorPlatform.h"
#include "tests/monitor/spooling/JobFolder.h"

namespace {

constexpr std::uint32_t cLevel1 = 1;

struct MonitorJobTest : testing::Test {
    MonitorJobTest() { mPort.Open(Units(u"QuillonPDFPort:"), &mHandle); }
    ~MonitorJobTest() override { mPort.Reset(); }

    CallbackOutcome Start(const char16_t* title, std::uint32_t jobID = 7) {
        return mJob.Start(Units(u"Proof"), jobID, {cLevel1, Units(title)});
    }
    CallbackOutcome Write(const std::string& data) {
        mWritten = 4711;
        return mJob.Write(mHandle, reinterpret_cast<const unsigned char*>(data.data()),
                          static_cast<std::uint32_t>(data.size()), mWritten);
    }
    void StartUnnoticed(const char16_t* title, const std::string& data) {
        EXPECT_TRUE(Start(title).mSucceeded && Write(data).mSucceeded);
        mPlatform.mEvents.clear();
    }
    void Print(const char16_t* title, const std::string& data) {
        EXPECT_TRUE(Start(title).mSucceeded && Write(data).mSucceeded && mJob.End(mHandle).mSucceeded);
    }
    /// What a job must not have spoilt.
    void ExpectToPrintOn() {
        Print(u"next.txt", "all well");
        EXPECT_EQ(mFolder.ContentOf("next.ps"), "all well");
    }
    bool IsIdle() const {
        return mState.sJobStream == nullptr && mState.sPrinterHandle == nullptr && !mState.sProcessingJob;
    }

    JobFolder mFolder;
    FakeMonitorPlatform mPlatform;
    MonitorState mState;
    MonitorPort mPort{mPlatform, mState};
    MonitorJob mJob{mPlatform, mState, mPlatform};
    void* mHandle = nullptr;
    std::uint32_t mWritten = 0;
};

TEST_F(MonitorJobTest, TakesAJobThroughAllItsStepsInOrder) {
    EXPECT_TRUE(Start(u"Microsoft Word - Q3 report.docx", 41).mSucceeded);
    EXPECT_EQ(mPlatform.TakeEvents(),
              (Words{"tick", "open printer Proof", "text Microsoft Word - Q3 report.docx",
                     "PPMStartDocPort: StartDoc success"}));
    EXPECT_EQ(Start(u"b.txt", 42).mLastError, 170u) << "a second document is refused, but keeps its number";
    EXPECT_TRUE(mState.sProcessingJob);

    std::string all = "%!PS\n";
    for (int byte = 0; byte < 4096; ++byte) all += static_cast<char>(byte);
    EXPECT_TRUE(Write(all).mSucceeded);
    EXPECT_EQ(mWritten, all.size());
    for (const char byte : all) ASSERT_TRUE(Write(std::string(1, byte)).mSucceeded);
    EXPECT_EQ(mPlatform.TakeEvents(), Words());
    EXPECT_TRUE(mFolder.ContentOf("Q3 report.ps") == all + all) << "nothing is held back";

    bool fileWasOpen = false;
    mPlatform.mOnNotify = [&] { fileWasOpen = mState.sJobStream != nullptr; };
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_EQ(mPlatform.TakeEvents(),
              (Words{"tick", "notify Proof QuillonPDFPort: 1", "Notification to PrintProcessor succeeded!",
                     "job 42 sent to printer", "close printer"}));
    EXPECT_TRUE(fileWasOpen) << "the file is closed after the notification";
    EXPECT_TRUE(IsIdle());
    EXPECT_FALSE(mPlatform.mIsService);
    EXPECT_EQ(mPlatform.mJobPath,
              TextOf(mFolder.Portable(mFolder.Job("Q3 report.ps")).GetNativePathString()));
    EXPECT_EQ(mFolder.ContentOf("b.ps"), "no file");
}

TEST_F(MonitorJobTest, WritesTheSameTitleAnewAlsoWhenNobodyWasTold) {
    mPlatform.mReached = false;
    Print(u"a.txt", "the longer first job");
    EXPECT_THAT(mPlatform.mEvents, testing::Contains("Notification to PrintProcessor failed!"));
    EXPECT_THAT(mPlatform.mEvents, testing::Contains("job 7 sent to printer"));
    Print(u"a.txt", "short");
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "short");
    EXPECT_TRUE(Start(u"a.txt").mSucceeded);
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "") << "a job without data";
}

TEST_F(MonitorJobTest, GoesOnWithoutAPrinterAndTellsNobodyOnASystemBeforeNT) {
    mPlatform.mHasPrinter = false;
    Print(u"a.txt", "x");
    EXPECT_EQ(mPlatform.TakeEvents(),
              (Words{"tick", "open printer Proof", "Failed to open printer. No handle.", "text a.txt",
                     "PPMStartDocPort: StartDoc success", "tick", "notify Proof QuillonPDFPort: 1",
                     "Notification to PrintProcessor succeeded!", "job 7 sent to nothing", "close nothing"}));
    mPlatform.mIsNT = false;
    const CallbackOutcome outcome = Start(u"b.txt");
    EXPECT_TRUE(outcome.mSucceeded);
    EXPECT_EQ(outcome.mLastError, 1906u);
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_EQ(mPlatform.mEvents, (Words{"tick", "narrow Pre-NT systems not supported!", "text b.txt",
                                        "PPMStartDocPort: StartDoc success", "tick"}));
    EXPECT_EQ(mFolder.ContentOf("a.ps") + mFolder.ContentOf("b.ps"), "x");
    EXPECT_TRUE(IsIdle());
}

TEST_F(MonitorJobTest, TellsInTheTraceLogWhatBecomesOfAJobAndNothingOfItsContent) {
    mFolder.SwitchTraceOn(TextOf(GTraceFile::GetPath("tpr").GetLeaf()));
    GBuffer log;
    GTrace::SetInstance(new GTrace(std::make_unique<GMemoryOutStream>(log)));
    const std::string file = TextOf(mFolder.Portable(mFolder.Job("a.ps")).GetNativePathString());
    Print(u"a.txt", "secret");
    mPlatform.mHasPrinter = false;
    mPlatform.mReached = false;
    Start(u"a.txt", 8);
    Start(u"b.txt", 9);
    mJob.End(mHandle);
    mPlatform.mHasPrinter = true;
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, mFolder.Portable(mFolder.Job("a.ps")));
    EXPECT_FALSE(Start(u"c.txt", 10).mSucceeded);
    GTrace::SetInstance(nullptr);
    std::string said = JobFolder::WithoutTimes(log.GetPtr());
    const std::size_t last = said.find("\n-JobFailure job 10: " + file);
    ASSERT_NE(last, std::string::npos) << said;
    said.erase(last);
    EXPECT_EQ(said, "\n-Job job 7: begins " + file + "\n-Job job 7: ends with 6 bytes, " + file +
                        "\n-Notification job 7: processing applications told in N ms"
                        "\n-JobFailure job 8: Proof: no such printer\n-Job job 8: begins " +
                        file + "\n-JobFailure job 9: refused, the one before has not ended" +
                        "\n-Job job 9: ends with 0 bytes, " + file +
                        "\n-Notification job 9: nobody told, in N ms");
}

TEST_F(MonitorJobTest, RefusesADocumentWithoutANameOrTakesThePreviousOne) {
    for (const char16_t* title : {static_cast<const char16_t*>(nullptr), u""}) {
        EXPECT_EQ(Start(title).mLastError, 87u);
        EXPECT_FALSE(mState.sProcessingJob || mState.sPrinterHandle != nullptr);
        EXPECT_NE(mState.sJobStream, nullptr) << "the file of the refused job stays open";
        EXPECT_THAT(mPlatform.TakeEvents(), testing::IsSupersetOf({"sDocName is empty!?", "close printer"}));
        mState.sJobStream.reset();
    }
    EXPECT_EQ(mJob.Start(nullptr, 3, {cLevel1, Units(u"b.txt")}).mLastError, 87u);
    EXPECT_EQ(mPlatform.TakeEvents(), (Words{"tick", "sDocName is empty!?",
                                             "sProcessingJob == false at the end of PPMStartDocPort"}));
    EXPECT_EQ(mJob.Start(Units(u"Proof"), 1, {2, nullptr}).mLastError, 87u) << "there is no previous name";
    EXPECT_EQ(mPlatform.TakeEvents(),
              (Words{"tick", "open printer Proof", "Unknown info Level, new OS?", "sDocName is empty!?",
                     "sProcessingJob == false at the end of PPMStartDocPort", "close printer"}));
    Print(u"a.txt", "x");
    EXPECT_TRUE(mJob.Start(Units(u"Proof"), 2, {2, nullptr}).mSucceeded);
    EXPECT_EQ(mState.sJobStream, nullptr) << "no file is made";
    EXPECT_FALSE(Write("y").mSucceeded);
    EXPECT_EQ(mWritten, 0u);
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_TRUE(mJob.Start(nullptr, 3, {cLevel1, Units(u"b.txt")}).mSucceeded)
        << "without a printer name, too";
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "x");
    EXPECT_EQ(mFolder.ContentOf("b.ps"), "no file");
}

TEST_F(MonitorJobTest, RefusesTheJobWhenItsFileCannotBeMade) {
    Print(u"a.txt", "x");
    mFolder.Put("file", "");
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, mFolder.Portable("file"));
    mPlatform.mEvents.clear();
    EXPECT_EQ(Start(u"b.txt").mLastError, 87u);
    EXPECT_EQ(mPlatform.TakeEvents(),
              (Words{"tick", "open printer Proof", "exception in PPMStartDocPort!", "sDocName is empty!?",
                     "sProcessingJob == false at the end of PPMStartDocPort", "close printer"}));
    EXPECT_TRUE(mState.sDocName.IsEmpty());
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, mFolder.Portable());
    ExpectToPrintOn();
}

TEST_F(MonitorJobTest, RefusesToWriteWithoutAJobAPortOrDataAndEndsNothing) {
    const auto* const x = reinterpret_cast<const unsigned char*>("x");
    const auto expectRefusal = [&](const void* port, const unsigned char* data, std::uint32_t size,
                                   std::optional<std::uint32_t> error, const char* word) {
        mWritten = 4711;
        const CallbackOutcome outcome = mJob.Write(port, data, size, mWritten);
        EXPECT_TRUE(!outcome.mSucceeded && outcome.mLastError == error);
        EXPECT_EQ(mWritten, 0u);
        EXPECT_EQ(mPlatform.TakeEvents(), (Words{word}));
    };
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_TRUE(mJob.End(nullptr).mSucceeded);
    EXPECT_EQ(mPlatform.mEvents, Words());
    expectRefusal(mHandle, x, 1, 3003, "PPMWritePort: write when not started?!?");
    expectRefusal(nullptr, x, 0, 3003, "PPMWritePort: write when not started?!?");
    StartUnnoticed(u"a.txt", "x");
    expectRefusal(&mWritten, x, 1, 6, "PPMWritePort: invalid port handle?!?");
    expectRefusal(mHandle, x, 0, std::nullopt, "PPMWritePort: No Data");
    expectRefusal(mHandle, nullptr, 5, std::nullopt, "PPMWritePort: No Data");
    mPort.Close(mHandle);
    mState.sProcessingJob = true;
    expectRefusal(nullptr, x, 1, 6, "PPMWritePort: invalid port handle?!?");  // closed port, null handle
}

/// A disk on which only the first write finds room for all, and the next for so much.
class FullDisk : public GFileOutStream {
public:
    FullDisk(const GFileOutStream& file, long rest) : GFileOutStream(file.GetFile()), mRest(rest) {}
    long Write(const GBuffer& data) override {
        return GFileOutStream::Write(GetPosition() == 0 ? data
                                                        : data.GetSubBuffer(0, std::exchange(mRest, 0)));
    }

private:
    long mRest;
};

TEST_F(MonitorJobTest, ReportsAFullDiskAndPrintsOn) {
    for (const long rest : {0, 6}) {
        EXPECT_TRUE(Start(u"full.txt").mSucceeded);
        mState.sJobStream = std::make_unique<FullDisk>(*mState.sJobStream, rest);
        EXPECT_TRUE(Write("1234").mSucceeded);
        EXPECT_EQ(Write("abcdefgh").mLastError, 39u);
        EXPECT_EQ(mWritten, static_cast<std::uint32_t>(rest));
        EXPECT_EQ(Write("more").mLastError, 39u);
        EXPECT_EQ(mWritten, 0u);
        EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
        EXPECT_EQ(mFolder.ContentOf("full.ps"),
                  "1234" + std::string("abcdef", static_cast<std::size_t>(rest)));
        ExpectToPrintOn();
    }
}

TEST_F(MonitorJobTest, AnEndOnTheWrongPortClosesTheFileOnlyAndAThrowingNotificationEndsTheJob) {
    StartUnnoticed(u"a.txt", "all of it");
    EXPECT_EQ(mJob.End(nullptr).mLastError, 6u);
    EXPECT_EQ(mPlatform.TakeEvents(), (Words{"tick"}));
    EXPECT_EQ(mState.sJobStream, nullptr);
    EXPECT_TRUE(mState.sProcessingJob);
    EXPECT_FALSE(Write("y").mSucceeded) << "there is no file any more";
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "all of it");

    StartUnnoticed(u"c.txt", "this, too");
    mPlatform.mOnNotify = [] { throw std::runtime_error("too large"); };
    EXPECT_THROW(mJob.End(mHandle), std::runtime_error);
    EXPECT_EQ(mPlatform.TakeEvents(), (Words{"tick", "notify Proof QuillonPDFPort: 1", "close printer"}));
    EXPECT_TRUE(IsIdle());
    EXPECT_EQ(mFolder.ContentOf("c.ps"), "this, too");
    mPlatform.mOnNotify = nullptr;
    ExpectToPrintOn();
}

TEST_F(MonitorJobTest, FailsWhenTheThreadLosesTheRightsOfTheUser) {
    StartUnnoticed(u"a.txt", "x");
    mPlatform.mOnNotify = [this] { mPlatform.mCanPutBack = false; };
    EXPECT_EQ(mJob.End(mHandle).mLastError, 1003u);
    EXPECT_EQ(mPlatform.mEvents,
              (Words{"tick", "notify Proof QuillonPDFPort: 1",
                     "The rights of the job's user cannot be given back!", "close printer"}));
    EXPECT_TRUE(IsIdle());
}

TEST_F(MonitorJobTest, AnnouncesThePathOfTheEndLoudlyWhenItIsAnotherThanTheFiles) {
    StartUnnoticed(u"a.txt", "x");
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, mFolder.Portable("other"));
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    const auto native = [this](const std::string& folder) {
        return TextOf(mFolder.Portable(folder + mFolder.Job("a.ps")).GetNativePathString());
    };
    EXPECT_EQ(mPlatform.mJobPath, native("other/"));
    EXPECT_THAT(
        mPlatform.mEvents,
        testing::IsSupersetOf(
            {std::string("PPMEndDocPort: the job file that is announced is not the one that was written!"),
             "text " + native("other/"), "text " + native("")}));
}

TEST_F(MonitorJobTest, ReplacesWhatAnAbandonedJobHasLeftOpen) {
    EXPECT_TRUE(Start(u"a.txt").mSucceeded);
    const std::unique_ptr<GFileOutStream> abandoned(mState.sJobStream.get());
    mPort.Close(mHandle);
    mPort.Open(Units(u"QuillonPDFPort:"), &mHandle);
    mPlatform.mEvents.clear();
    EXPECT_TRUE(Start(u"b.txt").mSucceeded);
    EXPECT_EQ(mPlatform.mEvents, (Words{"tick", "close printer", "open printer Proof", "text b.txt",
                                        "PPMStartDocPort: StartDoc success"}));
    EXPECT_NE(mState.sJobStream, abandoned);
    EXPECT_EQ(abandoned->Write(GBuffer("late")), 4) << "the old file is given up, not closed";
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
}

}  // namespace
