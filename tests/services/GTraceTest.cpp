#include "framework/services/GTrace.h"

#include "framework/files/GFileOpenMode.h"
#include "framework/files/GFileSystem.h"
#include "framework/services/GTraceFile.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GMemoryOutStream.h"
#include "framework/system/PSystem.h"
#include "tests/files/TestFolder.h"

namespace {

std::string Group(const std::string& name, const std::string& values) {
    return "\"" + name + "\"\n#BEGINDICT\n" + values + "#ENDDICT\n";
}

std::string Prefs(const std::string& groups) {
    return "#BEGINPREFS\n" + groups + "#ENDPREFS\n";
}

/// All categories on, without place and time.
const std::string cOn = "\"Log\" \"1\"\n\"LogLocation\" \"0\"\n\"LogTime\" \"0\"\n";

/// A temporary folder of its own, and what a test puts into QuillonDebug there.
struct GTraceTest : FolderTest {
    GTraceTest() {
        GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, mFolder.Portable());
        GFileSystem::AddSpecialPath(GSpecialPath::cLibrary, GPathName("X:/lib/Mod.v2.dll"));
    }
    ~GTraceTest() override {
        GTrace::SetInstance(nullptr);
        GFileSystem::RemoveAllSpecialPaths();
    }
    void Configure(const std::string& text) {
        std::filesystem::create_directories(mFolder.Standard("QuillonDebug"));
        mFolder.Put("QuillonDebug/Mod.v2.tpr", text);
    }
    std::string Log(const char* suffix = "") const {
        return mFolder.Take(std::string("QuillonDebug/Mod.v2") + suffix + ".tra");
    }
    /// A log into mLog, without place and time unless `defaults` switches them on again.
    void Install(const std::string& defaults) {
        Configure(Prefs(Group("Defaults", "\"LogLocation\" \"0\"\n\"LogTime\" \"0\"\n" + defaults)));
        GTrace::SetInstance(new GTrace(std::make_unique<GMemoryOutStream>(mLog)));
    }

    GBuffer mLog;
};

TEST_F(GTraceTest, CategoriesAreOnAsTheConfigurationSays) {
    const std::string all =
        "\"Log\" \"tRue\"\n\"LogAssert\" \"1\"\n\"LogDetail\" \"TRUE\"\n\"AssertOnDetail\" \"1\"\n";
    // Which of A, XAS, XDE, D and On are logged, and which alert.
    const std::tuple<const char*, std::string, const char*> rows[] = {
        {"nothing", "", " "},
        {"no text of preferences", "\"Defaults\"", " "},
        {"plain entries", Prefs(Group("Defaults", "\"Log\" \"true\"\n")), "A;D;On; "},
        {"everything", Prefs(Group("Defaults", all)), "A;XAS;XDE;D;On; XDE;"},
        {"words that are none", Prefs(Group("Defaults", "\"Log\" \"yes\"\n\"LogAssert\" \"\"\n")), " "},
        {"a category", Prefs(Group("On", "\"Log\" \"1\"\n\"Assert\" \"1\"\n")), "On; On;"},
        {"one that is off", Prefs(Group("XDE", "\"Log\" \"0\"\n") + Group("Defaults", all)),
         "A;XAS;D;On; XDE;"},
        {"one group without its end", "#BEGINPREFS\n" + Group("On", "\"Log\" \"1\"\n"), "On; "}};
    for (const auto& [what, text, expected] : rows) {
        Configure(text);
        const GTrace trace;
        std::string logs, alerts;
        for (const std::string name : {"A", "XAS", "XDE", "D", "On"}) {
            if (trace.GetNeedsLogging(name.c_str())) logs += name + ";";
            if (trace.GetAlertOnLog(name.c_str())) alerts += name + ";";
        }
        EXPECT_EQ(logs + " " + alerts, expected) << what;
    }
}

TEST_F(GTraceTest, OffTouchesNoFile) {
    GTrace::SetInstance(new GTrace);
    GTrace::TraceAssert("nothing");
    GTraceLog::Trace("A", "nothing");
    { const GTraceBlock block("A", "b"); }
    EXPECT_FALSE(mFolder.Has("QuillonDebug"));
    GTrace::SetInstance(nullptr);
    GTrace::TraceAssert("nobody");
    { const GTraceBlock block("A", "b"); }
    // Without a temporary folder there is no configuration either.
    Configure(Prefs(Group("Defaults", "\"Log\" \"1\"\n")));
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, GPathName());
    EXPECT_FALSE(GTrace().GetNeedsLogging("A"));
}

TEST_F(GTraceTest, EntriesAreIndentedByBlocksWhichEndOnce) {
    Install("\"Log\" \"1\"\n\"Indent\" \"..\"\n\"Prefix\" \"\"\n");
    GTraceLog::Trace("A", "one");
    {
        GTraceBlock outer("A", "outer");
        {
            const GTraceBlock inner("A", "inner");
            const GTraceBlock copy(inner);
            GTraceLog::Trace("A", "two");
        }
        GTraceLog::Trace("XDE", "off");
        GTraceBlock other(outer);
        outer = other;
    }
    GTrace::GetInstance()->RemoveIndent();
    GTraceLog::Trace("A", "three");
    EXPECT_STREQ(mLog.GetPtr(),
                 "\n *** A one\n *** A Beginning:outer\n.. *** A Beginning:inner\n.... *** A two\n"
                 ".. *** A Ending:inner\n *** A Ending:outer\n *** A three");
}

TEST_F(GTraceTest, AnEntryTellsPlaceAndTime) {
    Install("\"LogAssert\" \"1\"\n\"LogLocation\" \"1\"\n");
    GTrace::TraceAssert("m", GCodeLocation(nullptr, 0, "Run"));
    GTrace::TraceAssert("m", GCodeLocation("../framework/Reader", 120, nullptr));
    EXPECT_STREQ(mLog.GetPtr(), "\n *** AssertAS :0@Run m\n *** AssertAS Reader:120 m");
    mLog.Clear();
    const int line = __LINE__ + 1;
    GTrace::TraceAssert("m");
    const std::string place = "GTraceTest.cpp:" + std::to_string(line) + "@TestBody m";
    EXPECT_TRUE(std::string(mLog.GetPtr()).ends_with(place)) << mLog.GetPtr();
    Install("\"Log\" \"1\"\n\"LogTime\" \"1\"\n");
    mLog.Clear();
    GTraceLog::Trace("A", "m");
    const std::string entry = mLog.GetPtr();
    EXPECT_TRUE(entry.starts_with("\n *** A ") && entry.ends_with(" m")) << entry;
    EXPECT_NE(entry.find(':'), std::string::npos) << "the time of day";
}

TEST_F(GTraceTest, StreamDataFollowsAnEntryThatWasWritten) {
    Install("\"Log\" \"1\"\n");
    const GBuffer data("0123456789");
    GMemoryInStream stream(data);
    stream.Skip(2);
    GTraceLog::Trace("XDE", "off");
    GTrace::GetInstance()->TraceStreamData(&stream, 5);
    EXPECT_TRUE(mLog.IsEmpty());
    GTraceLog::Trace("A", "on");
    for (const long count : {3L, 100L, 0L, -1L}) GTrace::GetInstance()->TraceStreamData(&stream, count);
    EXPECT_EQ(stream.GetPosition(), 2);
    GTrace::GetInstance()->SetLastLogged(false);
    GTrace::GetInstance()->TraceStreamData(&stream, 5);
    {
        const GTraceLock lock;
        EXPECT_TRUE(lock.GetIsOK());
        EXPECT_FALSE(GTraceLock().GetIsOK());
        GTraceLog::Trace("A", "dropped");
        GTrace::GetInstance()->SetLastLogged(true);
        GTrace::GetInstance()->TraceStreamData(&stream, 5);
    }
    GTraceLog::Trace("A", "open again");
    EXPECT_STREQ(mLog.GetPtr(), "\n *** A on23423456789\n *** A open again");
}

TEST_F(GTraceTest, AStaleLogIsOverwrittenAndANewOneNumberedOnRequest) {
    Configure(Prefs(Group("Defaults", cOn)));
    mFolder.Put("QuillonDebug/Mod.v2.tra", "stale, and longer than what comes");
    GTrace::SetInstance(new GTrace);
    GTraceLog::Trace("A", "1");
    GTraceLog::Trace("A", "2");
    EXPECT_EQ(Log(), "\n *** A 1\n *** A 2");
    GTrace::SetInstance(nullptr);
    Configure(Prefs(Group("Defaults", cOn + "\"AlwaysUseNewFile\" \"1\"\n")));
    GTrace::SetInstance(new GTrace);
    GTraceLog::Trace("A", "3");
    EXPECT_EQ(Log(), "\n *** A 1\n *** A 2");
    EXPECT_EQ(Log(" (0)"), "\n *** A 3");
}

TEST_F(GTraceTest, ALogIsKeptOnceWhenItIsTooLong) {
    constexpr std::uintmax_t cMost = GTraceFile::cMaxLength;
    const auto length = [&](const char* name) { return std::filesystem::file_size(mFolder.Standard(name)); };
    mFolder.Put("t.tra", "");
    std::filesystem::resize_file(mFolder.Standard("t.tra"), cMost + 1);
    mFolder.Put("t (old).tra", "before");
    GTraceFile file(mFolder.Portable("t.tra"), false);
    EXPECT_EQ(length("t.tra"), 0U);
    EXPECT_EQ(length("t (old).tra"), cMost + 1);
    const GBuffer half(std::string(GTraceFile::cMaxLength / 2, 'h').c_str());
    file.Write(half);
    file.Write(half);
    EXPECT_EQ(length("t.tra"), cMost);
    file.Write("y");
    EXPECT_EQ(mFolder.Take("t.tra"), "y");
    EXPECT_EQ(length("t (old).tra"), cMost);
}

TEST_F(GTraceTest, ALogInUseIsLeftToWhoHasItAndWhatCannotBeOpenedReachesTheCaller) {
    const GPathName path = mFolder.Portable("t.tra");
    const GTraceFile first(path, false), second(path, false), third(path, false);
    // Natively nothing tells that somebody has a file open.
    const bool seesUse = PSystem::GetPlatformCode() == PSystem::cPlatformWindows;
    EXPECT_EQ(TextOf(first.GetPathName().GetLeaf()), "t.tra");
    EXPECT_EQ(TextOf(second.GetPathName().GetLeaf()), seesUse ? "t (0).tra" : "t.tra");
    EXPECT_EQ(TextOf(third.GetPathName().GetLeaf()), seesUse ? "t (1).tra" : "t.tra");
    std::filesystem::create_directories(mFolder.Standard("u.tra"));
    for (int i = 0; i <= 10; ++i)
        std::filesystem::create_directories(mFolder.Standard("u (" + std::to_string(i) + ").tra"));
    EXPECT_THROW(GTraceFile(mFolder.Portable("u.tra"), false), GException);
    EXPECT_THROW(GTraceFile(GPathName(), false), GException);
}

TEST_F(GTraceTest, WhatCannotBeWrittenReachesTheCallerUnlessHeIsQuiet) {
    struct Refusing : GOutStream {
        long Write(const GBuffer&) override { throw GSimpleException(GExceptionID::cCouldNotWriteFile); }
        void Flush() override {}
    };
    Configure(Prefs(Group("Defaults", "\"Log\" \"1\"\n")));
    GTrace::SetInstance(new GTrace(std::make_unique<Refusing>()));
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_THROW(GTraceLog::Trace("A", "m"), GException);
        EXPECT_THROW(GTraceBlock("A", "b"), GException);
        bool composed = false;
        const auto compose = [&] {
            composed = true;
            return GString("m");
        };
        GTraceLog::TraceQuietly("XDE", compose);
        EXPECT_FALSE(composed) << "the category is off";
        GTraceLog::TraceQuietly("A", compose);
        EXPECT_TRUE(composed);
    }
}

TEST_F(GTraceTest, WhatIsLinkedElsewhereIsNeitherReadNorWritten) {
    const auto link = [&](const char* from, const char* to) {
        std::filesystem::create_hard_link(mFolder.Standard(from), mFolder.Standard(to));
    };
    Configure(Prefs(Group("Defaults", cOn)));
    mFolder.Put("other", "of somebody else");
    link("other", "QuillonDebug/Mod.v2.tra");
    link("other", "QuillonDebug/Mod.v2 (0).tra");
    GTrace::SetInstance(new GTrace);
    GTraceLog::Trace("A", "1");
    EXPECT_EQ(mFolder.Take("other") + Log(" (1)"), "of somebody else\n *** A 1");
    link("QuillonDebug/Mod.v2.tpr", "again");
    EXPECT_FALSE(GTrace().GetNeedsLogging("A"));
}

struct CountedCallback : GCallbackAssert {
    CountedCallback() { ++sAlive; }
    ~CountedCallback() override { --sAlive; }
    static inline int sAlive = 0;
};

TEST(GCallbackAssert, TheFirstInstallerWinsOverEveryDefault) {
    auto* const first = new CountedCallback;
    GCallbackAssert::SetDefaultInstance(first);
    GCallbackAssert::SetDefaultInstance(new CountedCallback);
    EXPECT_EQ(GCallbackAssert::GetInstance(), first);
    GCallbackAssert::SetInstance(nullptr);
    GCallbackAssert::SetDefaultInstance(new CountedCallback);
    EXPECT_EQ(GCallbackAssert::GetInstance(), nullptr);
    EXPECT_EQ(CountedCallback::sAlive, 0);
    {
        GTrace trace;
        EXPECT_EQ(trace.GetAssertCallback(), nullptr);
        auto* const second = new CountedCallback;
        trace.SetAssertCallback(second);
        trace.SetAssertCallback(second);
        EXPECT_EQ(trace.GetAssertCallback(), second);
        trace.SetAssertCallback(new CountedCallback);
        EXPECT_EQ(CountedCallback::sAlive, 1);
    }
    EXPECT_EQ(CountedCallback::sAlive, 0);
}

}  // namespace
