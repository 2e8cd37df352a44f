#include "monitor/MonitorJob.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>

#include "monitor/MonitorPort.h"
#include "tests/monitor/FakeJobNotifier.h"
#include "tests/monitor/FakeMonitorPlatform.h"
#include "tests/monitor/JobFolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t cLevel1 = 1;

class MonitorJobTest : public testing::Test {
protected:
    MonitorJobTest() { mPort.Open(Units(u"QuillonPDFPort:"), &mHandle); }
    ~MonitorJobTest() override { mPort.Reset(); }

    CallbackOutcome Start(const char16_t* title, std::uint32_t jobID = 7) {
        return mJob.Start(Units(u"Proof"), jobID, {cLevel1, Units(title)});
    }
    CallbackOutcome Write(const std::string& data) { return WriteTo(mHandle, data); }
    CallbackOutcome WriteTo(const void* port, const std::string& data) {
        mWritten = 4711;
        return mJob.Write(port, reinterpret_cast<const unsigned char*>(data.data()),
                          static_cast<std::uint32_t>(data.size()), mWritten);
    }
    void Print(const char16_t* title, const std::string& data) {
        EXPECT_TRUE(Start(title).mSucceeded);
        EXPECT_TRUE(Write(data).mSucceeded);
        EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    }

    JobFolder mFolder;
    FakeMonitorPlatform mPlatform;
    FakeJobNotifier mNotifier{mPlatform.mEvents};
    MonitorState mState;
    MonitorPort mPort{mPlatform, mState};
    MonitorJob mJob{mPlatform, mState, mNotifier};
    void* mHandle = nullptr;
    std::uint32_t mWritten = 0;
};

TEST_F(MonitorJobTest, TakesAJobThroughAllItsStepsInOrder) {
    EXPECT_TRUE(Start(u"Microsoft Word - Q3 report.docx", 42).mSucceeded);
    EXPECT_THAT(mPlatform.TakeEvents(),
                ElementsAre("tick", "open printer Proof", "text Microsoft Word - Q3 report.docx",
                            "PPMStartDocPort: StartDoc success"));
    EXPECT_TRUE(mState.sProcessingJob);

    EXPECT_TRUE(Write("%!PS\n").mSucceeded);
    EXPECT_EQ(mWritten, 5u);
    EXPECT_TRUE(Write("showpage\n").mSucceeded);
    EXPECT_THAT(mPlatform.TakeEvents(), IsEmpty());
    EXPECT_EQ(mFolder.ContentOf("Q3 report.ps"), "%!PS\nshowpage\n") << "nothing is held back";

    bool fileWasOpen = false;
    mNotifier.mOnNotify = [&] { fileWasOpen = mState.sJobStream != nullptr; };
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_THAT(mPlatform.TakeEvents(), ElementsAre("tick", "notify Proof QuillonPDFPort: 1",
                                                    "Notification to PrintProcessor succeeded!",
                                                    "job 42 sent to printer", "close printer"));
    EXPECT_TRUE(fileWasOpen) << "the file is closed after the notification";
    EXPECT_EQ(mState.sJobStream, nullptr);
    EXPECT_EQ(mState.sPrinterHandle, nullptr);
    EXPECT_FALSE(mState.sProcessingJob);
    EXPECT_TRUE(mNotifier.mJobPath == mFolder.PathOf("Q3 report.ps").GetNativePathString());
}

TEST_F(MonitorJobTest, WritesTheSameTitleAnewAlsoWhenNobodyWasTold) {
    mNotifier.mReached = false;
    Print(u"a.txt", "the longer first job");
    EXPECT_THAT(mPlatform.mEvents, testing::Contains("Notification to PrintProcessor failed!"));
    EXPECT_THAT(mPlatform.mEvents, testing::Contains("job 7 sent to printer"));
    Print(u"a.txt", "short");
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "short");
    EXPECT_TRUE(Start(u"a.txt").mSucceeded);
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "") << "a job without data";
}

TEST_F(MonitorJobTest, GoesOnWithoutAPrinter) {
    mPlatform.mHasPrinter = false;
    Print(u"a.txt", "x");
    EXPECT_THAT(mPlatform.mEvents,
                ElementsAre("tick", "open printer Proof", "Failed to open printer. No handle.", "text a.txt",
                            "PPMStartDocPort: StartDoc success", "tick", "notify Proof QuillonPDFPort: 1",
                            "Notification to PrintProcessor succeeded!", "job 7 sent to nothing"));
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "x");
}

TEST_F(MonitorJobTest, WritesTheFileOnASystemBeforeNTAndTellsNobody) {
    mPlatform.mIsNT = false;
    const CallbackOutcome outcome = Start(u"a.txt");
    EXPECT_TRUE(outcome.mSucceeded);
    EXPECT_EQ(outcome.mLastError, 1906u);
    EXPECT_TRUE(Write("x").mSucceeded);
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_THAT(mPlatform.mEvents, ElementsAre("tick", "narrow Pre-NT systems not supported!", "text a.txt",
                                               "PPMStartDocPort: StartDoc success", "tick"));
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "x");
    EXPECT_FALSE(mState.sProcessingJob);
}

TEST_F(MonitorJobTest, RefusesADocumentWithoutAName) {
    for (const char16_t* title : {static_cast<const char16_t*>(nullptr), u""}) {
        SCOPED_TRACE(title == nullptr ? "null" : "empty");
        mPlatform.mEvents.clear();
        EXPECT_EQ(Start(title).mLastError, 87u);
        EXPECT_FALSE(mState.sProcessingJob);
        EXPECT_EQ(mState.sPrinterHandle, nullptr);
        EXPECT_NE(mState.sJobStream, nullptr) << "the file of the refused job stays open";
        EXPECT_EQ(mPlatform.mEvents.front(), "tick");
        EXPECT_EQ(mPlatform.mEvents[mPlatform.mEvents.size() - 3], "sDocName is empty!?");
        EXPECT_EQ(mPlatform.mEvents[mPlatform.mEvents.size() - 2],
                  "sProcessingJob == false at the end of PPMStartDocPort");
        EXPECT_EQ(mPlatform.mEvents.back(), "close printer");
        mState.sJobStream.reset();
    }
    Print(u"next.txt", "x");
    EXPECT_EQ(mFolder.ContentOf("next.ps"), "x");
}

TEST_F(MonitorJobTest, TakesThePreviousNameForAnUnknownLevelOrWithoutAPrinter) {
    EXPECT_EQ(mJob.Start(nullptr, 3, {cLevel1, Units(u"b.txt")}).mLastError, 87u);
    EXPECT_THAT(mPlatform.TakeEvents(), ElementsAre("tick", "sDocName is empty!?",
                                                    "sProcessingJob == false at the end of PPMStartDocPort"));
    EXPECT_EQ(mJob.Start(Units(u"Proof"), 1, {2, nullptr}).mLastError, 87u) << "there is no previous name";
    EXPECT_THAT(
        mPlatform.TakeEvents(),
        ElementsAre("tick", "open printer Proof", "Unknown info Level, new OS?", "sDocName is empty!?",
                    "sProcessingJob == false at the end of PPMStartDocPort", "close printer"));
    Print(u"a.txt", "x");
    EXPECT_TRUE(mJob.Start(Units(u"Proof"), 2, {2, nullptr}).mSucceeded);
    EXPECT_EQ(mState.sJobStream, nullptr) << "no file is made";
    const CallbackOutcome outcome = Write("y");
    EXPECT_FALSE(outcome.mSucceeded);
    EXPECT_EQ(mWritten, 0u);
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_TRUE(mJob.Start(nullptr, 3, {cLevel1, Units(u"b.txt")}).mSucceeded)
        << "without a printer name, too";
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "x");
    EXPECT_FALSE(GFileSystem::FileExists(mFolder.PathOf("b.ps")));
}

TEST_F(MonitorJobTest, RefusesASecondDocumentButKeepsItsNumber) {
    EXPECT_TRUE(Start(u"a.txt", 7).mSucceeded);
    mPlatform.mEvents.clear();
    EXPECT_EQ(Start(u"b.txt", 8).mLastError, 170u);
    EXPECT_THAT(mPlatform.mEvents, IsEmpty());
    EXPECT_EQ(mState.sJobId, 8u);
    EXPECT_TRUE(Write("x").mSucceeded);
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "x");
    EXPECT_THAT(mPlatform.mEvents, testing::Contains("job 8 sent to printer"));
    EXPECT_FALSE(GFileSystem::FileExists(mFolder.PathOf("b.ps")));
}

TEST_F(MonitorJobTest, RefusesTheJobWhenItsFileCannotBeMade) {
    Print(u"a.txt", "x");
    GPathName inTheWay(mFolder.GetRoot());
    inTheWay.Append("file");
    GFileSystem::CreateFile(inTheWay, GTypeEnums::cNone, true);
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, inTheWay);
    mPlatform.mEvents.clear();
    EXPECT_EQ(Start(u"b.txt").mLastError, 87u);
    EXPECT_THAT(
        mPlatform.TakeEvents(),
        ElementsAre("tick", "open printer Proof", "exception in PPMStartDocPort!", "sDocName is empty!?",
                    "sProcessingJob == false at the end of PPMStartDocPort", "close printer"));
    EXPECT_TRUE(mState.sDocName.IsEmpty());
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, mFolder.GetRoot());
    Print(u"b.txt", "y");
    EXPECT_EQ(mFolder.ContentOf("b.ps"), "y");
}

TEST_F(MonitorJobTest, RefusesToWriteWithoutAJobOrAPortAndEndsNothing) {
    char other;
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_TRUE(mJob.End(nullptr).mSucceeded);
    EXPECT_THAT(mPlatform.mEvents, IsEmpty());
    EXPECT_EQ(Write("x").mLastError, 3003u);
    EXPECT_EQ(mWritten, 0u);
    EXPECT_THAT(mPlatform.TakeEvents(), ElementsAre("PPMWritePort: write when not started?!?"));
    EXPECT_EQ(WriteTo(nullptr, "").mLastError, 3003u) << "the job is asked for first";

    EXPECT_TRUE(Start(u"a.txt").mSucceeded);
    mPlatform.mEvents.clear();
    for (const void* port : {static_cast<const void*>(nullptr), static_cast<const void*>(&other)}) {
        EXPECT_EQ(WriteTo(port, "x").mLastError, 6u);
        EXPECT_EQ(mWritten, 0u);
        EXPECT_THAT(mPlatform.TakeEvents(), ElementsAre("PPMWritePort: invalid port handle?!?"));
    }
    mPort.Close(mHandle);
    mState.sProcessingJob = true;
    EXPECT_EQ(WriteTo(nullptr, "x").mLastError, 6u) << "closed port, null handle";
}

TEST_F(MonitorJobTest, RefusesAWriteWithoutDataAndNamesNoError) {
    EXPECT_TRUE(Start(u"a.txt").mSucceeded);
    mPlatform.mEvents.clear();
    const std::tuple<const unsigned char*, std::uint32_t> rows[] = {
        {reinterpret_cast<const unsigned char*>("x"), 0}, {nullptr, 5}, {nullptr, 0}};
    for (const auto& [data, size] : rows) {
        std::uint32_t written = 4711;
        const CallbackOutcome outcome = mJob.Write(mHandle, data, size, written);
        EXPECT_FALSE(outcome.mSucceeded);
        EXPECT_EQ(outcome.mLastError, std::nullopt);
        EXPECT_EQ(written, 0u);
        EXPECT_THAT(mPlatform.TakeEvents(), ElementsAre("PPMWritePort: No Data"));
    }
}

TEST_F(MonitorJobTest, AnEndOnTheWrongPortClosesTheFileOnly) {
    EXPECT_TRUE(Start(u"a.txt").mSucceeded);
    EXPECT_TRUE(Write("x").mSucceeded);
    mPlatform.mEvents.clear();
    EXPECT_EQ(mJob.End(nullptr).mLastError, 6u);
    EXPECT_THAT(mPlatform.TakeEvents(), ElementsAre("tick"));
    EXPECT_EQ(mState.sJobStream, nullptr);
    EXPECT_TRUE(mState.sProcessingJob);
    EXPECT_FALSE(Write("y").mSucceeded) << "there is no file any more";
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
    EXPECT_THAT(mPlatform.mEvents, testing::Contains("job 7 sent to printer"));
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "x");
}

TEST_F(MonitorJobTest, AnExceptionOutOfTheNotificationEndsTheJobAllTheSame) {
    EXPECT_TRUE(Start(u"a.txt").mSucceeded);
    EXPECT_TRUE(Write("all of it").mSucceeded);
    mPlatform.mEvents.clear();
    mNotifier.mOnNotify = [] { throw std::runtime_error("too large"); };
    EXPECT_THROW(mJob.End(mHandle), std::runtime_error);
    EXPECT_THAT(mPlatform.TakeEvents(),
                ElementsAre("tick", "notify Proof QuillonPDFPort: 1", "close printer"));
    EXPECT_EQ(mState.sJobStream, nullptr);
    EXPECT_FALSE(mState.sProcessingJob);
    EXPECT_EQ(mFolder.ContentOf("a.ps"), "all of it");
    mNotifier.mOnNotify = nullptr;
    Print(u"b.txt", "the next job");
    EXPECT_EQ(mFolder.ContentOf("b.ps"), "the next job");
}

TEST_F(MonitorJobTest, ReplacesWhatAnAbandonedJobHasLeftOpen) {
    EXPECT_TRUE(Start(u"a.txt").mSucceeded);
    const std::unique_ptr<GFileOutStream> abandoned(mState.sJobStream.get());
    mPort.Close(mHandle);
    mPort.Open(Units(u"QuillonPDFPort:"), &mHandle);
    mPlatform.mEvents.clear();
    EXPECT_TRUE(Start(u"b.txt").mSucceeded);
    EXPECT_THAT(mPlatform.mEvents, ElementsAre("tick", "close printer", "open printer Proof", "text b.txt",
                                               "PPMStartDocPort: StartDoc success"));
    EXPECT_NE(mState.sJobStream, abandoned);
    EXPECT_EQ(abandoned->Write(GBuffer("late")), 4) << "the old file is given up, not closed";
    EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
}

TEST_F(MonitorJobTest, WritesBlocksOfEverySizeByteForByte) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    std::string source;
    while (source.size() < 20000) source += all + std::to_string(source.size());
    for (const std::size_t block : {1, 2, 255, 4096, 65536, 1048576}) {
        SCOPED_TRACE(block);
        EXPECT_TRUE(Start(u"a.txt").mSucceeded);
        for (std::size_t at = 0; at < source.size(); at += block) {
            ASSERT_TRUE(Write(source.substr(at, block)).mSucceeded);
            ASSERT_EQ(mWritten, std::min(block, source.size() - at));
        }
        EXPECT_TRUE(mJob.End(mHandle).mSucceeded);
        EXPECT_TRUE(mFolder.ContentOf("a.ps") == source);
    }
}

}  // namespace
