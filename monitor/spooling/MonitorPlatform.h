#pragma once

#include <cstdint>

#include "PPlatformFiles.h"
#include "PPlatformTypes.h"
#include "framework/core/text/GString.h"

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
    /// Null when the spooler does not give the printer; `failure` then tells why, as far as memory lasts.
    virtual void* OpenPrinter(const unsigned short* name, GString& failure) noexcept = 0;
    /// Tells the spooler that all of a job has gone to the printer. A null handle and an unknown job
    /// have no effect.
    virtual void ReportJobSent(void* printer, std::uint32_t jobID) noexcept = 0;
    virtual void ClosePrinter(void* printer) noexcept = 0;

    /// Puts the user aside as whom the thread acts, if it acts as one: it then has the rights of the service.
    /// `token` gets what PutTokenBack needs, null for none. False when the system refuses; nothing has
    /// changed then.
    virtual bool PutTokenAside(void*& token) noexcept = 0;
    /// Lets the thread act as that user again, and forgets the token in any case. False when the system
    /// refuses: the thread then has the rights of the service.
    virtual bool PutTokenBack(void* token) noexcept = 0;
    /// What the system says about an opened file or folder.
    virtual GFileFacts GetFacts(const PFolderWalk& walk, const PFolderWalk::Opened& object) = 0;
};
