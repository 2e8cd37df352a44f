#include "framework/system/GExternalProcess.h"

#include "tests/platform/PeerProgram.h"

namespace {

constexpr long cLong = 30000;  // milliseconds; far more than anything here takes

bool Start(GExternalProcess& process, const GTable<GString>& arguments) {
    return process.Run(PeerPath(), arguments, false, true);
}

/// What the peer writes when it is given these.
std::pair<std::u16string, std::u16string> Arrived(const TestFolder& folder, const GTable<GString>& arguments,
                                                  bool prepared) {
    GTable<GString> line = {"argv", folder.Portable("argv").GetNativePathString()};
    if (prepared) line[1] = GExternalProcess::PrepareArgument(line[1]);
    for (const GString& argument : arguments)
        line.Append(prepared ? GExternalProcess::PrepareArgument(argument) : argument);
    GExternalProcess process;
    EXPECT_TRUE(process.Run(PeerPath(), line, false, prepared));
    EXPECT_TRUE(process.WaitForEnd(cLong));
    EXPECT_EQ(process.GetReturnValue(), 0);
    return WrittenArguments(folder);
}

TEST(GExternalProcess, PreparedArgumentsArriveAsTheyWere) {
    const TestFolder folder;
    std::mt19937 random(5);
    const std::u16string units = u"\"\"\"\\\\\\  \tab*?%&|<>^'\u00E9\u4E00\u0416;=,/-";
    // 2,000 lists of arguments, many of which go in one line.
    constexpr int cLists = 2000;
    constexpr std::size_t cMaxLine = 15000;
    for (int list = 0; list < cLists;) {
        std::u16string expected;
        GTable<GString> arguments;
        const auto add = [&](const std::u16string& argument) {
            expected += argument + u'\0';
            arguments.Append(Text(argument));
        };
        for (const char16_t* each : {u"", u"\\", u"\"", u"a b\\\\", u"\\\\server\\share\\", u"*.exe"})
            add(each);
        for (std::size_t length = 0; length < cMaxLine && list < cLists; ++list) {
            for (unsigned count = random() % 6; count-- > 0;) {
                std::u16string argument;
                for (unsigned i = random() % 9; i-- > 0;) argument += units[random() % units.size()];
                length += 2 * argument.size() + 3;
                add(argument);
            }
        }
        const auto& [byRuntime, bySystem] = Arrived(folder, arguments, true);
        ASSERT_TRUE(byRuntime == expected);
        ASSERT_TRUE(bySystem == expected);
    }
}

TEST(GExternalProcess, OtherArgumentsAreQuotedAsTextsOfTheFramework) {
    EXPECT_EQ(TextOf(GExternalProcess::MakeCommandLine("C:\\a b\\x.exe", {"", "a \"b\"", "c:\\d"}, false)),
              R"("C:\\a b\\x.exe" "" "a \"b\"" "c:\\d" )");
    EXPECT_EQ(TextOf(GExternalProcess::MakeCommandLine("x", {"a b", "\"c\""}, true)), R"("x" a b "c" )");
    const TestFolder folder;
    const auto& [byRuntime, bySystem] = Arrived(folder, {"a b", "", "q\"q", "back\\slash"}, false);
    EXPECT_EQ(byRuntime, u"a b\0\0q\"q\0back\\\\slash\0"s);
    EXPECT_EQ(bySystem, byRuntime);
}

TEST(GExternalProcess, BatchFilesRunWhateverTheCaseOfTheirExtension) {
    const TestFolder folder;
    std::filesystem::create_directories(folder.Standard("a b"));
    for (const char* const name : {"x.bat", "Y.BAT", "a b/z.Bat"}) {
        folder.Put(name, "@echo %~1,%CD%>\"%~2\"\r\n@exit /b 7\r\n");
        GExternalProcess process;
        const GString out = folder.Portable("out").GetNativePathString();
        const GPathName inside = folder.Portable("a b");
        ASSERT_TRUE(process.Run(folder.Portable(name), {"a 1", out}, false, false, inside)) << name;
        EXPECT_TRUE(process.WaitForEnd(cLong));
        EXPECT_EQ(process.GetReturnValue(), 7);
        EXPECT_EQ(folder.Take("out"), "a 1," + TextOf(inside.GetNativePathString()) + "\r\n");
    }
}

TEST(GExternalProcess, TellsHowAProgramHasEnded) {
    for (const long code : {0L, 1L, 255L, 256L, -1L, 1234567L}) {
        GExternalProcess process;
        EXPECT_TRUE(Start(process, {"exit", GString(code)}));
        EXPECT_NE(process.GetProcessID(), 0);
        while (process.IsRunning()) PSystem::MilliSleep(1);
        EXPECT_EQ(process.GetReturnValue(), code);
        // Attached by its ID: the handle above still keeps what has ended.
        GExternalProcess attached(process.GetProcessID());
        EXPECT_EQ(attached.GetReturnValue(), 0);
        EXPECT_FALSE(attached.IsRunning());
        EXPECT_EQ(attached.GetReturnValue(), code);
    }
    GExternalProcess process;
    EXPECT_TRUE(Start(process, {"exit", "259"}));
    EXPECT_TRUE(process.WaitForEnd(cLong));
    EXPECT_EQ(process.GetReturnValue(), 259);
    EXPECT_TRUE(process.IsRunning()) << "the system's code for it";
}

TEST(GExternalProcess, WhatCannotBeStartedOrOpenedIsFalse) {
    GExternalProcess process;
    const TestFolder folder;
    folder.Put("text.exe", "no program");
    EXPECT_FALSE(process.Run(GPathName("C:/missing/x.exe"), {}));
    EXPECT_FALSE(process.Run(folder.Portable("text.exe"), {}));
    EXPECT_FALSE(process.Run(PeerPath(), {"exit", "1"}, false, true, GPathName("C:/missing")));
    EXPECT_FALSE(Start(process, {"exit", "3", Text(u"\0b"sv)}));
    for (const long id : {0L, 0x7FFFFFF0L, -1L}) {
        GExternalProcess none(id);
        EXPECT_FALSE(none.IsRunning() || none.WaitForEnd(0) || none.SetPriority(0) ||
                     none.TerminateProcess());
        EXPECT_EQ(none.GetProcessID(), id);
    }
}

TEST(GExternalProcess, IsAttachedSlowedAndEnded) {
    GExternalProcess started;
    ASSERT_TRUE(Start(started, {"wait", "no such file"}));
    const long id = started.GetProcessID();
    GProcessInfo& processes = *GProcessInfo::GetInstance();
    const GExternalProcess own(processes.GetCurrentProcessID());
    EXPECT_TRUE(own.GetChildProcessIDs().Has(static_cast<std::int32_t>(id)));
    EXPECT_TRUE(processes.IsProcessRunning(id));
    // It may have a console's process as its child.
    EXPECT_FALSE(started.GetChildProcessIDs().Has(static_cast<std::int32_t>(own.GetProcessID())));
    const PWin32ScopedHandle<PWin32KernelHandle> handle(
        ::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, static_cast<DWORD>(id)));
    GExternalProcess attached(id);
    const std::tuple<long, DWORD> rows[] = {{20, IDLE_PRIORITY_CLASS},     {10, BELOW_NORMAL_PRIORITY_CLASS},
                                            {5, NORMAL_PRIORITY_CLASS},    {-10, ABOVE_NORMAL_PRIORITY_CLASS},
                                            {-19, HIGH_PRIORITY_CLASS},    {0, NORMAL_PRIORITY_CLASS},
                                            {-20, REALTIME_PRIORITY_CLASS}};
    for (const auto& [priority, expected] : rows) {
        EXPECT_TRUE(attached.SetPriority(priority)) << priority;
        EXPECT_EQ(::GetPriorityClass(handle.Get()), expected) << priority;
    }
    started.DetachProcess();
    started.DetachProcess();
    EXPECT_TRUE(attached.IsRunning());
    EXPECT_FALSE(attached.WaitForEnd(-1));
    EXPECT_TRUE(GExternalProcess(id).TerminateProcess());
    EXPECT_TRUE(attached.WaitForEnd(cLong));
    EXPECT_FALSE(attached.IsRunning() || processes.IsProcessRunning(id));
    EXPECT_EQ(attached.GetReturnValue(), 0);
    EXPECT_FALSE(own.GetChildProcessIDs().Has(static_cast<std::int32_t>(id)));
}

}  // namespace
