#pragma once

#include <cstdint>

#include "framework/core/paths/GPathName.h"
#include "monitor/handoff/JobNotifier.h"
#include "monitor/spooling/CallbackOutcome.h"
#include "monitor/spooling/JobTrace.h"
#include "monitor/spooling/MonitorPlatform.h"
#include "monitor/spooling/MonitorState.h"

/// MonitorJob: turns what the spooler delivers for one document into a job file, byte for byte, and
/// tells the processing applications when it is complete.
///
/// The caller holds the monitor's lock. Texts are zero-terminated UTF-16.
class MonitorJob {
public:
    /// What the spooler says about a document. Of its levels of information only level 1 is known.
    struct Document {
        static constexpr std::uint32_t cKnownLevel = 1;

        std::uint32_t mLevel;
        const unsigned short* mName;  ///< of level 1; null counts as empty
    };

    MonitorJob(MonitorPlatform& platform, MonitorState& state, JobNotifier& notifier) noexcept
        : mPlatform(platform), mState(state), mNotifier(notifier) {}

    /// Opens the printer and the job file. Throws nothing.
    CallbackOutcome Start(const unsigned short* printerName, std::uint32_t jobID, const Document& document);
    /// Hands a block to the system; `written` gets the number of bytes that the system has taken.
    CallbackOutcome Write(const void* port, const unsigned char* data, std::uint32_t size,
                          std::uint32_t& written);
    /// Sends the notification, reports the job as sent and closes the job file. An exception out of the
    /// notification passes; the file is closed and the job over in that case, too. A job whose user's
    /// rights cannot be given back to the thread has failed.
    CallbackOutcome End(const void* port);

private:
    void Prepare(const unsigned short* printerName, const Document& document, CallbackOutcome& outcome);
    void OpenPrinter(const unsigned short* name, CallbackOutcome& outcome);
    void OpenJobFile(const unsigned short* documentName);
    CallbackOutcome WriteBlock(const unsigned char* data, std::uint32_t size, std::uint32_t& written);
    CallbackOutcome Finish(const void* port);
    void RetryDelayed();
    void HandOver();
    void Notify();
    std::uint32_t HandToSystem(const unsigned char* data, std::uint32_t size);
    /// An entry of the trace log, with the number of the job before it.
    template <class Compose>
    void Log(const char* category, Compose compose, const GCodeLocation& where = GCodeLocation::Here()) const;
    void CompareWithStream(const GPathName& path);
    void ClosePrinter() noexcept;

    MonitorPlatform& mPlatform;
    const JobTrace mTrace{mPlatform};
    MonitorState& mState;
    JobNotifier& mNotifier;
};
