#pragma once

#include "platform/win32/base/PWin32SpoolerApi.h"
#include "tests/WindowsTesting.h"
#include "tests/monitor/spooling/JobFolder.h"

/// The monitor's DLL as the spooler uses it, from loading to unloading.
class MonitorLibrary {
public:
    static constexpr const wchar_t* cPortName = L"QuillonPDFPort:";

    MonitorLibrary();

    HMODULE GetModule() const { return static_cast<HMODULE>(mModule.Get()); }
    const MONITOR2& GetTable() const { return *mTable; }
    const MONITORINIT* GetInit() const { return &mInit; }
    HANDLE GetMonitorHandle() const { return mMonitor; }

    /// Each of these asserts nothing; the last error is the callback's.
    bool Open(const wchar_t* name = cPortName);
    bool Start(const wchar_t* title, DWORD jobID = 7, const wchar_t* printer = L"Proof");
    bool Write(const std::string& data);
    bool End() { return mTable->pfnEndDocPort(mPort); }
    /// A whole job on the open port; false when any step is refused.
    bool Print(const wchar_t* title, const std::string& data);

    HANDLE mPort = nullptr;

private:
    MONITORINIT mInit = {};
    PWin32ScopedHandle<PWin32ModuleHandle> mModule;
    MONITOR2* mTable = nullptr;
    HANDLE mMonitor = nullptr;
};

/// The folder that stands in for the global temporary folder in this process and its children.
const JobFolder& GetTestFolder();
/// True when nobody else has the job file of that name open.
bool IsClosed(const std::string& fileName);
