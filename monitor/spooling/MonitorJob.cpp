#include "monitor/spooling/MonitorJob.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/GAtScopeEnd.h"
#include "framework/core/memory/GAllocator.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "monitor/spooling/JobFileMaker.h"
#include "monitor/spooling/JobPath.h"
#include "monitor/spooling/MonitorNames.h"
#include "monitor/spooling/MonitorPort.h"
#include "monitor/spooling/ServiceRights.h"

namespace {

/// The longest part of a block that goes to the system in one write: a buffer's length has 31 bits, the
/// spooler's has 32.
constexpr std::uint32_t cLongestWrite = 0x40000000;

/// The spooler delivers a job of several copies as many times.
constexpr std::int32_t cCopyCount = 1;

GString TextOf(const unsigned short* units) {
    if (units == nullptr) return GString();
    long length = 0;
    while (units[length] != 0) ++length;
    return GString::FromUTF16(units, length);
}

}  // namespace

CallbackOutcome MonitorJob::Start(const unsigned short* printerName, std::uint32_t jobID,
                                  const Document& document) {
    mState.sJobId = jobID;
    if (mState.sProcessingJob) {
        Log(JobTrace::cFailure, [] { return GString("refused, the one before has not ended"); });
        return CallbackOutcome::Failure(MonitorError::cBusy);
    }
    RetryDelayed();
    CallbackOutcome outcome = CallbackOutcome::Success();
    if (printerName != nullptr) Prepare(printerName, document, outcome);
    if (!mState.sDocName.IsEmpty()) {
        mState.sProcessingJob = true;
        mPlatform.Trace(L"PPMStartDocPort: StartDoc success");
        return outcome;
    }
    mPlatform.Trace(L"sDocName is empty!?");
    mPlatform.Trace(L"sProcessingJob == false at the end of PPMStartDocPort");
    if (mPlatform.IsNTOrBetter()) ClosePrinter();
    return CallbackOutcome::Failure(MonitorError::cInvalidParameter);
}

void MonitorJob::Prepare(const unsigned short* printerName, const Document& document,
                         CallbackOutcome& outcome) {
    try {
        mState.sPrinterName = TextOf(printerName);
        OpenPrinter(printerName, outcome);
        if (document.mLevel == Document::cKnownLevel) {
            OpenJobFile(document.mName);
        } else {
            mPlatform.Trace(L"Unknown info Level, new OS?");
        }
    } catch (...) {
        mState.sDocName = GString();
        mPlatform.Trace(L"exception in PPMStartDocPort!");
        Log(JobTrace::cFailure, &GException::DescribeCurrent);
    }
}

void MonitorJob::OpenPrinter(const unsigned short* name, CallbackOutcome& outcome) {
    // A job that the spooler gave up without ending it has left its printer open.
    ClosePrinter();
    if (!mPlatform.IsNTOrBetter()) {
        outcome.mLastError = MonitorError::cInvalidPrinterState;
        mPlatform.TraceNarrow("Pre-NT systems not supported!");
        return;
    }
    GString failure;
    mState.sPrinterHandle = mPlatform.OpenPrinter(name, failure);
    if (mState.sPrinterHandle != nullptr) return;
    mPlatform.Trace(L"Failed to open printer. No handle.");
    Log(JobTrace::cFailure, [&] { return mState.sPrinterName + GString(": ") + failure; });
}

void MonitorJob::OpenJobFile(const unsigned short* documentName) {
    mState.sDocName = TextOf(documentName);
    const JobPath path(mState.sPrinterName, mState.sDocName);
    auto stream = std::make_unique<GFileOutStream>(JobFileMaker(mPlatform).Open(path));
    // The stream of a job that never ended is given up, not closed: the file stays this process's own.
    static_cast<void>(mState.sJobStream.release());
    mState.sJobStream = std::move(stream);
    mPlatform.TraceUnits(documentName);
    Log(JobTrace::cJob, [&] { return GString("begins ") + path.GetPath().GetNativePathString(); });
}

CallbackOutcome MonitorJob::Write(const void* port, const unsigned char* data, std::uint32_t size,
                                  std::uint32_t& written) {
    written = 0;
    if (!mState.sProcessingJob) {
        mPlatform.Trace(L"PPMWritePort: write when not started?!?");
        return CallbackOutcome::Failure(MonitorError::cNoStartDoc);
    }
    if (!MonitorPort(mPlatform, mState).IsOpenHandle(port)) {
        mPlatform.Trace(L"PPMWritePort: invalid port handle?!?");
        return CallbackOutcome::Failure(MonitorError::cInvalidHandle);
    }
    if (data == nullptr || size == 0) {
        mPlatform.Trace(L"PPMWritePort: No Data");
        return CallbackOutcome::SilentFailure();
    }
    return WriteBlock(data, size, written);
}

CallbackOutcome MonitorJob::WriteBlock(const unsigned char* data, std::uint32_t size,
                                       std::uint32_t& written) {
    // The start of a job of another level has no file.
    if (mState.sJobStream == nullptr) return CallbackOutcome::Failure(MonitorError::cCannotComplete);
    try {
        written = HandToSystem(data, size);
    } catch (...) {
        Log(JobTrace::cFailure, &GException::DescribeCurrent);
        throw;
    }
    if (written == size) return CallbackOutcome::Success();
    Log(JobTrace::cFailure, [&] {
        return GString("the disk is full, it takes ") + GString(written) + GString(" of ") + GString(size) +
               GString(" bytes");
    });
    return CallbackOutcome::Failure(MonitorError::cHandleDiskFull);
}

std::uint32_t MonitorJob::HandToSystem(const unsigned char* data, std::uint32_t size) {
    std::uint32_t taken = 0;
    while (taken < size) {
        const long length = static_cast<long>(std::min(size - taken, cLongestWrite));
        GBuffer block;
        block.SetFromStatic(data + taken, length, length);
        const long count = mState.sJobStream->Write(block);
        taken += static_cast<std::uint32_t>(std::max(count, 0L));
        if (count < length) break;
    }
    return taken;
}

CallbackOutcome MonitorJob::End(const void* port) {
    if (!mState.sProcessingJob) return CallbackOutcome::Success();
    const GAtScopeEnd closeFile([this]() noexcept {
        mState.sJobStream.reset();
        // What a large job has taken is of no use to the spooler between jobs.
        GAllocator::GetInstance().DoIdleTime();
    });
    try {
        return Finish(port);
    } catch (const ServiceRightsException&) {
        // The thread has other rights than the spooler has given it, so the spooler must know.
        mState.sProcessingJob = false;
        return CallbackOutcome::Failure(MonitorError::cCannotComplete);
    }
}

CallbackOutcome MonitorJob::Finish(const void* port) {
    RetryDelayed();
    if (!MonitorPort(mPlatform, mState).IsOpenHandle(port)) {
        return CallbackOutcome::Failure(MonitorError::cInvalidHandle);
    }
    const GAtScopeEnd endJob([this]() noexcept { mState.sProcessingJob = false; });
    if (mPlatform.IsNTOrBetter()) HandOver();
    return CallbackOutcome::Success();
}

void MonitorJob::HandOver() {
    const GAtScopeEnd closePrinter(
        [this]() noexcept { mPlatform.ClosePrinter(std::exchange(mState.sPrinterHandle, nullptr)); });
    Notify();
    mPlatform.ReportJobSent(mState.sPrinterHandle, mState.sJobId);
}

/// What waits for others is handed over by the service, as the notification is: the user of this job may not
/// reach them.
void MonitorJob::RetryDelayed() {
    RunAsService(mPlatform, [this] { mNotifier.RetryDelayed(); });
}

void MonitorJob::Notify() {
    const JobPath job(mState.sPrinterName, mState.sDocName);
    const GPathName path = job.GetPath();
    CompareWithStream(path);
    Log(JobTrace::cJob, [&] {
        const long long length = mState.sJobStream == nullptr ? 0 : mState.sJobStream->GetPosition();
        return GString("ends with ") + GString(length) + GString(" bytes, ") + path.GetNativePathString();
    });
    const GPPJobRecord record(job.GetUserName(), path, mState.sPrinterName, MonitorNames::cPort, cCopyCount);
    const auto start = std::chrono::steady_clock::now();
    bool told = false;
    RunAsService(mPlatform, [&] { told = mNotifier.NotifyPrintProcessor(record); });
    mPlatform.Trace(told ? L"Notification to PrintProcessor succeeded!"
                         : L"Notification to PrintProcessor failed!");
    Log(JobTrace::cNotification, [&] {
        const auto taken = std::chrono::steady_clock::now() - start;
        return GString(told ? "processing applications told in " : "nobody told, in ") +
               GString(static_cast<long long>(
                   std::chrono::duration_cast<std::chrono::milliseconds>(taken).count())) +
               GString(" ms");
    });
}

/// The path is made anew at the end of a job, and is another one when the thread has got another user.
void MonitorJob::CompareWithStream(const GPathName& path) {
    if (mState.sJobStream == nullptr) return;
    const GPathName& written = mState.sJobStream->GetFile()->GetPathName();
    if (written == path) return;
    mPlatform.Trace(L"PPMEndDocPort: the job file that is announced is not the one that was written!");
    for (const GPathName* each : {&path, &written})
        mPlatform.TraceUnits(each->GetNativePathString().GetUTF16Ptr());
}

template <class Compose>
void MonitorJob::Log(const char* category, Compose compose, const GCodeLocation& where) const {
    const auto withJob = [&] { return GString("job ") + GString(mState.sJobId) + GString(": ") + compose(); };
    mTrace.Log(category, withJob, where);
}

void MonitorJob::ClosePrinter() noexcept {
    void* printer = std::exchange(mState.sPrinterHandle, nullptr);
    if (printer != nullptr) mPlatform.ClosePrinter(printer);
}
