#include "tools/quillonctl/DoctorFacts.h"

#include <algorithm>

#include "framework/system/GProcessInfo.h"
#include "monitor/handoff/GPPJobNotification.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SpoolerHost.h"
#include "tools/quillonctl/LibraryFile.h"
#include "tools/quillonctl/MessagingCheck.h"

namespace {

struct ServiceKind : PWin32NullableHandle {
    static void Close(void* handle) noexcept { ::CloseServiceHandle(static_cast<SC_HANDLE>(handle)); }
};
using ServiceHandle = PWin32ScopedHandle<ServiceKind>;

bool IsDisabled(const ServiceHandle& service) {
    alignas(QUERY_SERVICE_CONFIGW) BYTE block[8192];  // the most that the system gives
    DWORD needed = 0;
    auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(block);
    return ::QueryServiceConfigW(static_cast<SC_HANDLE>(service.Get()), config, sizeof block, &needed) &&
           config->dwStartType == SERVICE_DISABLED;
}

DoctorFacts::Service FindSpooler() {
    const ServiceHandle manager(::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    const ServiceHandle service(manager ? ::OpenServiceW(static_cast<SC_HANDLE>(manager.Get()), L"Spooler",
                                                         SERVICE_QUERY_STATUS | SERVICE_QUERY_CONFIG)
                                        : nullptr);
    SERVICE_STATUS status{};
    if (!service || !::QueryServiceStatus(static_cast<SC_HANDLE>(service.Get()), &status))
        throw SystemFailure(L"Asking for the state of the print spooler");
    return {status.dwCurrentState == SERVICE_RUNNING, IsDisabled(service)};
}

std::vector<DoctorFacts::Job> FindJobs(const std::vector<PrinterInfo>& printers) {
    std::vector<DoctorFacts::Job> jobs;
    for (const PrinterInfo& printer : printers) {
        for (QueuedJob& job : PrintQueue::GetJobs(printer.name))
            jobs.push_back({printer.name, std::move(job)});
    }
    return jobs;
}

std::vector<long> FindSilentReceivers(const std::vector<Listener>& listeners) {
    GTable<std::int32_t> running;
    GProcessInfo::GetInstance()->GetProcessIDs(GPPJobNotification::cListenerName, running, false);
    std::vector<long> silent;
    for (const std::int32_t process : running) {
        if (std::ranges::find(listeners, process, &Listener::processID) == listeners.end())
            silent.push_back(process);
    }
    return silent;
}

// A file of its own, gone as soon as it is closed.
std::wstring FindFolderFault(const std::wstring& folder) {
    const std::wstring path = folder + L"quillonctl-" + std::to_wstring(::GetCurrentProcessId()) + L".tmp";
    const PWin32ScopedHandle<PWin32FileHandle> file(
        ::CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                      FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    DWORD written = 0;
    if (file && ::WriteFile(file.Get(), "x", 1, &written, nullptr)) return {};
    return DescribeSystemError(::GetLastError());
}

}  // namespace

DoctorFacts DoctorFacts::Gather() {
    DoctorFacts facts;
    facts.status = StatusFacts::Gather();
    facts.isWine = SpoolerHost::IsWine();
    const std::wstring& library = facts.status.library.value.path;
    if (facts.status.library.value.exists) facts.libraryFault = LibraryFile::FindFault(library);
    if (!facts.isWine) {
        facts.spooler = Ask(FindSpooler);
        facts.loaded = Ask([&] { return LoadedLibrary::FindInSpooler(library); });
        facts.jobs = Ask([&] { return FindJobs(facts.status.printers.value); });
    }
    const Answer<std::wstring> obstacle = Ask([] { return MessagingCheck::FindObstacle(); });
    facts.messagingObstacle = obstacle.IsKnown() ? obstacle.value : obstacle.problem;
    facts.silentReceivers = Ask([&] { return FindSilentReceivers(facts.status.listeners.value); });
    if (facts.status.jobFolder.IsKnown())
        facts.folderFault = FindFolderFault(facts.status.jobFolder.value.path);
    facts.policies = Ask(PrintPolicies::GetInForce);
    return facts;
}
