#include "receiver/JobFile.h"

#include "receiver/JobFileName.h"
#include "receiver/JobPathRules.h"
#include "tests/WindowsTesting.h"
#include "tools/console/Console.h"

namespace {

using testing::HasSubstr;

TEST(JobPathRules, APlainPathNamesAFileOnADriveAndNothingElse) {
    const auto expect = [](bool isPlain, std::initializer_list<const wchar_t*> paths) {
        for (const wchar_t* path : paths) EXPECT_EQ(JobPathRules::IsPlain(path), isPlain) << ToUTF8(path);
    };
    expect(true, {L"C:\\a.ps", L"z:\\Temp\\J\u00FCrgen B\\Proof 2\\a.b (1).ps", L"C:\\COM\\nulls.ps",
                  L"C:\\.a\\..b"});
    expect(false, {L"", L"a.ps", L"C:", L"C:\\", L"C:a.ps", L"\\a.ps", L"1:\\a.ps", L"C:/a.ps"});
    expect(false, {L"C:\\a/b", L"C:\\a\\", L"C:\\\\a.ps", L"\\\\server\\share\\a.ps", L"//server/share/a.ps",
                   L"\\\\?\\C:\\a.ps", L"\\\\.\\pipe\\a", L"\\??\\C:\\a.ps"});
    expect(false, {L"C:\\a.ps:stream", L"C:\\a.ps::$DATA", L"C:\\a\\..\\b.ps", L"C:\\.\\b.ps", L"C:\\a.",
                   L"C:\\a \\b.ps"});
    expect(false,
           {L"C:\\NUL", L"C:\\aux.ps", L"C:\\com1 .x\\a.ps", L"C:\\CONIN$", L"C:\\a*.ps", L"C:\\a\nb"});
}

TEST(JobPathRules, BelowAFolderCountsWholeNamesInWhateverCase) {
    EXPECT_TRUE(JobPathRules::IsBelow(L"c:\\TEMP\\a", L"C:\\Temp"));
    EXPECT_TRUE(JobPathRules::IsBelow(L"C:\\Temp\\a\\b", L"C:\\Temp\\"));
    EXPECT_FALSE(JobPathRules::IsBelow(L"C:\\Temporary\\a", L"C:\\Temp"));
    EXPECT_FALSE(JobPathRules::IsBelow(L"C:\\Temp\\", L"C:\\Temp\\"));
    EXPECT_FALSE(JobPathRules::IsBelow(L"C:\\Tem", L"C:\\Temp\\"));
    EXPECT_TRUE(JobPathRules::IsOnLocalDrive(L"C:\\a"));
    EXPECT_FALSE(JobPathRules::IsOnLocalDrive(L"Q:\\a")) << "there is no such drive";
}

TEST(JobFileName, TellsWhatHasBecomeOfAJob) {
    // A path, its title, its name when marked, and whether it is pending and waiting.
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, bool, bool> rows[] = {
        {L"Letter.ps", L"Letter", L"Letter (taken 7-1).ps", true, false},
        {L"C:\\a.b\\Q3.5.PS", L"Q3.5", L"C:\\a.b\\Q3.5 (taken 7-1).PS", true, false},
        {L"a (waiting 47-11).ps", L"a", L"a (taken 7-1).ps", true, true},
        {L"a (taken 47-11).ps", L"a", L"a (taken 7-1).ps", false, false},
        {L"a (taken 47-11) (waiting 5-1).ps", L"a", L"a (taken 7-1).ps", true, true},
        {L"a (taken).ps", L"a (taken)", L"a (taken) (taken 7-1).ps", true, false},
        {L"a (taken ).ps", L"a (taken )", L"a (taken ) (taken 7-1).ps", true, false},
        {L"a (taken 1x).ps", L"a (taken 1x)", L"a (taken 1x) (taken 7-1).ps", true, false},
        {L"a (taken 1) b.ps", L"a (taken 1) b", L"a (taken 1) b (taken 7-1).ps", true, false},
        {L" (taken 1-1).ps", L"", L"", false, false},
        {L"a.ps (set aside 1)", L"a", L"a (taken 7-1).ps (set aside 1)", false, false},
        {L"a.pdf", L"a", L"a (taken 7-1).pdf", false, false},
        {L"ps", L"ps", L"ps (taken 7-1)", false, false},
        {L".ps", L".ps", L".ps (taken 7-1)", false, false},
    };
    for (const auto& [path, title, marked, isPending, isWaiting] : rows) {
        SCOPED_TRACE(ToUTF8(path));
        EXPECT_EQ(JobFileName::GetTitle(path), title);
        EXPECT_EQ(JobFileName::Mark(path, JobFileName::cTaken, L"7-1"), marked);
        EXPECT_EQ(JobFileName::IsPending(path), isPending);
        EXPECT_EQ(JobFileName::IsWaiting(path), isWaiting);
    }
}

class JobFileTest : public testing::Test {
protected:
    JobFile Take(const std::string& name) const { return JobFile::Take(mFolder.Standard(name), Root()); }
    std::wstring Root() const { return mFolder.Standard("").wstring(); }
    static std::string Leaf(const JobFile& file) {
        return ToUTF8(file.path.substr(file.path.find_last_of(L'\\') + 1));
    }

    TestFolder mFolder;
};

TEST_F(JobFileTest, EachJobOfATitleGetsANameOfItsOwnAndKeepsItsBytes) {
    mFolder.Put("a.b.ps", "%!PS one\n%%Title: A b\n%%Pages: 2\n%%EOF\n");
    JobFile first = Take("a.b.ps");
    EXPECT_THAT(Leaf(first), testing::MatchesRegex("a\\.b \\(waiting \\d+-\\d+\\)\\.ps"));
    EXPECT_EQ(first.bytes, 39u);
    EXPECT_TRUE(first.isComplete);
    EXPECT_EQ(first.title, L"A b");
    EXPECT_EQ(first.pages, 2);
    EXPECT_EQ(first.problem, L"");
    EXPECT_FALSE(mFolder.Has("a.b.ps"));
    EXPECT_TRUE(JobFile::Take(first.path, Root(), 0).isInUse) << "nobody else gets it";
    mFolder.Put("a.b.ps", "%!PS two");
    JobFile second = Take("a.b.ps");
    EXPECT_TRUE(first.HandOut() && second.HandOut());
    EXPECT_THAT(Leaf(first), testing::MatchesRegex("a\\.b \\(taken \\d+-\\d+\\)\\.ps"));
    EXPECT_FALSE(second.isComplete);
    EXPECT_THAT(ToUTF8(second.problem), HasSubstr("no %%EOF"));
    EXPECT_EQ(mFolder.Take(Leaf(first)).size(), 39u);
    EXPECT_EQ(mFolder.Take(Leaf(second)), "%!PS two");
    mFolder.Put(std::string(200, 'x') + ".ps", "");
    EXPECT_THAT(Leaf(Take(std::string(200, 'x') + ".ps")), testing::EndsWith(").ps")) << "cut to fit";
}

TEST_F(JobFileTest, WhatIsNotAJobFileIsNeitherOpenedNorRenamed) {
    mFolder.Put("a.ps", "x");
    std::filesystem::create_directory(mFolder.Standard("sub"));
    const std::tuple<std::wstring, std::wstring, const char*> rows[] = {
        {L"\\\\.\\pipe\\x", L"", "no plain path"},
        {Root() + L"a.ps:x", L"", "no plain path"},
        {Root() + L"a.ps", Root() + L"sub", "is not below"},
        {Root() + L"missing.ps", Root(), "cannot be opened"},
        {Root() + L"sub", Root(), "cannot be opened"},
    };
    for (const auto& [path, folder, problem] : rows) {
        const JobFile file = JobFile::Take(path, folder);
        EXPECT_THAT(ToUTF8(file.problem), HasSubstr(problem));
        EXPECT_FALSE(file.bytes);
    }
    EXPECT_EQ(mFolder.Take("a.ps"), "x");
    EXPECT_EQ(JobFile::Take(Root() + L"a.ps", L"").bytes, 1u) << "anywhere";
}

TEST_F(JobFileTest, WaitsUntilTheWriterHasClosed) {
    PWin32ScopedHandle<PWin32FileHandle> file(::CreateFileW(mFolder.Standard("a.ps").c_str(), GENERIC_WRITE,
                                                            FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0,
                                                            nullptr));
    // As the monitor does it once its notification has been taken.
    std::thread closer([&] {
        DWORD written = 0;
        ::Sleep(100);
        ::WriteFile(file.Get(), "last", 4, &written, nullptr);
        file = {};
    });
    EXPECT_EQ(Take("a.ps").bytes, 4u);
    closer.join();
}

}  // namespace
