#include "framework/ipc/GIPCMessageQueue.h"

#include "tests/ipc/IPCTestSupport.h"

namespace {

constexpr const char* cPath = "Session\\1\\";
constexpr const char* cName = "QulShDP4711MQ12345";

struct GIPCMessageQueueTest : testing::Test {
    GIPCMessageQueueTest() : mQueue(1, 4711, 12345, mCreated), mRaw(RawSegment::Open(cPath, cName)) {}

    static GBuffer Payload(long length) { return BufferOf(Filler(length)); }
    long EndOffset() const { return static_cast<long>(mRaw->GetWord(8)); }
    /// The bytes in use behind the queue's header.
    ByteList Records() const { return mRaw->Copy(12, EndOffset() - 8); }
    /// Makes the queue hold these bytes, as some other process would.
    void SetRecords(const ByteList& records) {
        std::copy(records.begin(), records.end(), mRaw->GetBytes() + 12);
        mRaw->SetWord(8, static_cast<std::uint32_t>(8 + records.size()));
    }
    void Heal() {
        for (const auto& [offset, word] : {std::pair(0, 32772U), {4, 1}, {8, 8}}) mRaw->SetWord(offset, word);
    }
    Log Drain() {
        GTable<GSmartPtr<GIPCMessage>> messages;
        mQueue.ReadPendingMessages(messages);
        Log log;
        for (const auto& message : messages) log.push_back(Describe(*message));
        return log;
    }

    IPCWorld mWorld;
    bool mCreated = false;
    GIPCMessageQueue mQueue;
    std::unique_ptr<RawSegment> mRaw;
};

// A message of type 145 from process 4711 with the payload "Hi!", one of kind 2, and one without payload.
const ByteList cHi = {1, 0, 0, 0, 15, 0, 0, 0, 0x67, 0x12, 0, 0, 145, 0, 0, 0, 3, 0, 0, 0, 'H', 'i', '!'};
const ByteList cKindTwo = {2, 0, 0, 0, 4, 0, 0, 0, 0xAA, 0xBB, 0xCC, 0xDD};
const ByteList cEmpty = {1, 0, 0, 0, 12, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 7, 0, 0, 0, 0, 0, 0, 0};

ByteList Join(std::initializer_list<ByteList> parts) {
    ByteList all;
    for (const ByteList& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

TEST_F(GIPCMessageQueueTest, IsNamedAfterSessionProcessAndRegistrationAndAppendsRecordsByteForByte) {
    EXPECT_EQ(BytesOf(GIPCMessageQueue::GetMemoryPath(1)), "Session\\1\\");
    EXPECT_EQ(BytesOf(GIPCMessageQueue::GetMemoryPath(-1)), "Global\\");
    EXPECT_EQ(BytesOf(GIPCMessageQueue::ConvertToMemoryID(4711, 12345).GetBuffer()), "P4711MQ12345");
    EXPECT_EQ(ThrownBy([] { GIPCMessageQueue::ConvertToMemoryID(-1, 7); }), 40162);
    EXPECT_EQ(ThrownBy([] { GIPCMessageQueue(1, 4711, 1); }), 2450);
    EXPECT_EQ(ThrownBy([] { GIPCMessageQueue(0, 4711, 12345); }), 2450);
    EXPECT_TRUE(mCreated);
    EXPECT_EQ(mRaw->Copy(0, 12), (ByteList{4, 128, 0, 0, 1, 0, 0, 0, 8, 0, 0, 0}));
    EXPECT_TRUE(mQueue.TryToAddRawMessage(145, BufferOf("Hi!")));
    EXPECT_TRUE(mQueue.TryToAddRawMessage(-1, 7, GBuffer()));
    EXPECT_EQ(EndOffset(), 51);
    EXPECT_EQ(Records(), Join({cHi, cEmpty}));
}

TEST_F(GIPCMessageQueueTest, DrainsInOrderOnceAndSkipsOtherKindsAndWhatFollowsAPayload) {
    ByteList longer = Join({cHi, {0xEE, 0xEE}});
    longer[4] = 17;
    ByteList disguised = cHi;
    disguised[0] = 2;
    SetRecords(Join({cKindTwo, disguised, cEmpty, {9, 0, 0, 0, 0, 0, 0, 0}}));
    EXPECT_FALSE(mQueue.ContainsRawMessage(145, BufferOf("Hi!"))) << "a record of another kind";
    SetRecords(Join({cKindTwo, longer, disguised, cEmpty, {9, 0, 0, 0, 0, 0, 0, 0}}));
    EXPECT_EQ(Drain(), (Log{"4711:145:Hi!", "-1:7:"}));
    EXPECT_EQ(EndOffset(), 8);
    EXPECT_TRUE(Drain().empty());
}

TEST_F(GIPCMessageQueueTest, AppendsUpToTheLastByteAndARefusalChangesNothing) {
    const std::tuple<const char*, long, bool, long> rows[] = {
        {"an empty payload is a record too", 0, true, 28},
        {"the largest record", 32740, true, 32768},
        {"one byte too many", 32741, false, 8},
        {"what fits an empty queue by the looser test", 32748, false, 8},
        {"far too many", 40000, false, 8}};
    for (const auto& [what, payload, accepted, endOffset] : rows) {
        SCOPED_TRACE(what);
        Heal();
        const ByteList before = mRaw->Copy();
        EXPECT_EQ(mQueue.TryToAddRawMessage(145, Payload(payload)), accepted);
        EXPECT_EQ(EndOffset(), endOffset);
        EXPECT_EQ(mRaw->Copy() == before, !accepted);
    }
    Heal();
    ASSERT_TRUE(mQueue.TryToAddRawMessage(145, Payload(32000)));  // ends at 32028
    EXPECT_FALSE(mQueue.TryToAddRawMessage(145, Payload(721)));
    EXPECT_TRUE(mQueue.TryToAddRawMessage(145, Payload(720)));
    EXPECT_FALSE(mQueue.TryToAddRawMessage(145, GBuffer()));
    EXPECT_EQ(Drain().size(), 2u);
    for (int i = 0; i < 2; ++i) EXPECT_TRUE(mQueue.TryToAddRawMessageOnce(145, Payload(32740))) << "no news";
    EXPECT_FALSE(mQueue.TryToAddRawMessageOnce(145, Payload(32739)));
    // The looser test, which leaves the queue's header out.
    EXPECT_TRUE(GIPCMessageQueue::RawDataFitsEmptyQueue(Payload(0)));
    EXPECT_TRUE(GIPCMessageQueue::RawDataFitsEmptyQueue(Payload(32748)));
    EXPECT_FALSE(GIPCMessageQueue::RawDataFitsEmptyQueue(Payload(32749)));
}

TEST_F(GIPCMessageQueueTest, AddsOnceWhatIsNotWaitingYet) {
    const std::tuple<const char*, long, long, const char*, long> rows[] = {
        {"new", 1, 145, "Hi!", 31},
        {"the same", 1, 145, "Hi!", 31},
        {"the same from another sender", 2, 145, "Hi!", 31},
        {"another type", 1, 146, "Hi!", 54},
        {"another payload of that length", 1, 145, "Ho!", 77},
        {"a shorter payload", 1, 145, "Hi", 99},
        {"no payload", 1, 145, "", 119},
        {"no payload again", 1, 145, "", 119}};
    for (const auto& [what, sender, type, payload, endOffset] : rows) {
        SCOPED_TRACE(what);
        EXPECT_TRUE(mQueue.TryToAddRawMessageOnce(sender, type, BufferOf(payload)));
        EXPECT_EQ(EndOffset(), endOffset);
    }
    EXPECT_TRUE(mQueue.ContainsRawMessage(145, BufferOf("Ho!")));
    EXPECT_FALSE(mQueue.ContainsRawMessage(147, BufferOf("Ho!")));
    Drain();
    EXPECT_FALSE(mQueue.ContainsRawMessage(145, BufferOf("Ho!")));
}

TEST(GIPCMessageQueue, UsesASegmentOfAnotherSizeAsFarAsItGoesAndNoneOfAnotherVersion) {
    const IPCWorld world;
    const std::tuple<long, std::uint32_t, std::uint32_t> rows[] = {
        // size, its word, last end offset
        {32768, 32768, 32764},
        {32772, 4096, 4092},
        {1 << 20, 1 << 20, 32768},
        {4096, 32, 28},
        // A word that makes no sense is mended: the view has what it has.
        {4096, 31, 4092},
        {4096, 0, 4092},
        {4096, 32772, 4092},
        {32772, 0xFFFFFFFF, 32768}};
    for (const auto& [size, claimed, end] : rows) {
        SCOPED_TRACE(claimed);
        const auto raw = RawSegment::Make(cPath, cName, size);
        raw->SetWord(0, claimed);
        raw->SetWord(4, 1);
        bool created = false;
        GIPCMessageQueue queue(1, 4711, 12345, created);
        EXPECT_FALSE(created);
        raw->SetWord(8, end - 20);
        EXPECT_FALSE(queue.TryToAddRawMessage(145, BufferOf("x")));
        EXPECT_TRUE(queue.TryToAddRawMessage(145, GBuffer()));
        EXPECT_EQ(raw->GetWord(8), end);
        EXPECT_FALSE(queue.TryToAddRawMessage(145, GBuffer()));
        raw->SetWord(8, end + 1);
        EXPECT_EQ(ThrownBy([&] { queue.TryToAddRawMessage(145, GBuffer()); }), 40161);
        EXPECT_EQ(ThrownBy([&] { queue.ContainsRawMessage(145, GBuffer()); }), 40161);
        queue.Reset();
        EXPECT_TRUE(GIPCMessageQueue(1, 4711, 12345).TryToAddRawMessage(145, GBuffer()));
        raw->SetWord(4, 0x01000000);
        EXPECT_EQ(ThrownBy([] { GIPCMessageQueue(1, 4711, 12345); }), 40154);
        EXPECT_EQ(ThrownBy([&] { GIPCMessageQueue(1, 4711, 12345, created); }), 40154);
    }
}

// What one word of the segment is turned into, and what draining and asking, or appending, then throws. The
// words: 0 size, 8 end offset; of the record of "Hi!" 16 length, 28 payload; 39 the other record's length.
const std::tuple<const char*, long, std::vector<std::uint32_t>, long, long> cCorruptWords[] = {
    {"a size without room for itself", 0, {0, 3}, 40163, 40163},
    {"a size behind the view", 0, {0x00100000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF}, 40163, 40163},
    {"a size without end offset", 0, {4, 11}, 40161, 40161},
    {"a size that cuts the last record", 0, {54}, 40161, 40161},
    {"an end offset in the header", 8, {0, 7}, 40161, 40161},
    {"an end offset in a record or in the queue's last byte", 8, {30, 32767}, 40161, 0},
    {"an end offset behind the queue", 8, {32769, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF}, 40161, 40161},
    {"a record length short of a message or of its payload", 16, {0, 11, 14}, 40161, 0},
    {"a record length behind the end offset", 16, {36, 0x7FFFFFFF, 0xFFFFFFFF}, 40161, 0},
    {"a record length that leads back to itself", 16, {0xFFFFFFF8}, 40161, 0},
    {"a payload beyond its record", 28, {4, 0x7FFFFFFF, 0xFFFFFFFF}, 40161, 0},
    {"another kind that leads behind the end", 39, {13}, 40161, 0}};

TEST_F(GIPCMessageQueueTest, ACorruptWordThrowsAndChangesNothing) {
    for (const auto& [what, offset, values, read, append] : cCorruptWords) {
        for (const std::uint32_t value : values) {
            SCOPED_TRACE(testing::Message() << what << ": " << value);
            std::fill_n(mRaw->GetBytes(), mRaw->GetSize(), static_cast<unsigned char>(0));
            Heal();
            SetRecords(Join({cHi, cEmpty}));
            mRaw->SetWord(offset, value);
            const ByteList before = mRaw->Copy();
            EXPECT_EQ(ThrownBy([&] { Drain(); }), read);
            EXPECT_EQ(ThrownBy([&] { mQueue.ContainsRawMessage(1, BufferOf("absent")); }), read);
            EXPECT_EQ(ThrownBy([&] { mQueue.TryToAddRawMessageOnce(1, BufferOf("absent")); }), read);
            EXPECT_EQ(mRaw->Copy(), before);
            EXPECT_EQ(ThrownBy([&] { mQueue.TryToAddRawMessage(1, BufferOf("absent")); }), append);
            EXPECT_EQ(mRaw->Copy() == before, append != 0 || value == 32767);
        }
    }
    EXPECT_FALSE(mQueue.IsLocked());
}

}  // namespace
