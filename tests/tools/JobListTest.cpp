#include "tools/quillonctl/JobList.h"

#include "tests/Testing.h"
#include "tests/files/TestFolder.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"

namespace {

TEST(JobList, FindsTheJobFilesOfAllUsersAndPrinters) {
    const TestFolder folder;
    for (const char* name : {"anna/Proof", "anna/Second", "bob/Proof/deeper", "empty"})
        std::filesystem::create_directories(folder.Standard(name));
    folder.Put("anna/Proof/Letter.ps", "%!PS\n%%Title: A\n%%Pages: 2\n/#copies 3 def\n%%EOF\n");
    folder.Put("anna/Second/Letter.ps", "%!PS");
    folder.Put("bob/Proof/B\u00FCro.ps", "");
    for (const char* name : {"bob/Proof/notes.txt", "bob/Proof/deeper/x.ps", "anna/x.ps", "x.ps"})
        folder.Put(name, "");
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(50);
    std::filesystem::last_write_time(folder.Standard("anna/Proof/Letter.ps"), old);
    const JobList list = JobList::Gather(folder.Standard("").wstring());
    ASSERT_EQ(list.jobs.size(), 3u);
    EXPECT_EQ(list.jobs.back().fileName, L"Letter.ps");
    EXPECT_EQ(list.jobs.back().age / 3600, 50);
    EXPECT_THAT(ToUTF8(list.Format()),
                testing::EndsWith("\n2 d  48 bytes  2      3       complete    anna  Proof    A\n"));
    EXPECT_THROW(JobList::Gather(folder.Standard("missing").wstring() + L'\\'), Failure);
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

}  // namespace
