#pragma once

#include <cstdint>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "monitor/MonitorPlatform.h"

/// The system as the monitor sees it: hands out numbered handles and writes down, in order, what it is
/// asked for.
class FakeMonitorPlatform final : public MonitorPlatform {
public:
    static constexpr std::uint32_t cUntouched = 4711;

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
        return new char;
    }
    void FreePortHandle(void* handle) noexcept override {
        --mPortHandles;
        delete static_cast<char*>(handle);
    }
    bool IsNTOrBetter() noexcept override { return mIsNT; }
    void* OpenPrinter(const unsigned short* name) noexcept override {
        mEvents.push_back("open printer " + std::string(name, End(name)));
        return mHasPrinter ? &mPrinter : nullptr;
    }
    void ReportJobSent(void* printer, std::uint32_t jobID) noexcept override {
        mEvents.push_back(std::string("job ") + std::to_string(jobID) + " sent to " +
                          (printer != nullptr ? "printer" : "nothing"));
    }
    void ClosePrinter(void*) noexcept override { mEvents.push_back("close printer"); }

    std::vector<std::string> TakeEvents() { return std::exchange(mEvents, {}); }

    std::vector<std::string> mEvents;
    std::uint32_t mLastError = cUntouched;
    int mPortHandles = 0;
    bool mOutOfMemory = false;
    bool mIsNT = true;
    bool mHasPrinter = true;

private:
    template <class Unit>
    static const Unit* End(const Unit* text) {
        while (*text != 0) ++text;
        return text;
    }

    char mPrinter = 0;
};

/// A UTF-16 literal as the monitor takes it.
inline const unsigned short* Units(const char16_t* text) {
    return reinterpret_cast<const unsigned short*>(text);
}
