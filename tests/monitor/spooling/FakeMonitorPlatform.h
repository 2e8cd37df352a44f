#pragma once

#include <new>

#include "monitor/handoff/GPPJobRecord.h"
#include "monitor/handoff/JobNotifier.h"
#include "monitor/spooling/MonitorPlatform.h"
#include "tests/Testing.h"
#include "tests/files/TestFolder.h"

using Words = std::vector<std::string>;

/// The system and the processing applications as the monitor sees them: writes down, in order, what it is
/// asked for, and answers as told. Files are real.
class FakeMonitorPlatform final : public MonitorPlatform, public JobNotifier {
public:
    void Trace(const wchar_t* word) noexcept override { mEvents.push_back(std::string(word, End(word))); }
    void TraceNarrow(const char* word) noexcept override { mEvents.push_back(std::string("narrow ") + word); }
    void TraceUnits(const unsigned short* text) noexcept override {
        mEvents.push_back("text " + (text != nullptr ? std::string(text, End(text)) : std::string("null")));
    }
    std::uint32_t GetLastError() noexcept override { return mLastError; }
    void SetLastError(std::uint32_t code) noexcept override { mLastError = code; }
    void* AllocatePortHandle() override {
        if (mOutOfMemory) throw std::bad_alloc();
        ++mPortHandles;
        return &mPortHandles;
    }
    void FreePortHandle(void* handle) noexcept override {
        if (handle == &mPortHandles) --mPortHandles;
    }
    bool IsNTOrBetter() noexcept override { return mIsNT; }
    void* OpenPrinter(const unsigned short* name, GString& failure) noexcept override {
        failure = "no such printer";
        mEvents.push_back("open printer " + std::string(name, End(name)));
        return mHasPrinter ? &mPrinter : nullptr;
    }
    void ReportJobSent(void* printer, std::uint32_t jobID) noexcept override {
        mEvents.push_back("job " + std::to_string(jobID) +
                          (printer != nullptr ? " sent to printer" : " sent to nothing"));
    }
    void ClosePrinter(void* printer) noexcept override {
        mEvents.push_back(printer != nullptr ? "close printer" : "close nothing");
    }
    bool PutTokenAside(void*& token) noexcept override {
        token = &mToken;
        return mIsService = mCanPutAside;
    }
    bool PutTokenBack(void* token) noexcept override {
        mIsService = token != &mToken || !mCanPutBack;
        return mCanPutBack;
    }
    GFileFacts GetFacts(const PFolderWalk& walk, const PFolderWalk::Opened& object) override {
        GFileFacts facts = walk.GetFacts(object);
        if (object && mOnFacts) mOnFacts(facts);
        return facts;
    }

    bool NotifyPrintProcessor(const GPPJobRecord& record) override {
        mEvents.push_back("notify " + TextOf(record.GetPrinterName()) + " " + TextOf(record.GetPortName()) +
                          " " + std::to_string(record.GetCopyCount()) + WithWhoseRights());
        mJobPath = TextOf(record.GetJobPath());
        if (mOnNotify) mOnNotify();
        return mReached;
    }
    void RetryDelayed() noexcept override { mEvents.push_back("tick" + WithWhoseRights()); }

    Words TakeEvents() { return std::exchange(mEvents, {}); }

    Words mEvents;
    std::uint32_t mLastError = 0;
    int mPortHandles = 0;
    bool mOutOfMemory = false;
    bool mIsNT = true;
    bool mHasPrinter = true;
    std::function<void(GFileFacts&)> mOnFacts;  ///< may change them
    std::function<void()> mOnNotify;
    bool mReached = true;
    std::string mJobPath;
    bool mIsService = false;  ///< the thread has the rights of the service, not the user's
    bool mCanPutAside = true;
    bool mCanPutBack = true;

private:
    /// Nothing for the service, which is to do it.
    std::string WithWhoseRights() const { return mIsService ? "" : " with the rights of the user"; }
    template <class Unit>
    static const Unit* End(const Unit* text) {
        while (*text != 0) ++text;
        return text;
    }

    char mPrinter = 0;
    char mToken = 0;
};

/// A UTF-16 literal as the monitor takes it.
inline const unsigned short* Units(const char16_t* text) {
    return reinterpret_cast<const unsigned short*>(text);
}
