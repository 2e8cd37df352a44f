#pragma once

#include <cstdint>

/// MonitorPlatform: what the monitor asks of Windows and of the spooler.
///
/// Nothing here changes the thread's last error except SetLastError. Handles are opaque; null is
/// none. Texts are zero-terminated.
class MonitorPlatform {
public:
    MonitorPlatform() = default;
    MonitorPlatform(const MonitorPlatform&) = delete;
    MonitorPlatform& operator=(const MonitorPlatform&) = delete;
    virtual ~MonitorPlatform() = default;

    /// To the debugger's output, which is where the monitor tells what it does.
    virtual void Trace(const wchar_t* word) noexcept = 0;
    virtual void TraceNarrow(const char* word) noexcept = 0;
    /// A text of UTF-16 units; null is no text.
    virtual void TraceUnits(const unsigned short* text) noexcept = 0;

    virtual std::uint32_t GetLastError() noexcept = 0;
    virtual void SetLastError(std::uint32_t code) noexcept = 0;

    /// A block whose address stands for the open port. Throws std::bad_alloc.
    virtual void* AllocatePortHandle() = 0;
    virtual void FreePortHandle(void* handle) noexcept = 0;

    virtual bool IsNTOrBetter() noexcept = 0;
    /// Null when the spooler does not give the printer.
    virtual void* OpenPrinter(const unsigned short* name) noexcept = 0;
    /// Tells the spooler that all of a job has gone to the printer. A null handle and an unknown job
    /// have no effect.
    virtual void ReportJobSent(void* printer, std::uint32_t jobID) noexcept = 0;
    virtual void ClosePrinter(void* printer) noexcept = 0;
};
