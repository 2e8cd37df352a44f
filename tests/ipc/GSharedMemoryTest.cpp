#include "framework/ipc/GSharedMemory.h"

#include "tests/ipc/IPCTestSupport.h"
#include "tests/ipc/PlatformsUnderTest.h"

namespace {

template <class Imp>
struct GSharedMemoryTest : testing::Test {
    using Segment = GSharedMemoryBase<Imp>;

    explicit GSharedMemoryTest(long size = 16) : mSegment("Global\\", GShMemID("TestSeg"), size, mCreated) {}

    /// What the system's object holds, its size word included.
    std::vector<int> GetAllBytes() {
        std::vector<int> all;
        Imp view("Global\\", "QulShDTestSeg");
        for (long offset = -4; offset < view.GetLength(); ++offset) {
            unsigned char byte = 0;
            view.Read(offset, &byte, 1);
            all.push_back(byte);
        }
        return all;
    }
    void Fill() {
        mSegment.SetCursor(0);
        mSegment.WriteBytes("ABCDEFGHIJKLMNOP", 16);
        mSegment.SetCursor(0);
    }

    bool mCreated = false;
    Segment mSegment;
};
TYPED_TEST_SUITE(GSharedMemoryTest, SegmentsUnderTest);

TYPED_TEST(GSharedMemoryTest, IsOneObjectUnderOneNameAndBeginsWithItsSize) {
    using Memory = typename TestFixture::Segment;
    EXPECT_TRUE(this->mCreated);
    EXPECT_EQ(this->mSegment.GetLength(), 16);
    EXPECT_EQ(this->GetAllBytes(),
              (std::vector<int>{20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    bool created = true;
    Memory same("Global\\", GShMemID("TestSeg"), 16, created);
    EXPECT_FALSE(created);
    Memory opened("Global\\", GShMemID("TestSeg"));
    same.WriteInt32(0x01020304);
    EXPECT_EQ(opened.ReadInt32(), 0x01020304);
    EXPECT_TRUE(TypeParam::Exists("Global\\", "QulShDTestSeg"));
    EXPECT_FALSE(TypeParam::Exists("Global\\", "QulShDTestSe"));
    EXPECT_EQ(ThrownBy([] { Memory("Global\\", GShMemID("TestNone")); }), 2450);
    EXPECT_EQ(ThrownBy([] { Memory("Session\\1\\", GShMemID("TestSeg")); }), 2450);
    for (int round = 0; round < 2; ++round) {
        Memory other("Global\\", GShMemID("TestOther"), 4, created);
        EXPECT_TRUE(created) << "it goes with the last object that has it open";
        EXPECT_EQ(other.ReadInt32(), 0);
        other.SetCursor(0);
        other.WriteInt32(7);
        if (round == 0) other.Close();
    }
    const auto before = this->GetAllBytes();
    for (const long size : {0L, 15L, 17L, 40000L})
        EXPECT_EQ(ThrownBy([&] { Memory("Global\\", GShMemID("TestSeg"), size, created); }), 40168) << size;
    EXPECT_EQ(this->GetAllBytes(), before);
}

TYPED_TEST(GSharedMemoryTest, WritesWordsLowByteFirst) {
    auto& segment = this->mSegment;
    segment.WriteInt32(0x01020304);
    segment.WriteInt32(-2);
    segment.WriteBuffer(BufferOf("xy"));
    EXPECT_EQ(segment.GetCursor(), 14);
    EXPECT_EQ(this->GetAllBytes(),
              (std::vector<int>{20, 0, 0, 0, 4, 3, 2, 1, 254, 255, 255, 255, 2, 0, 0, 0, 'x', 'y', 0, 0}));
    segment.SetCursor(4);
    EXPECT_EQ(segment.ReadInt32(), -2);
    GBuffer data;
    segment.ReadBuffer(data);
    EXPECT_EQ(BytesOf(data), "xy");
    EXPECT_EQ(segment.GetCursor(), 14);
}

TYPED_TEST(GSharedMemoryTest, ReadsAndWritesUpToTheLastByteAndNotBeyond) {
    const std::tuple<const char*, long, long, long> rows[] = {{"the first word", 0, 0, 0},
                                                              {"the last word", 12, 0, 0},
                                                              {"three bytes left", 13, 40161, 40160},
                                                              {"nothing left", 16, 40161, 40160},
                                                              {"behind the end", 17, 40161, 40160},
                                                              {"far behind it", 0x7FFFFFFF, 40161, 40160},
                                                              {"before the beginning", -1, 40161, 40160},
                                                              {"far before it", -0x7FFFFFFF, 40161, 40160}};
    auto& segment = this->mSegment;
    for (const auto& [what, cursor, read, write] : rows) {
        SCOPED_TRACE(what);
        this->Fill();
        const auto before = this->GetAllBytes();
        segment.SetCursor(cursor);
        EXPECT_EQ(ThrownBy([&] { segment.ReadInt32(); }), read);
        EXPECT_EQ(segment.GetCursor(), read == 0 ? cursor + 4 : cursor);
        segment.SetCursor(cursor);
        EXPECT_EQ(ThrownBy([&] { segment.WriteInt32(1); }), write);
        EXPECT_EQ(segment.GetCursor(), write == 0 ? cursor + 4 : cursor);
        EXPECT_EQ(this->GetAllBytes() == before, write != 0);
    }
}

TYPED_TEST(GSharedMemoryTest, WritesABufferWithItsLengthOrNothingAndReadsNoneWhoseLengthIsALie) {
    const std::tuple<const char*, long, long, long> rows[] = {
        {"all of it", 0, 12, 0},
        {"an empty one at the end", 12, 0, 0},
        {"the bytes fit, their length does not", 0, 13, 40164},
        {"the bytes just fit", 0, 16, 40164},
        {"the bytes do not fit", 0, 17, 40160},
        {"not even the length fits", 13, 0, 40160},
        {"nor together with a byte", 13, 1, 40160}};
    auto& segment = this->mSegment;
    for (const auto& [what, cursor, length, thrown] : rows) {
        SCOPED_TRACE(what);
        this->Fill();
        const auto before = this->GetAllBytes();
        segment.SetCursor(cursor);
        const GBuffer data = BufferOf(std::string(static_cast<std::size_t>(length), 'z'));
        EXPECT_EQ(ThrownBy([&] { segment.WriteBuffer(data); }), thrown);
        EXPECT_EQ(segment.GetCursor(), thrown == 0 ? cursor + 4 + length : cursor);
        EXPECT_EQ(this->GetAllBytes() == before, thrown != 0);
    }
    for (const long length : {13L, 16L, 0x7FFFFFFFL, -1L, -0x7FFFFFFFL - 1}) {
        SCOPED_TRACE(length);
        segment.SetCursor(0);
        segment.WriteInt32(length);
        segment.SetCursor(0);
        GBuffer data = BufferOf("as it was");
        EXPECT_EQ(ThrownBy([&] { segment.ReadBuffer(data); }), 40161);
        EXPECT_EQ(segment.GetCursor(), 0);
        EXPECT_EQ(BytesOf(data), "as it was");
    }
}

TYPED_TEST(GSharedMemoryTest, LocksOnceHoweverDeep) {
    using Mutex = GIPMutexBase<typename TypeParam::MutexImp>;
    auto& segment = this->mSegment;
    {
        GSharedMemoryLocker outer(segment);
        {
            GSharedMemoryLocker inner(segment);
            segment.GetLength();
        }
        EXPECT_TRUE(segment.IsLocked());
    }
    EXPECT_FALSE(segment.IsLocked());
    segment.Unlock();
    // Had anything been released once too often or not at all, this thread could not do as it likes.
    Mutex mutex(GShMemID("TestSeg"), GIPPrefix::cSharedMemoryLock);
    EXPECT_EQ(ThrownBy([&] { mutex.Unlock(); }), 2450);
}

TYPED_TEST(GSharedMemoryTest, IsPreparedWithItsMutexHeld) {
    using Memory = typename TestFixture::Segment;
    static bool sLocked = false;
    static bool sCreated = false;
    const auto prepare = [](Memory& segment, bool created) {
        sLocked = segment.IsLocked();
        sCreated = created;
        segment.SetCursor(0);
        if (created) segment.WriteInt32(5);
        if (!created && segment.ReadInt32() != 5) throw GSimpleException(40154);
    };
    bool created = false;
    Memory first("Global\\", GShMemID("TestPrep"), 4, created, nullptr, prepare);
    EXPECT_TRUE(sLocked);
    EXPECT_TRUE(sCreated);
    EXPECT_FALSE(first.IsLocked());
    Memory second("Global\\", GShMemID("TestPrep"), nullptr, prepare);
    EXPECT_FALSE(sCreated);
    first.SetCursor(0);
    first.WriteInt32(6);
    EXPECT_EQ(ThrownBy([&] { Memory("Global\\", GShMemID("TestPrep"), nullptr, prepare); }), 40154);
    GWaitBudget none(0);
    EXPECT_EQ(ThrownBy([&] { Memory("Global\\", GShMemID("TestPrep"), &none); }), 0);
}

}  // namespace
