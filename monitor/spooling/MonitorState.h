#pragma once

#include <cstdint>
#include <memory>

#include "PPlatformTypes.h"
#include "framework/core/text/GString.h"
#include "framework/streams/GFileOutStream.h"

/// MonitorState: all that the monitor's callbacks share. There is one port and at most one job.
///
/// Guarded by sMonitorLock, which every port and job callback holds for its whole run; shut-down and
/// unloading go without it.
struct MonitorState {
    PCriticalSection sMonitorLock;
    void* sModuleHandle = nullptr;   ///< the DLL itself
    void* sPortHandle = nullptr;     ///< the open port, null when it is closed
    void* sPrinterHandle = nullptr;  ///< the spooler's handle of the current job's printer, or null
    bool sProcessingJob = false;     ///< between the start of a document and its end
    std::uint32_t sJobId = 0;        ///< the spooler's number of the current job
    GString sPrinterName;
    GString sDocName;  ///< stays after the job: a start that names no document takes it again
    std::unique_ptr<GFileOutStream> sJobStream;  ///< the open job file, or null
};
