#include "framework/ipc/GSharedMemory.h"

#include "tests/ipc/IPCTestSupport.h"

namespace {

TEST(GShMemID, TakesLettersDigitsAndUnderscoresOnly) {
    const std::string allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text = {'a', static_cast<char>(byte), 'z'};
        const bool isValid = allowed.find(static_cast<char>(byte)) != std::string::npos;
        for (const std::string& placed : {text, text.substr(1), text.substr(0, 2)})
            EXPECT_EQ(ThrownBy([&] { EXPECT_EQ(BytesOf(GShMemID(BufferOf(placed)).GetBuffer()), placed); }),
                      isValid ? 0 : 40162)
                << byte;
    }
    EXPECT_TRUE(GShMemID(GBuffer()).IsEmpty());
}

TEST(GShMemID, TakesAndJoinsStringsOfAnyEncodingAsFarAsTheyAreASCII) {
    const unsigned short plain[] = {'A', 'b', '_'};
    const unsigned short accented[] = {'A', 0xE9};
    const unsigned short substitute[] = {'A', 0xE9, '@'};
    EXPECT_EQ(BytesOf(GShMemID(GString::FromUTF16(plain, 3)).GetBuffer()), "Ab_");
    EXPECT_EQ(ThrownBy([&] { GShMemID(GString::FromUTF16(accented, 2)); }), 40162);
    EXPECT_EQ(ThrownBy([&] { GShMemID(GString::FromUTF16(substitute, 3)); }), 40162);
    EXPECT_TRUE(GShMemID(GString()).IsEmpty());
    GShMemID joined = GShMemID("P") + GShMemID("1234");
    joined += GShMemID();
    joined += GShMemID("MQ7");
    EXPECT_EQ(BytesOf(joined.GetBuffer()), "P1234MQ7");
    EXPECT_TRUE(GShMemID(static_cast<const char*>(nullptr)).IsEmpty());
}

TEST(GShMemID, KnowsSevenSpecialIDs) {
    const std::tuple<long, const char*> rows[] = {{0, ""},       {1, "P"},          {2, "G"},    {3, "M"},
                                                  {4, ""},       {-1, ""},          {101, "MQ"}, {102, "PS"},
                                                  {201, "GIPC"}, {202, "GIPCTest"}, {203, ""}};
    GShMemID::Initialize();
    for (const auto& [number, text] : rows)
        EXPECT_EQ(BytesOf(GShMemID::GetSpecialID(number).GetBuffer()), text) << number;
    GShMemID::Finalize();
    EXPECT_TRUE(GShMemID::GetSpecialID(201).IsEmpty());
}

struct GSharedMemoryTest : testing::Test {
    /// What the system's object holds, its size word included.
    static ByteList GetAllBytes() { return RawSegment::Open("Global\\", "QulShDTestSeg")->Copy(0, 20); }
    void Fill() {
        mSegment.SetCursor(0);
        mSegment.WriteBytes("ABCDEFGHIJKLMNOP", 16);
        mSegment.SetCursor(0);
    }

    bool mCreated = false;
    GSharedMemory mSegment{"Global\\", GShMemID("TestSeg"), 16, mCreated};
};

TEST_F(GSharedMemoryTest, IsOneObjectUnderOneNameAndBeginsWithItsSize) {
    EXPECT_TRUE(mCreated);
    EXPECT_EQ(GetAllBytes(), (ByteList{20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    bool created = true;
    GSharedMemory same("Global\\", GShMemID("TestSeg"), 16, created);
    EXPECT_FALSE(created);
    GSharedMemory opened("Global\\", GShMemID("TestSeg"));
    same.WriteInt32(0x01020304);
    EXPECT_EQ(opened.ReadInt32(), 0x01020304);
    EXPECT_TRUE(PSharedMemory::Exists("Global\\", "QulShDTestSeg"));
    EXPECT_FALSE(PSharedMemory::Exists("Global\\", "QulShDTestSe"));
    EXPECT_EQ(ThrownBy([] { GSharedMemory("Global\\", GShMemID("TestNone")); }), 2450);
    EXPECT_EQ(ThrownBy([] { GSharedMemory("Session\\1\\", GShMemID("TestSeg")); }), 2450);
    for (int round = 0; round < 2; ++round) {
        GSharedMemory other("Global\\", GShMemID("TestOther"), 4, created);
        EXPECT_TRUE(created) << "it goes with the last object that has it open";
        EXPECT_EQ(other.ReadInt32(), 0);
        other.SetCursor(0);
        other.WriteInt32(7);
        if (round == 0) other.Close();
    }
    const auto before = GetAllBytes();
    for (const long size : {0L, 15L, 17L, 40000L})
        EXPECT_EQ(ThrownBy([&] { GSharedMemory("Global\\", GShMemID("TestSeg"), size, created); }), 40168)
            << size;
    EXPECT_EQ(GetAllBytes(), before);
}

TEST_F(GSharedMemoryTest, WritesWordsLowByteFirst) {
    mSegment.WriteInt32(0x01020304);
    mSegment.WriteInt32(-2);
    mSegment.WriteBuffer(BufferOf("xy"));
    EXPECT_EQ(mSegment.GetCursor(), 14);
    EXPECT_EQ(GetAllBytes(),
              (ByteList{20, 0, 0, 0, 4, 3, 2, 1, 254, 255, 255, 255, 2, 0, 0, 0, 'x', 'y', 0, 0}));
    mSegment.SetCursor(4);
    EXPECT_EQ(mSegment.ReadInt32(), -2);
    GBuffer data;
    mSegment.ReadBuffer(data);
    EXPECT_EQ(BytesOf(data), "xy");
    EXPECT_EQ(mSegment.GetCursor(), 14);
}

TEST_F(GSharedMemoryTest, ReadsAndWritesUpToTheLastByteAndNotBeyond) {
    for (const long cursor : {0L, 12L, 13L, 16L, 17L, 0x7FFFFFFFL, -1L, -0x7FFFFFFFL}) {
        SCOPED_TRACE(cursor);
        const bool fits = cursor == 0 || cursor == 12;
        Fill();
        const auto before = GetAllBytes();
        mSegment.SetCursor(cursor);
        EXPECT_EQ(ThrownBy([&] { mSegment.ReadInt32(); }), fits ? 0 : 40161);
        EXPECT_EQ(mSegment.GetCursor(), fits ? cursor + 4 : cursor);
        mSegment.SetCursor(cursor);
        EXPECT_EQ(ThrownBy([&] { mSegment.WriteInt32(1); }), fits ? 0 : 40160);
        EXPECT_EQ(mSegment.GetCursor(), fits ? cursor + 4 : cursor);
        EXPECT_EQ(GetAllBytes() == before, !fits);
    }
}

TEST_F(GSharedMemoryTest, WritesABufferWithItsLengthOrNothingAndReadsNoneWhoseLengthIsALie) {
    const std::tuple<const char*, long, long, long> rows[] = {
        {"all of it", 0, 12, 0},
        {"an empty one at the end", 12, 0, 0},
        {"the bytes fit, their length does not", 0, 13, 40164},
        {"the bytes just fit", 0, 16, 40164},
        {"the bytes do not fit", 0, 17, 40160},
        {"not even the length fits", 13, 0, 40160},
        {"nor together with a byte", 13, 1, 40160}};
    for (const auto& [what, cursor, length, thrown] : rows) {
        SCOPED_TRACE(what);
        Fill();
        const auto before = GetAllBytes();
        mSegment.SetCursor(cursor);
        const GBuffer data = BufferOf(std::string(static_cast<std::size_t>(length), 'z'));
        EXPECT_EQ(ThrownBy([&] { mSegment.WriteBuffer(data); }), thrown);
        EXPECT_EQ(mSegment.GetCursor(), thrown == 0 ? cursor + 4 + length : cursor);
        EXPECT_EQ(GetAllBytes() == before, thrown != 0);
    }
    for (const long length : {13L, 16L, 0x7FFFFFFFL, -1L, -0x7FFFFFFFL - 1}) {
        SCOPED_TRACE(length);
        mSegment.SetCursor(0);
        mSegment.WriteInt32(length);
        mSegment.SetCursor(0);
        GBuffer data = BufferOf("as it was");
        EXPECT_EQ(ThrownBy([&] { mSegment.ReadBuffer(data); }), 40161);
        EXPECT_EQ(mSegment.GetCursor(), 0);
        EXPECT_EQ(BytesOf(data), "as it was");
    }
}

TEST_F(GSharedMemoryTest, LocksOnceHoweverDeep) {
    {
        const GSharedMemoryLocker outer(mSegment);
        { const GSharedMemoryLocker inner(mSegment); }
        EXPECT_TRUE(mSegment.IsLocked());
    }
    EXPECT_FALSE(mSegment.IsLocked());
    mSegment.Unlock();
    // Had anything been released once too often or not at all, this thread could not do as it likes.
    GIPMutex mutex(GShMemID("TestSeg"), GIPPrefix::cSharedMemoryLock);
    EXPECT_EQ(ThrownBy([&] { mutex.Unlock(); }), 2450);
}

TEST_F(GSharedMemoryTest, IsPreparedWithItsMutexHeld) {
    static std::string sSeen;
    sSeen.clear();
    const auto prepare = [](GSharedMemory& segment, bool created) {
        sSeen += std::string(created ? "new" : "old") + (segment.IsLocked() ? ", locked; " : ", free; ");
        if (!created) throw GSimpleException(40154);
    };
    bool created = false;
    const GSharedMemory first("Global\\", GShMemID("TestPrep"), 4, created, nullptr, prepare);
    EXPECT_FALSE(first.IsLocked());
    EXPECT_EQ(ThrownBy([&] { GSharedMemory("Global\\", GShMemID("TestPrep"), nullptr, prepare); }), 40154);
    EXPECT_EQ(sSeen, "new, locked; old, locked; ");
    GWaitBudget none(0);
    EXPECT_EQ(ThrownBy([&] { GSharedMemory("Global\\", GShMemID("TestPrep"), &none); }), 0);
}

}  // namespace
