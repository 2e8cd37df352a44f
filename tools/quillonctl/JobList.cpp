#include "tools/quillonctl/JobList.h"

#include <algorithm>
#include <array>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/machine/JobComments.h"
#include "tools/machine/SecondsSince.h"
#include "tools/quillonctl/Status.h"

namespace {

/// What of a folder's entries is wanted.
enum class Wanted { cFolders, cJobFiles };

bool IsWanted(const WIN32_FIND_DATAW& entry, Wanted wanted) {
    const std::wstring_view name = entry.cFileName;
    if (name == L"." || name == L".." || (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        return false;
    const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isFolder == (wanted == Wanted::cFolders);
}

// False, with the last error set, when the folder cannot be looked into.
template <class Take>
bool ForEach(const std::wstring& folder, Wanted wanted, Take take) {
    WIN32_FIND_DATAW entry{};
    const std::wstring pattern = folder + (wanted == Wanted::cFolders ? L"*" : L"*.ps");
    const PWin32ScopedHandle<PWin32SearchHandle> search(::FindFirstFileW(pattern.c_str(), &entry));
    if (!search) return ::GetLastError() == ERROR_FILE_NOT_FOUND;
    do {
        if (IsWanted(entry, wanted)) take(entry);
    } while (::FindNextFileW(search.Get(), &entry));
    return ::GetLastError() == ERROR_NO_MORE_FILES;
}

void AddJobs(JobList& list, const std::wstring& user, const std::wstring& printer) {
    const std::wstring folder = list.folder + user + L'\\' + printer + L'\\';
    const bool listed = ForEach(folder, Wanted::cJobFiles, [&](const WIN32_FIND_DATAW& entry) {
        const auto bytes = std::uint64_t{entry.nFileSizeHigh} << 32 | entry.nFileSizeLow;
        list.jobs.push_back({user, printer, entry.cFileName, bytes, SecondsSince(entry.ftLastWriteTime),
                             TryReadJobComments(folder + entry.cFileName)});
    });
    if (!listed) ++list.closedFolders;
}

std::wstring FormatAge(long long seconds) {
    constexpr struct {
        long long seconds;
        const wchar_t* name;
    } cUnits[] = {{86400, L" d"}, {3600, L" h"}, {60, L" min"}};
    for (const auto& unit : cUnits) {
        if (seconds >= unit.seconds) return std::to_wstring(seconds / unit.seconds) + unit.name;
    }
    return std::to_wstring(seconds) + L" s";
}

std::wstring FormatCount(std::int32_t count) {
    return count < 0 ? L"-" : std::to_wstring(count);
}

using Row = std::array<std::wstring, 8>;

Row MakeRow(const JobEntry& job) {
    constexpr std::size_t cMaxTitle = 80;
    const GPostScriptComments told = job.comments.value_or(GPostScriptComments());
    std::wstring title = AsStandard(told.title);
    if (title.size() > cMaxTitle) title.replace(cMaxTitle - 3, std::wstring::npos, L"...");
    if (title.empty()) title = L'(' + job.fileName + L')';
    const wchar_t* const state = !job.comments ? L"no access" : told.isComplete ? L"complete" : L"incomplete";
    return {FormatAge(job.age),
            FormatByteCount(job.bytes),
            FormatCount(told.pages),
            FormatCount(told.copies),
            state,
            MakePrintable(job.user),
            MakePrintable(job.printer),
            MakePrintable(title)};
}

std::wstring FormatTable(const std::vector<Row>& rows) {
    std::array<std::size_t, std::tuple_size_v<Row> - 1> widths{};
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], row[i].size() + 2);
    }
    std::wstring table;
    for (Row row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i) row[i].resize(widths[i], L' ');
        for (const std::wstring& cell : row) table += cell;
        table += L'\n';
    }
    return table;
}

}  // namespace

JobList JobList::Gather(const std::wstring& folder) {
    JobList list;
    list.folder = folder;
    const bool listed = ForEach(folder, Wanted::cFolders, [&](const WIN32_FIND_DATAW& user) {
        const std::wstring name = user.cFileName;
        const auto addJobs = [&](const WIN32_FIND_DATAW& printer) { AddJobs(list, name, printer.cFileName); };
        if (!ForEach(folder + name + L'\\', Wanted::cFolders, addJobs)) ++list.closedFolders;
    });
    if (!listed) throw SystemFailure(L"Looking into the job folder " + folder);
    std::ranges::stable_sort(list.jobs, {}, &JobEntry::age);
    return list;
}

std::wstring JobList::Format() const {
    std::wstring text = L"Job folder: " + folder + L'\n';
    if (jobs.empty()) text += L"No job files.\n";
    std::vector<Row> rows = {{L"Age", L"Size", L"Pages", L"Copies", L"State", L"User", L"Printer", L"Title"}};
    for (const JobEntry& job : jobs) rows.push_back(MakeRow(job));
    if (!jobs.empty()) text += FormatTable(rows);
    if (closedFolders > 0)
        text += L"Folders that could not be looked into: " + std::to_wstring(closedFolders) + L'\n';
    return text;
}
