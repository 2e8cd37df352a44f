// The page of formats on shared memory, against the segments that the messaging makes.
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "monitor/handoff/GPPPrinterProcessorLayer.h"
#include "monitor/handoff/GSettingsInterface.h"
#include "monitor/spooling/MonitorNames.h"
#include "tests/files/TestFolder.h"
#include "tests/formats/FormatsPage.h"
#include "tests/ipc/IPCTestSupport.h"

namespace {

using Facts = FormatsPage::Facts;

constexpr long cProcess = 4711;
constexpr long cRegistration = 12345;
constexpr long cSizeWord = 4;
constexpr std::uint32_t cSender = 0x01020304;
constexpr std::uint32_t cType = 0x05060708;

/// Process 4711, in the name space of the whole machine, with one message in its queue.
struct SegmentsPage : testing::Test {
    SegmentsPage() {
        mWorld.ActAs(cProcess, -1);
        mManager = MakeManager();
        bool created = false;
        mQueue = std::make_unique<GIPCMessageQueue>(-1, cProcess, cRegistration, created);
    }
    static std::unique_ptr<GIPCMessageQueueMgr> MakeManager() {
        return std::make_unique<GIPCMessageQueueMgr>(
            GPPIPCManager::GetRegistryID(GIPCMessageQueueMgr::cNormal), -1,
            GIPCMessageQueueMgr::Scope::cOwnOnly);
    }
    std::unique_ptr<RawSegment> Open(const char* identifier) const {
        return RawSegment::Open("Global\\", std::string("QulShD") + identifier);
    }
    /// The offset of the first word of that value behind the size word.
    static std::string OffsetOf(const RawSegment& segment, std::uint32_t value, long from = 0) {
        for (long offset = cSizeWord; offset + 4 <= segment.GetSize(); offset += 4)
            if (segment.GetWord(offset) == value) return std::to_string(offset - cSizeWord - from);
        return "nowhere";
    }
    /// The offset of the word in which 9 makes `works` false.
    template <class Works>
    static std::string OffsetThatBreaks(RawSegment& segment, long from, Works works) {
        for (long offset = cSizeWord + from;; offset += 4) {
            const std::uint32_t before = segment.GetWord(offset);
            segment.SetWord(offset, 9);
            const bool stillWorks = works();
            segment.SetWord(offset, before);
            if (!stillWorks) return std::to_string(offset - cSizeWord - from);
        }
    }

    IPCWorld mWorld;
    const std::string mPayload = std::string(77, 'p');
    std::unique_ptr<GIPCMessageQueueMgr> mManager;
    std::unique_ptr<GIPCMessageQueue> mQueue;
};

TEST_F(SegmentsPage, NamesAndSizes) {
    const Facts page = FormatsPage("Shared objects").facts;
    GBuffer session, machine;
    GSessionInfo::GetInstance()->GetSessionPath(session, 2);
    GSessionInfo::GetInstance()->GetSessionPath(machine, -1);
    const GShMemID queue = GIPCMessageQueue::ConvertToMemoryID(cProcess, cRegistration);
    const std::string name = page.at("prefix of its event") + queue.GetBuffer().GetPtr();
    const auto hasEvent = [&] { return PIPEventImp(name.c_str(), PIPEventImp::Use::cOpen).IsThere(); };
    EXPECT_FALSE(hasEvent());
    const PIPEventImp event = GIPCMessageQueue::MakeEvent(cProcess, cRegistration);
    EXPECT_TRUE(hasEvent());
    const Facts expected = {
        {"path of session 2", session.GetPtr()},
        {"path of the machine", machine.GetPtr()},
        {"prefix of a segment", GIPPrefix::GetPrefix(GIPPrefix::cSharedMemory)},
        {"prefix of its mutex", GIPPrefix::GetPrefix(GIPPrefix::cSharedMemoryLock)},
        {"prefix of its event", page.at("prefix of its event")},
        {"registry", GPPIPCManager::GetRegistryID(GIPCMessageQueueMgr::cNormal).GetBuffer().GetPtr()},
        {"queue", queue.GetBuffer().GetPtr()},
        {"size of a registry", std::to_string(Open("GIPC_PP")->GetWord(0))},
        {"size of a queue", std::to_string(Open("P4711MQ12345")->GetWord(0))}};
    EXPECT_EQ(page, expected);
}

TEST_F(SegmentsPage, Registry) {
    const auto segment = Open("GIPC_PP");
    const long registration = mManager->Register(cProcess);
    const std::uint32_t seed = GIPCRegistryEntries::CountUpSeed(mManager->GetRegistry());
    const long entry = GIPCRegistryEntries::GetLength(0);
    const auto end = static_cast<std::uint32_t>(GIPCRegistryEntries::GetLength(1));
    const auto opens = [] { return ThrownBy([] { MakeManager(); }) == 0; };
    const Facts expected = {
        {"version", OffsetThatBreaks(*segment, 0, opens)},
        {"seed", OffsetOf(*segment, seed)},
        {"end", OffsetOf(*segment, end)},
        {"first entry", std::to_string(entry)},
        {"process id", OffsetOf(*segment, cProcess, entry)},
        {"registration id", OffsetOf(*segment, static_cast<std::uint32_t>(registration), entry)},
        {"entries", std::to_string(GIPCMessageQueueMgr::cMaxEntries)},
        {"largest registration id", std::to_string(GIPCRegistryEntries::cMaxRegistrationID)}};
    EXPECT_EQ(FormatsPage("Registry").facts, expected);
}

TEST_F(SegmentsPage, Queue) {
    const auto segment = Open("P4711MQ12345");
    mQueue->Reset();
    long first = 0;  // the last word of an empty queue that is not zero
    for (long offset = cSizeWord; offset + 4 <= segment->GetSize(); offset += 4)
        if (segment->GetWord(offset) != 0) first = segment->GetWord(offset);
    mQueue->TryToAddRawMessage(cSender, cType, BufferOf(mPayload));
    const long length = static_cast<long>(mPayload.size());
    const long end = first + GIPCMessageQueue::cRecordOverhead + length;
    const auto opens = [] { return ThrownBy([] { GIPCMessageQueue(-1, cProcess, cRegistration); }) == 0; };
    const auto isMessage = [&] {
        bool isThere = true;
        ThrownBy([&] { isThere = mQueue->ContainsRawMessage(cType, BufferOf(mPayload)); });
        return isThere;
    };
    const std::vector<unsigned char> bytes = segment->Copy();
    const auto payload = std::ranges::find(bytes, 'p') - bytes.begin() - cSizeWord - first;
    const Facts expected = {{"version", OffsetThatBreaks(*segment, 0, opens)},
                            {"end", OffsetOf(*segment, static_cast<std::uint32_t>(end))},
                            {"first record", std::to_string(first)},
                            {"kind", OffsetThatBreaks(*segment, first, isMessage)},
                            {"length", OffsetOf(*segment, static_cast<std::uint32_t>(length + 12), first)},
                            {"sender", OffsetOf(*segment, cSender, first)},
                            {"type", OffsetOf(*segment, cType, first)},
                            {"payload length", OffsetOf(*segment, static_cast<std::uint32_t>(length), first)},
                            {"payload", std::to_string(payload)},
                            {"largest payload", std::to_string(GIPCMessageQueue::cQueueLength -
                                                               GIPCMessageQueue::cRecordOverhead - first)},
                            {"wait for all to take it", std::to_string(GPPIPCManager::cTakenLimit)},
                            {"wait for mutexes", std::to_string(GPPPrinterProcessorLayer::cWaitLimit)},
                            {"kept messages", std::to_string(GPPIPCManager::cMaxDelayedPerTarget)}};
    EXPECT_EQ(FormatsPage("Queue").facts, expected);
}

TEST(RecordPage, JobRecord) {
    const FormatsPage page("Job record");
    const Facts expected = {{"message type", std::to_string(GPPJobRecord::cMessageType)},
                            {"user", GPPSettingsKey::cUserName},
                            {"file", GPPSettingsKey::cJobPath},
                            {"printer", GPPSettingsKey::cPrinterName},
                            {"port", GPPSettingsKey::cPortName},
                            {"copies", GPPSettingsKey::cCopyCount}};
    EXPECT_EQ(page.facts, expected);
    const GPPJobRecord sent("anna", GPathName("C:/Windows/Temp/anna/Proof/Q3 report.ps"), "Proof",
                            MonitorNames::cPort, 1);
    GPPJobRecord read;
    ASSERT_EQ(page.examples.size(), 1u);
    EXPECT_TRUE(read.SetFromMessageData(BufferOf(page.examples[0])));
    EXPECT_EQ(BytesOf(read.GetMessageData()), BytesOf(sent.GetMessageData()));
    EXPECT_EQ(page.examples[0].size(), BytesOf(sent.GetMessageData()).size());
}

}  // namespace
