#include "framework/ipc/GIPCMessageQueueMgr.h"

#include "framework/ipc/GIPCMessageQueue.h"
#include "framework/system/PSystem.h"
#include "tests/ipc/IPCTestSupport.h"

namespace {

using Manager = GIPCMessageQueueMgr;

constexpr const char* cName = "QulShDGIPCTest";

/// Where a process is found, as "session: registrations"; "99:" when it is not.
std::string Find(Manager& manager, long processID) {
    long session = 99;
    GTable<std::int32_t> ids = {5};
    manager.GetRegistered(processID, session, ids);
    std::string text = std::to_string(session).append(":");
    for (const std::int32_t id : ids) text.append(" ").append(std::to_string(id));
    return text;
}

using Addresses = GTable<GIPCQueueAddress>;

Addresses GetAll(Manager& manager) {
    Addresses all;
    manager.GetRegistered(all);
    return all;
}

struct GIPCMessageQueueMgrTest : testing::Test {
    GIPCMessageQueueMgrTest() : mManager(Manager::cTest), mRaw(RawSegment::Open("Session\\1\\", cName)) {}

    void SetEntries(const Entries& entries) { SetEntries(*mRaw, entries); }
    static void SetEntries(RawSegment& raw, const Entries& entries) {
        raw.SetWord(12, 12);
        for (const auto& [processID, registrationID] : entries) AddEntry(raw, processID, registrationID);
    }
    /// Another session's registry, as its processes would have made it.
    static std::unique_ptr<RawSegment> MakeRegistry(const char* path) {
        auto raw = RawSegment::Make(path, cName, 8208);
        for (const auto& [offset, word] : {std::pair(0, 8208U), {4, 1}, {12, 12}}) raw->SetWord(offset, word);
        return raw;
    }

    IPCWorld mWorld;
    Manager mManager;
    std::unique_ptr<RawSegment> mRaw;
};

TEST_F(GIPCMessageQueueMgrTest, StartsWithVersionSeedAndEndOffsetAndOpensNothingElse) {
    EXPECT_EQ(mRaw->Copy(0, 8), (ByteList{0x10, 0x20, 0, 0, 1, 0, 0, 0}));
    EXPECT_EQ(mRaw->Copy(12, 4), (ByteList{12, 0, 0, 0}));
    EXPECT_LT(mRaw->GetWord(8), 600000u);  // the program's own run time in milliseconds
    EXPECT_FALSE(mManager.IsRegistered(4711));
    EXPECT_EQ(BytesOf(Manager::GetMemoryPath()), "Session\\1\\");
    EXPECT_EQ(BytesOf(Manager::GetRegistryID(Manager::cNormal).GetBuffer()), "GIPC");
    mRaw->SetWord(4, 2);
    EXPECT_EQ(ThrownBy([] { Manager another(Manager::cTest); }), 40154);
}

TEST(GIPCMessageQueueMgr, UsesARegistryOfAnotherSizeThatHasRoomForAnEntry) {
    const IPCWorld world;
    const std::tuple<long, std::uint32_t, std::uint32_t> rows[] = {// size, its word, room
                                                                   {8204, 8204, 1023},
                                                                   {40000, 40000, 1024},
                                                                   {4096, 24, 1},
                                                                   {8208, 3, 1024}};  // spoilt, and mended
    for (const auto& [size, word, room] : rows) {
        SCOPED_TRACE(word);
        const auto raw = RawSegment::Make("Session\\1\\", cName, size);
        raw->SetWord(0, word);
        raw->SetWord(4, 1);
        raw->SetWord(12, 4 + 8 * room);  // all but one
        EXPECT_EQ(ThrownBy([] { Manager(Manager::cTest).Register(4711); }), 0);
        raw->SetWord(12, 20 + 8 * room);  // one too many
        EXPECT_EQ(ThrownBy([] { Manager(Manager::cTest).Register(4711); }), 40161);
    }
}

TEST_F(GIPCMessageQueueMgrTest, RegistersWithIDsOfTheCountedUpSeed) {
    const std::tuple<const char*, std::uint32_t, long> rows[] = {
        {"the first seed", 0, 16838},
        {"the same again: its first number is taken by now", 0, 5758},
        {"the generator's first number is the smallest one", 1694, 1},
        {"it is 0, so the second one counts", 26578, 11265},
        {"it is 0 for another seed", 78041, 10672},
        {"it is the largest one", 24883, 32767}};
    for (const auto& [what, seed, registrationID] : rows) {
        SCOPED_TRACE(what);
        mRaw->SetWord(8, seed);
        EXPECT_EQ(mManager.Register(4711), registrationID);
        EXPECT_EQ(mRaw->GetWord(8), seed + 1);
    }
    EXPECT_EQ(mRaw->Copy(12, 12), (ByteList{60, 0, 0, 0, 0x67, 0x12, 0, 0, 0xC6, 0x41, 0, 0}));
    mRaw->SetWord(8, 0xFFFFFFFF);
    EXPECT_NE(mManager.Register(4711), 0);
    EXPECT_EQ(mRaw->GetWord(8), 0u);
}

TEST_F(GIPCMessageQueueMgrTest, UnregistersOneByPuttingTheLastInItsPlaceAndAProcessKeepingTheOrder) {
    const Entries mixed = {{1, 10}, {2, 20}, {1, 11}, {3, 30}, {1, 12}};
    const std::tuple<Entries, long, long, Entries> rows[] = {
        // before, the process and its registration or 0 for all, after
        {{{1, 10}, {2, 20}, {3, 30}}, 1, 10, {{3, 30}, {2, 20}}},
        {{{3, 30}, {2, 20}}, 2, 20, {{3, 30}}},
        {{{3, 30}}, 3, 20, {{3, 30}}},
        {{{3, 30}}, 4, 30, {{3, 30}}},
        {{{3, 30}}, 3, 30, {}},
        {{}, 3, 30, {}},
        {mixed, 4, 0, mixed},
        {mixed, 1, 0, {{2, 20}, {3, 30}}}};
    for (const auto& [before, processID, registrationID, after] : rows) {
        SetEntries(before);
        registrationID != 0 ? mManager.Unregister(processID, registrationID) : mManager.Unregister(processID);
        EXPECT_EQ(EntriesOf(mRaw.get()), after);
        EXPECT_EQ(mManager.IsRegistered(3), !after.empty());
    }
}

TEST_F(GIPCMessageQueueMgrTest, WhatIsOutsideTheNumbersOrRepeatedIsNoEntry) {
    SetEntries({{-5, 7}, {0, 7}, {9, 0}, {9, -1}, {9, 32768}, {9, 32767}, {9, 1}, {8, 1}, {9, 1}, {9, 1}});
    EXPECT_EQ(GetAll(mManager), (Addresses{{1, 9, 32767}, {1, 9, 1}, {1, 8, 1}}));
    EXPECT_FALSE(mManager.IsRegistered(-5));
    GTable<std::int32_t> ids;
    mManager.GetRegisteredHere(9, ids);
    EXPECT_EQ(ids, (GTable<std::int32_t>{32767, 1}));
}

TEST_F(GIPCMessageQueueMgrTest, AFullRegistryDropsWhatNobodyListensBehind) {
    bool created = false;
    const GIPCMessageQueue queue(1, 4711, 77, created);
    // Entries that fill it, a 0 for their numbers, and how many are left of those that were there.
    const std::tuple<const char*, long, long, std::uint32_t> rows[] = {
        {"processes that have ended", 99, 0, 2},
        {"one entry again and again", 4711, 77, 2},
        {"no numbers of processes", -1, 0, 2},
        {"a living process's entries without a queue", 4711, 0, 1}};
    for (const auto& [what, processID, registrationID, left] : rows) {
        SCOPED_TRACE(what);
        Entries entries = {{4711, 77}, {4711, 30000}};
        for (long i = 2; i < 1024; ++i)
            entries.emplace_back(processID, registrationID != 0 ? registrationID : i + 1000);
        SetEntries(entries);
        EXPECT_EQ(ThrownBy([&] { mManager.Register(4711); }), 0);
        EXPECT_EQ(mRaw->GetWord(12), 12u + 8u * (left + 1));
        EXPECT_EQ(mRaw->Copy(16, 8), (ByteList{0x67, 0x12, 0, 0, 77, 0, 0, 0}));
        entries.pop_back();
        SetEntries(entries);
        EXPECT_EQ(ThrownBy([&] { mManager.Register(4711); }), 0);
        EXPECT_EQ(mRaw->GetWord(12), 8204u) << "the last place needs no tidying";
    }
}

TEST_F(GIPCMessageQueueMgrTest, ARegistryFullOfListenersTakesNobodyElse) {
    std::vector<std::unique_ptr<GIPCMessageQueue>> queues;
    Entries entries;
    bool created = false;
    for (int i = 1; i <= 1024; ++i) {
        queues.push_back(std::make_unique<GIPCMessageQueue>(1, 4711, i, created));
        entries.emplace_back(4711, i);
    }
    SetEntries(entries);
    const ByteList before = mRaw->Copy(12, 8196);
    EXPECT_EQ(ThrownBy([&] { mManager.Register(4711); }), 40160);
    EXPECT_EQ(mRaw->Copy(12, 8196), before);
    mManager.Unregister(4711, 1);
    EXPECT_EQ(ThrownBy([&] { mManager.Register(4711); }), 0);
}

TEST_F(GIPCMessageQueueMgrTest, FindsAProcessInTheFirstSessionThatKnowsIt) {
    const auto services = MakeRegistry("Session\\0\\");
    SetEntries({{2, 20}, {1, 10}});
    SetEntries(*services, {{3, 30}, {3, 31}, {2, 21}});
    for (const auto& [processID, found] : {std::pair(1, "1: 10"), {2, "0: 21"}, {3, "0: 30 31"}, {4, "99:"}})
        EXPECT_EQ(Find(mManager, processID), found);
    EXPECT_FALSE(mManager.IsRegistered(3));
    EXPECT_EQ(GetAll(mManager), (Addresses{{0, 3, 30}, {0, 3, 31}, {0, 2, 21}, {1, 2, 20}, {1, 1, 10}}));
    Manager own(GShMemID("GIPCTest"), 1, Manager::Scope::cOwnOnly);
    EXPECT_EQ(Find(own, 3), "99:") << "it was not to look into other sessions";
    mWorld.SetSessions({});
    EXPECT_EQ(Find(mManager, 1), "1: 10") << "its own is looked into even when the system lists none";
}

TEST(GIPCMessageQueueMgr, SearchesTheSharedNameSpaceWhereSystemsHaveOneOnly) {
    IPCWorld world;
    world.SetSessions({-1});
    Manager global(GShMemID("GIPCTest"), -1, Manager::Scope::cOwnOnly);
    const std::string found = std::string("-1: ").append(std::to_string(global.Register(7)));
    Manager manager(Manager::cTest);
    for (const auto& [osCode, searched] :
         {std::pair(3002, false), {3003, true}, {3008, true}, {3009, false}, {3016, false}}) {
        PSystem::SetOSCode(osCode);
        const bool isFound = searched || PSystem::GetPlatformCode() != PSystem::cPlatformWindows;
        EXPECT_EQ(Find(manager, 7), isFound ? found : "99:") << osCode;
    }
    PSystem::SetOSCode(PSystem::cUnknownOSCode);
}

TEST_F(GIPCMessageQueueMgrTest, ACorruptRegistryThrowsAndStaysAsItIs) {
    const std::tuple<const char*, long, std::vector<std::uint32_t>, long> rows[] = {
        {"no size, one behind the view, a negative one", 0, {0, 0x00100000, 0xFFFFFFFF}, 40163},
        {"a size without end offset, or one that cuts an entry", 0, {15, 31}, 40161},
        {"no end, one in the header or in an entry", 12, {0, 11, 21}, 40161},
        {"an end behind the registry, and the largest", 12, {8212, 0x7FFFFFFF}, 40161},
        {"a negative end, and the smallest", 12, {0xFFFFFFFC, 0x80000004}, 40161}};
    mManager.Register(9);
    const std::uint32_t registrationID = mRaw->GetWord(20);
    for (const auto& [what, offset, values, thrown] : rows) {
        for (const std::uint32_t value : values) {
            SCOPED_TRACE(testing::Message() << what << ": " << value);
            mRaw->SetWord(0, 8208);
            SetEntries({{9, static_cast<int>(registrationID)}, {1, 10}, {2, 20}});
            mRaw->SetWord(offset, value);
            const ByteList before = mRaw->Copy();
            EXPECT_EQ(ThrownBy([&] { mManager.IsRegistered(1); }), thrown);
            EXPECT_EQ(ThrownBy([&] { mManager.Register(3); }), thrown);
            EXPECT_EQ(ThrownBy([&] { mManager.Unregister(1); }), thrown);
            EXPECT_EQ(ThrownBy([&] { mManager.Unregister(1, 10); }), thrown);
            EXPECT_EQ(ThrownBy([&] { mManager.UnregisterOwn(); }), thrown);
            EXPECT_EQ(ThrownBy([&] { Find(mManager, 1); }), thrown);
            EXPECT_EQ(ThrownBy([&] { GetAll(mManager); }), thrown);
            EXPECT_EQ(mRaw->Copy(), before);
        }
    }
}

TEST_F(GIPCMessageQueueMgrTest, ACorruptRegistryDoesNotHideTheOthers) {
    const auto services = MakeRegistry("Session\\0\\");
    SetEntries({{1, 10}});
    for (const long spoiled : {0L, 4L, 12L}) {
        const std::uint32_t good = services->GetWord(spoiled);
        services->SetWord(spoiled, 0xFFFFFFFF);
        EXPECT_EQ(Find(mManager, 1), "1: 10") << spoiled;
        EXPECT_EQ(GetAll(mManager).GetCount(), 1) << spoiled;
        services->SetWord(spoiled, good);
    }
}

}  // namespace
