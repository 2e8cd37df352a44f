#include "examples/PrinterProcessorWin/StopRequest.h"

#include <atomic>
#include <stdexcept>

#include "platform/win32/base/PWin32Api.h"

namespace {

// The handler runs on a thread of the system's, whenever it likes, so the events outlive the object.
HANDLE sStopEvent = nullptr;
HANDLE sEndedEvent = nullptr;
std::atomic<bool> sIsPressing = false;

BOOL WINAPI HandleControl(DWORD control) {
    // The process is ended as soon as this returns for a closing window; the loop ends by itself then.
    constexpr DWORD cClosingMilliseconds = 4000;
    if (control != CTRL_C_EVENT && control != CTRL_BREAK_EVENT) sIsPressing = true;
    ::SetEvent(sStopEvent);
    if (sIsPressing) {
        ::WaitForSingleObject(sEndedEvent, cClosingMilliseconds);
    }
    return TRUE;
}

HANDLE MakeEvent() {
    return ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
}

}  // namespace

StopRequest::StopRequest() {
    if (sStopEvent == nullptr) sStopEvent = MakeEvent();
    if (sEndedEvent == nullptr) sEndedEvent = MakeEvent();
    if (sStopEvent == nullptr || sEndedEvent == nullptr) throw std::runtime_error("no event");
    ::ResetEvent(sStopEvent);
    ::ResetEvent(sEndedEvent);
    // A parent may have told its children to ignore Ctrl-C.
    ::SetConsoleCtrlHandler(nullptr, FALSE);
    if (!::SetConsoleCtrlHandler(HandleControl, TRUE)) throw std::runtime_error("no console handler");
}

StopRequest::~StopRequest() {
    ::SetEvent(sEndedEvent);
    ::SetConsoleCtrlHandler(HandleControl, FALSE);
}

void* StopRequest::GetHandle() const {
    return sStopEvent;
}

void StopRequest::WaitWith(std::vector<void*> handles, unsigned long milliseconds) const {
    handles.push_back(sStopEvent);
    const auto count = static_cast<DWORD>(handles.size());
    ::WaitForMultipleObjects(count, handles.data(), FALSE, milliseconds);
}

void StopRequest::Forget() const {
    ::ResetEvent(sStopEvent);
}

bool StopRequest::IsPressing() const {
    return sIsPressing;
}

bool StopRequest::IsMade() const {
    return ::WaitForSingleObject(sStopEvent, 0) == WAIT_OBJECT_0;
}
