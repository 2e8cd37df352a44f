#pragma once

#include "framework/core/trace/GTraceLog.h"
#include "monitor/spooling/ServiceRights.h"

/// JobTrace: what the monitor tells of its jobs in the trace log; never anything of a document's content.
///
/// The log's files are opened with the rights of the service, whoever prints. A log that cannot be written
/// costs no job: ServiceRightsException alone is thrown.
class JobTrace {
public:
    static constexpr const char* cJob = "Job";                    ///< beginning and end
    static constexpr const char* cFailure = "JobFailure";         ///< why a job cannot go on
    static constexpr const char* cNotification = "Notification";  ///< who was told

    explicit JobTrace(MonitorPlatform& platform) noexcept : mPlatform(platform) {}

    /// The GString that `compose` gives, which is asked for one only when the category is on.
    template <class Compose>
    void Log(const char* category, Compose compose,
             const GCodeLocation& where = GCodeLocation::Here()) const {
        if (!IsOn(category)) return;
        RunAsService(mPlatform, [&] { GTraceLog::TraceQuietly(category, compose, where); });
    }

private:
    static bool IsOn(const char* category) noexcept;

    MonitorPlatform& mPlatform;
};
