#pragma once

class GPPJobRecord;

/// JobNotifier: tells the processing applications about job files.
class JobNotifier {
public:
    JobNotifier() = default;
    JobNotifier(const JobNotifier&) = delete;
    JobNotifier& operator=(const JobNotifier&) = delete;
    virtual ~JobNotifier() = default;

    /// True when at least one running processing application was told. What a send throws passes.
    virtual bool NotifyPrintProcessor(const GPPJobRecord& record) = 0;
    /// Tries once more to hand over what found a full queue before; never waits.
    virtual void RetryDelayed() noexcept = 0;
};
