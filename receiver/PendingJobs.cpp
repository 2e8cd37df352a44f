#include "receiver/PendingJobs.h"

#include <algorithm>
#include <utility>

#include "framework/core/paths/GPathName.h"
#include "monitor/spooling/MonitorNames.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "receiver/JobFileName.h"

namespace {

struct Found {
    unsigned long long written = 0;  // when its last byte came
    std::wstring path;
    auto operator<=>(const Found&) const = default;
};

// User, server and printer: no job lies deeper.
constexpr int cMaxFolders = 3;
constexpr int cMinFolders = 2;

class Search {
public:
    /// False when the folder may not be listed. `depth`: how many folders lie between it and the job folder.
    bool Look(const std::wstring& folder, int depth) {
        WIN32_FIND_DATAW entry{};
        const PWin32ScopedHandle<PWin32SearchHandle> entries(
            ::FindFirstFileW((folder + L'*').c_str(), &entry));
        if (!entries) return ::GetLastError() != ERROR_ACCESS_DENIED;
        do {
            Take(folder, entry, depth);
        } while (::FindNextFileW(entries.Get(), &entry));
        return true;
    }
    std::vector<std::wstring> GetPaths() {
        std::ranges::sort(mFound);
        std::vector<std::wstring> paths;
        for (Found& found : mFound) paths.push_back(std::move(found.path));
        return paths;
    }

private:
    void Take(const std::wstring& folder, const WIN32_FIND_DATAW& entry, int depth) {
        const std::wstring name = entry.cFileName;
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return;
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            const bool isOther = name == L"." || name == L".." || JobFileName::IsSetAside(name);
            if (!isOther && depth < cMaxFolders) Look(folder + name + L'\\', depth + 1);
        } else if (depth >= cMinFolders && JobFileName::IsPending(name) &&
                   (entry.nFileSizeHigh | entry.nFileSizeLow) != 0) {
            const FILETIME& time = entry.ftLastWriteTime;
            mFound.push_back({static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime,
                              folder + name});
        }
    }

    std::vector<Found> mFound;
};

}  // namespace

std::vector<std::wstring> PendingJobs::Find(const std::wstring& folder, const std::wstring& user) {
    Search search;
    if (!search.Look(folder, 0)) search.Look(folder + user + L'\\', 1);
    return search.GetPaths();
}

GPPJobRecord PendingJobs::MakeRecord(const std::wstring& path, const std::wstring& folder) {
    const std::wstring_view inside = std::wstring_view(path).substr(folder.size());
    const std::size_t userEnd = std::min(inside.find(L'\\'), inside.size());
    const std::size_t printerEnd = std::max(inside.find_last_of(L'\\') + 1, userEnd + 2) - 1;
    std::wstring printer(inside.substr(userEnd + 1, printerEnd - userEnd - 1));
    // A printer of another server is called \\server\printer.
    if (printer.find(L'\\') != printer.npos) printer.insert(0, L"\\\\");
    return GPPJobRecord(NameFromWide(inside.substr(0, userEnd)), GPathName::FromNative(NameFromWide(path)),
                        NameFromWide(printer), GString(MonitorNames::cPort), 1);
}
