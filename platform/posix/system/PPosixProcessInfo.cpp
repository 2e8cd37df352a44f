#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>

#include "framework/system/GProcessInfo.h"
#include "framework/system/PSystem.h"

namespace fs = std::filesystem;

namespace {

bool IsOfCurrentUser(const fs::path& process) {
    struct stat status = {};
    return ::stat(process.c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

// Calls `visit(id)` for every entry of /proc that is a process.
template <class Visitor>
void VisitProcesses(bool currentUserOnly, Visitor visit) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename();
        std::int32_t processID = 0;
        const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), processID);
        if (failure != std::errc() || end != name.data() + name.size()) continue;
        if (!currentUserOnly || IsOfCurrentUser(entry.path())) visit(processID);
    }
}

GString GetImageLeaf(long processID) {
    std::error_code error;
    const fs::path image = fs::read_symlink("/proc/" + std::to_string(processID) + "/exe", error);
    return error ? GString() : GString::FromUTF8(image.filename().c_str());
}

// The fourth field of the status line; the second is a name in parentheses that may hold anything.
std::int32_t GetParent(std::int32_t processID) {
    std::ifstream file("/proc/" + std::to_string(processID) + "/stat");
    const std::string line((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const std::size_t nameEnd = line.rfind(')');
    if (nameEnd == std::string::npos || nameEnd + 4 > line.size()) return 0;
    std::int32_t parent = 0;
    std::from_chars(line.data() + nameEnd + 4, line.data() + line.size(), parent);
    return parent;
}

unsigned long long GetPages(int which) {
    const long pages = ::sysconf(which);
    return pages < 0
               ? 0
               : static_cast<unsigned long long>(pages) * static_cast<unsigned long long>(::getpagesize());
}

class PPosixProcessInfo : public GProcessInfo {
public:
    unsigned long long GetTotalPhysicalMemory() override { return GetPages(_SC_PHYS_PAGES); }

    unsigned long long GetAvailablePhysicalMemory() override { return GetPages(_SC_AVPHYS_PAGES); }

    unsigned long long GetOwnMemory() override {
        std::ifstream file("/proc/self/statm");
        unsigned long long pages = 0;
        file >> pages;
        return pages * static_cast<unsigned long long>(::getpagesize());
    }

    void GetProcessIDs(const GString& name, GTable<std::int32_t>& ids, bool currentUserOnly) override {
        ids.Clear();
        VisitProcesses(currentUserOnly, [&](std::int32_t processID) {
            const GString processName = GetImageLeaf(processID);
            if (!processName.IsEmpty() && processName == name) ids.Append(processID);
        });
    }

    void GetProcessNames(GTable<GString>& names, bool currentUserOnly) override {
        names.Clear();
        VisitProcesses(currentUserOnly, [&](std::int32_t processID) {
            const GString name = GetImageLeaf(processID);
            if (!name.IsEmpty()) names.Append(name);
        });
    }

    long GetCurrentProcessID() override { return ::getpid(); }

    bool IsProcessRunning(long processID) override {
        // 0 and below would mean groups of processes.
        if (processID < 1 || processID != static_cast<pid_t>(processID)) return false;
        return ::kill(static_cast<pid_t>(processID), 0) == 0 || errno == EPERM;
    }

    GTable<std::int32_t> GetChildProcessIDs(long parent) override {
        GTable<std::int32_t> children;
        VisitProcesses(false, [&](std::int32_t processID) {
            if (GetParent(processID) == parent) children.Append(processID);
        });
        return children;
    }

    GPathName GetApplicationPath() override { return PSystem::GetApplicationPath(); }

    GTable<std::int32_t> GetRunningProcessIDs() override {
        GTable<std::int32_t> running;
        VisitProcesses(false, [&](std::int32_t processID) { running.Append(processID); });
        return running;
    }

    GString GetProcessName(long processID) override { return GetImageLeaf(processID); }
};

}  // namespace

GProcessInfo* GProcessInfo::CreateDefault() {
    return new PPosixProcessInfo;
}
