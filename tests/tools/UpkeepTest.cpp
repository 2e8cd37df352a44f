// What jobs, doctor, clean and trace do on a disk.
#include "framework/core/errors/GException.h"
#include "tests/WindowsTesting.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/quillonctl/Cleaning.h"
#include "tools/quillonctl/JobList.h"
#include "tools/quillonctl/LibraryFile.h"
#include "tools/quillonctl/LoadedLibrary.h"
#include "tools/quillonctl/TraceSwitch.h"

namespace {

namespace fs = std::filesystem;

struct UpkeepTest : testing::Test {
    /// A file that was written so long ago, in folders that are made for it.
    std::wstring Put(const std::string& relative, int hours, const std::string& bytes = "x") const {
        fs::create_directories(mFolder.Standard(relative).parent_path());
        const fs::path path = mFolder.Put(relative, bytes);
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(hours));
        return path;
    }
    std::wstring GetStart() const { return mFolder.Standard("").wstring(); }
    TestFolder mFolder;
};

TEST_F(UpkeepTest, TheJobFilesOfAllUsersAndPrintersAreFound) {
    fs::create_directories(mFolder.Standard("empty"));
    Put("anna/Proof/Letter.ps", 50, "%!PS\n%%Title: A\n%%Pages: 2\n/#copies 3 def\n%%EOF\n");
    for (const char* name : {"anna/Second/Letter.ps", "bob/Proof/B\u00FCro.ps", "bob/Proof/notes.txt",
                             "bob/Proof/deeper/x.ps", "anna/x.ps", "x.ps"})
        Put(name, 0);
    const JobList list = JobList::Gather(GetStart());
    ASSERT_EQ(list.jobs.size(), 3u);
    EXPECT_EQ(list.jobs.back().fileName, L"Letter.ps");
    EXPECT_EQ(list.jobs.back().age / 3600, 50);
    EXPECT_THAT(ToUTF8(list.Format()),
                testing::EndsWith("\n2 d  48 bytes  2      3       complete    anna  Proof    A\n"));
    EXPECT_THROW(JobList::Gather(GetStart() + L"missing\\"), Failure);
}

TEST(JobList, IsShownAsATable) {
    JobList list{L"C:\\Temp\\", {}, 0};
    EXPECT_EQ(ToUTF8(list.Format()), "Job folder: C:\\Temp\\\nNo job files.\n");
    GPostScriptComments whole{true, GString("A\x1B[2J"), 12, 2, true};
    GPostScriptComments cut{true, GString(std::string(90, 'x').c_str()), -1, -1, false};
    list.jobs = {{L"anna", L"Proof", L"a.ps", 1536, 59, whole},
                 {L"J\u00FCrgen", L"P", L"b.ps", 3, 3600, cut},
                 {L"bob", L"P", L"c.ps", 0, 86400 * 3 - 1, std::nullopt}};
    list.closedFolders = 2;
    EXPECT_EQ(ToUTF8(list.Format()),
              "Job folder: C:\\Temp\\\n"
              "Age   Size     Pages  Copies  State       User    Printer  Title\n"
              "59 s  1.5 KB   12     2       complete    anna    Proof    A?[2J\n"
              "1 h   3 bytes  -      -       incomplete  J\u00FCrgen  P        " +
                  std::string(77, 'x') +
                  "...\n"
                  "2 d   0 bytes  -      -       no access   bob     P        (c.ps)\n"
                  "Folders that could not be looked into: 2\n");
}

std::vector<std::string> NamesIn(const Cleaning& cleaning, const std::wstring& start) {
    std::vector<std::string> names;
    for (const Cleaning::File& file : cleaning.files)
        names.push_back((file.obstacle.empty() ? "" : "kept ") + ToUTF8(file.path.substr(start.size())));
    return names;
}

TEST_F(UpkeepTest, CleaningRemovesOldJobFilesOfItsPrintersAlone) {
    Put("anna/Proof/old.ps", 50, std::string(2048, 'x'));
    Put("e\u0301/Caf\u00E9/e\u0301.ps", 50);
    Put("anna/Proof/new.ps", 0);
    const std::wstring written = Put("bob/proof/written.ps", 50);
    const std::wstring held = Put("bob/proof/held.ps", 50);
    const std::wstring twice = Put("bob/elsewhere/twice.ps", 50);
    ASSERT_TRUE(::CreateHardLinkW(mFolder.Standard("bob/proof/twice.ps").c_str(), twice.c_str(), nullptr));
    for (const char* name : {"anna/Proof/notes.txt", "anna/Other/old.ps", "anna (set aside 1)/Proof/old.ps",
                             "anna/Proof/old.ps (set aside 1)", "bob/old.ps"})
        Put(name, 50);
    const auto monitor = OpenSharing(written, GENERIC_WRITE, FILE_SHARE_READ);
    const auto receiver = OpenSharing(held, GENERIC_READ | DELETE, FILE_SHARE_READ);
    const std::vector<std::wstring> printers = {L"Proof", L"Gone", L"Cafe\u0301"};
    constexpr long long cTwoDays = 2 * 86400;
    const std::vector<std::string> expected = {"anna\\Proof\\old.ps", "kept bob\\proof\\held.ps",
                                               "kept bob\\proof\\written.ps",
                                               "e\u0301\\Caf\u00E9\\e\u0301.ps"};
    const Cleaning tried = Cleaning::Run(GetStart(), printers, cTwoDays, true);
    EXPECT_EQ(NamesIn(tried, GetStart()), expected);
    EXPECT_TRUE(mFolder.Has("anna/Proof/old.ps"));
    EXPECT_THAT(ToUTF8(tried.Format()),
                testing::AllOf(testing::StartsWith("Would remove "),
                               testing::EndsWith("Would remove 2 job files, 2.0 KB.\n")));
    EXPECT_TRUE(Cleaning::Run(GetStart(), printers, 51 * 3600, false).files.empty()) << "none is that old";
    const Cleaning done = Cleaning::Run(GetStart(), printers, cTwoDays, false);
    EXPECT_EQ(NamesIn(done, GetStart()), expected);
    EXPECT_TRUE(done.IsDone()) << "what is in use is no failure";
    EXPECT_FALSE(mFolder.Has("anna/Proof/old.ps") || mFolder.Has("e\u0301/Caf\u00E9/e\u0301.ps"));
    for (const char* name :
         {"anna/Proof/new.ps", "anna/Proof/notes.txt", "anna/Other/old.ps", "bob/proof/written.ps",
          "bob/proof/held.ps", "bob/proof/twice.ps", "bob/old.ps", "anna (set aside 1)/Proof/old.ps"})
        EXPECT_TRUE(mFolder.Has(name)) << name;
    EXPECT_THROW(Cleaning::Run(GetStart() + L"missing\\", printers, 0, true), Failure);
}

TEST_F(UpkeepTest, TheTraceLogIsSwitchedWhereTheMonitorLooks) {
    const std::wstring folder = mFolder.Standard("QuillonDebug");
    const std::string name = "QuillonDebug/QuillonPortMonitor64.tpr";
    EXPECT_FALSE(TraceSwitch::Off(folder));
    EXPECT_TRUE(TraceSwitch::On(folder));
    EXPECT_THAT(mFolder.Take(name), testing::HasSubstr("\"Log\" \"1\""));
    const std::string byHand = "#BEGINPREFS\n\"Job\"\n#BEGINDICT\n\"Log\" \"1\"\n#ENDDICT\n#ENDPREFS\n";
    mFolder.Put(name, byHand);
    EXPECT_FALSE(TraceSwitch::On(folder)) << "what an administrator has written stays";
    EXPECT_EQ(mFolder.Take(name), byHand);
    mFolder.Put(name, "");
    EXPECT_TRUE(TraceSwitch::On(folder)) << "one that logs nothing";
    mFolder.Put("QuillonDebug/QuillonPortMonitor64.tra", "a log");
    EXPECT_TRUE(TraceSwitch::Off(folder));
    EXPECT_FALSE(mFolder.Has(name));
    EXPECT_TRUE(mFolder.Has("QuillonDebug/QuillonPortMonitor64.tra"));
    fs::remove(mFolder.Standard("QuillonDebug/QuillonPortMonitor64.tra"));
    EXPECT_TRUE(TraceSwitch::On(folder) && TraceSwitch::Off(folder));
    EXPECT_FALSE(mFolder.Has("QuillonDebug")) << "an empty folder goes";
    mFolder.Put("QuillonDebug", "somebody's");
    EXPECT_THROW(TraceSwitch::On(folder), GException);
    EXPECT_EQ(mFolder.Take("QuillonDebug"), "somebody's");
}

TEST_F(UpkeepTest, ALoadedLibraryIsComparedWithTheDisk) {
    const std::wstring path = mFolder.Standard("QuillonPortMonitor64.dll");
    LibraryFile::Copy(LibraryFile::GetDeliveredPath(), path);
    const PWin32ScopedHandle<PWin32ModuleHandle> module(
        ::LoadLibraryExW(path.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES));
    ASSERT_TRUE(module);
    const auto isSame = [&](const std::wstring& file) {
        return LoadedLibrary::IsSame(::GetCurrentProcess(), module.Get(), file);
    };
    EXPECT_TRUE(isSame(path));
    std::string other = mFolder.Take("QuillonPortMonitor64.dll");
    constexpr std::size_t cStartOfHeader = 0x3C, cSum = 24 + 64;
    const auto header = static_cast<std::size_t>(static_cast<unsigned char>(other[cStartOfHeader]));
    other[header + cSum] = static_cast<char>(other[header + cSum] + 1);
    EXPECT_FALSE(isSame(mFolder.Put("other.dll", other)));
    other[cStartOfHeader + 3] = '\x7F';
    EXPECT_FALSE(isSame(mFolder.Put("spoilt.dll", other)));
    EXPECT_THROW(isSame(mFolder.Put("short.dll", other.substr(0, 4095))), Failure);
}

}  // namespace
