#pragma once

#include <functional>
#include <string>
#include <vector>

#include "framework/core/GASCIIEncoding.h"
#include "monitor/GPPJobRecord.h"
#include "monitor/JobNotifier.h"

/// Writes into a list of events what it is asked for, and answers as told.
class FakeJobNotifier final : public JobNotifier {
public:
    explicit FakeJobNotifier(std::vector<std::string>& events) : mEvents(events) {}

    bool NotifyPrintProcessor(const GPPJobRecord& record) override {
        mEvents.push_back("notify " + Text(record.GetPrinterName()) + " " + Text(record.GetPortName()) + " " +
                          std::to_string(record.GetCopyCount()));
        mJobPath = record.GetJobPath();
        if (mOnNotify) mOnNotify();
        return mReached;
    }
    void RetryDelayed() noexcept override { mEvents.push_back("tick"); }

    std::function<void()> mOnNotify;
    bool mReached = true;
    GString mJobPath;

private:
    static std::string Text(const GString& text) {
        return text.GetBuffer(GASCIIEncoding::GetInstance()).GetPtr();
    }

    std::vector<std::string>& mEvents;
};
