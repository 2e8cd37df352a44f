#pragma once

#include "monitor/spooling/MonitorPlatform.h"

/// PWin32MonitorPlatform: Windows and its spooler, as the monitor asks them. Has no state.
class PWin32MonitorPlatform final : public MonitorPlatform {
public:
    PWin32MonitorPlatform() noexcept = default;

    void Trace(const wchar_t* word) noexcept override;
    void TraceNarrow(const char* word) noexcept override;
    void TraceUnits(const unsigned short* text) noexcept override;
    std::uint32_t GetLastError() noexcept override;
    void SetLastError(std::uint32_t code) noexcept override;
    void* AllocatePortHandle() override;
    void FreePortHandle(void* handle) noexcept override;
    bool IsNTOrBetter() noexcept override;
    void* OpenPrinter(const unsigned short* name, GString& failure) noexcept override;
    void ReportJobSent(void* printer, std::uint32_t jobID) noexcept override;
    void ClosePrinter(void* printer) noexcept override;
    bool PutTokenAside(void*& token) noexcept override;
    bool PutTokenBack(void* token) noexcept override;
    GFileFacts GetFacts(const PFolderWalk& walk, const PFolderWalk::Opened& object) override;
};
