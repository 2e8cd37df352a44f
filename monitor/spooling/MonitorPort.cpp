#include "monitor/spooling/MonitorPort.h"

#include <cstring>
#include <utility>

#include "framework/core/text/GString.h"
#include "monitor/spooling/MonitorNames.h"

namespace {

constexpr std::uint32_t cPortTypeWrite = 1;

/// The spooler's records, PORT_INFO_1 and PORT_INFO_2, of a 64-bit process.
struct PortRecord1 {
    const void* mName;
};
struct PortRecord2 {
    const void* mPortName;
    const void* mMonitorName;
    const void* mDescription;
    std::uint32_t mPortType;
    std::uint32_t mPadding;
};
static_assert(sizeof(PortRecord1) == 8 && sizeof(PortRecord2) == 32);

/// A name as the spooler gets it: UTF-16 with the unit that ends it.
class ZeroEndedText {
public:
    explicit ZeroEndedText(const char* name) : mText(name), mUnits(mText.GetUTF16Ptr()) {}

    std::uint32_t GetSize() const { return (static_cast<std::uint32_t>(mText.GetLength()) + 1) * 2; }
    const unsigned short* GetUnits() const { return mUnits; }

private:
    GString mText;
    const unsigned short* mUnits;
};

/// Fills a buffer from its end downwards. It need not be aligned.
class BufferTail {
public:
    BufferTail(unsigned char* buffer, std::uint32_t size) : mEnd(buffer + size) {}

    const void* Put(const ZeroEndedText& text) {
        mEnd -= text.GetSize();
        std::memcpy(mEnd, text.GetUnits(), text.GetSize());
        return mEnd;
    }

private:
    unsigned char* mEnd;
};

CallbackOutcome CheckSize(const unsigned char* buffer, std::uint32_t size, unsigned long needed) {
    if (size < needed) return CallbackOutcome::Failure(MonitorError::cInsufficientBuffer);
    if (buffer == nullptr) return CallbackOutcome::Failure(MonitorError::cInvalidParameter);
    return CallbackOutcome::Success();
}

CallbackOutcome PutRecord1(unsigned char* buffer, std::uint32_t size, unsigned long& needed) {
    const ZeroEndedText port(MonitorNames::cPort);
    needed = sizeof(PortRecord1) + port.GetSize();
    const CallbackOutcome outcome = CheckSize(buffer, size, needed);
    if (!outcome.mSucceeded) return outcome;
    BufferTail tail(buffer, size);
    const PortRecord1 record{tail.Put(port)};
    std::memcpy(buffer, &record, sizeof record);
    return outcome;
}

CallbackOutcome PutRecord2(unsigned char* buffer, std::uint32_t size, unsigned long& needed) {
    const ZeroEndedText port(MonitorNames::cPort);
    const ZeroEndedText monitor(MonitorNames::cMonitor);
    const ZeroEndedText description(MonitorNames::cPortDescription);
    needed = sizeof(PortRecord2) + port.GetSize() + monitor.GetSize() + description.GetSize();
    const CallbackOutcome outcome = CheckSize(buffer, size, needed);
    if (!outcome.mSucceeded) return outcome;
    BufferTail tail(buffer, size);
    PortRecord2 record{};
    record.mPortName = tail.Put(port);
    record.mMonitorName = tail.Put(monitor);
    record.mDescription = tail.Put(description);
    record.mPortType = cPortTypeWrite;
    std::memcpy(buffer, &record, sizeof record);
    return outcome;
}

bool IsPortName(const unsigned short* name) {
    const char* expected = MonitorNames::cPort;
    while (*expected != '\0' && *name == static_cast<unsigned char>(*expected)) {
        ++expected;
        ++name;
    }
    return *expected == '\0' && *name == 0;
}

}  // namespace

CallbackOutcome MonitorPort::Enumerate(std::uint32_t level, unsigned char* buffer, std::uint32_t size,
                                       unsigned long* needed, unsigned long* returned) const {
    if (level != 1 && level != 2) return CallbackOutcome::Failure(MonitorError::cInvalidLevel);
    mPlatform.Trace(level == 1 ? L"PPMEnumPorts: Received request for Level 1 info"
                               : L"PPMEnumPorts: Received request for Level 2 info");
    if (needed == nullptr || returned == nullptr) {
        return CallbackOutcome::Failure(MonitorError::cInvalidParameter);
    }
    *returned = 0;
    const CallbackOutcome outcome =
        level == 1 ? PutRecord1(buffer, size, *needed) : PutRecord2(buffer, size, *needed);
    if (outcome.mSucceeded) *returned = 1;
    return outcome;
}

CallbackOutcome MonitorPort::Open(const unsigned short* name, void** handle) {
    if (mState.sPortHandle != nullptr) return CallbackOutcome::Failure(MonitorError::cBusy);
    if (name == nullptr || handle == nullptr) {
        return CallbackOutcome::Failure(MonitorError::cInvalidParameter);
    }
    if (!IsPortName(name)) return CallbackOutcome::Failure(MonitorError::cUnknownPort);
    mState.sPortHandle = mPlatform.AllocatePortHandle();
    *handle = mState.sPortHandle;
    return CallbackOutcome::Success();
}

CallbackOutcome MonitorPort::Close(void* handle) {
    if (!IsOpenHandle(handle)) return CallbackOutcome::Failure(MonitorError::cInvalidHandle);
    mState.sProcessingJob = false;
    Free();
    return CallbackOutcome::Success();
}

bool MonitorPort::IsOpenHandle(const void* handle) const noexcept {
    return handle != nullptr && handle == mState.sPortHandle;
}

void MonitorPort::Reset() noexcept {
    Free();
    mState.sProcessingJob = false;
    mState.sPrinterHandle = nullptr;
}

void MonitorPort::Free() noexcept {
    void* handle = std::exchange(mState.sPortHandle, nullptr);
    if (handle != nullptr) mPlatform.FreePortHandle(handle);
}
