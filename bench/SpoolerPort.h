#pragma once

#include <vector>

#include "platform/win32/base/PWin32Api.h"

#include <winspool.h>

#include <winsplp.h>

/// SpoolerPort: the port of a monitor's library, opened as a spooler does, and the jobs that go to it.
class SpoolerPort {
public:
    explicit SpoolerPort(const wchar_t* library) {
        using Initialize = MONITOR2*(WINAPI*)(MONITORINIT*, HANDLE*);
        const HMODULE module = ::LoadLibraryW(library);
        if (module == nullptr) return;
        const FARPROC entry = ::GetProcAddress(module, "InitializePrintMonitor2");
        const auto initialize = reinterpret_cast<Initialize>(reinterpret_cast<void*>(entry));
        HANDLE monitor = nullptr;
        mTable = initialize(&mInit, &monitor);
        wchar_t name[] = L"QuillonPDFPort:";
        mTable->pfnOpenPort(monitor, name, &mPort);
    }
    bool IsOpen() const { return mPort != nullptr; }

    bool Start() {
        wchar_t printer[] = L"Benchmark";
        wchar_t document[] = L"Benchmark of the port";
        DOC_INFO_1W info = {document, nullptr, nullptr};
        return mTable->pfnStartDocPort(mPort, printer, 1, 1, reinterpret_cast<BYTE*>(&info));
    }
    bool Write(std::vector<BYTE>& block) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(block.size());
        return mTable->pfnWritePort(mPort, block.data(), size, &written) && written == size;
    }
    bool End() { return mTable->pfnEndDocPort(mPort); }

private:
    MONITORINIT mInit = {};
    MONITOR2* mTable = nullptr;
    HANDLE mPort = nullptr;
};
