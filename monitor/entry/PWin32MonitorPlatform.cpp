#include "monitor/entry/PWin32MonitorPlatform.h"

#include <new>

#include "framework/core/errors/GFirstFailure.h"
#include "framework/system/PSystem.h"
#include "platform/win32/base/PWin32LastErrorKeeper.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32SystemException.h"

#include "platform/win32/base/PWin32SpoolerApi.h"

namespace {

/// Only the address of the port's block is used.
constexpr SIZE_T cPortHandleSize = 8;

}  // namespace

void PWin32MonitorPlatform::Trace(const wchar_t* word) noexcept {
    PSystem::Trace(word);
}

void PWin32MonitorPlatform::TraceNarrow(const char* word) noexcept {
    PSystem::Trace(word);
}

void PWin32MonitorPlatform::TraceUnits(const unsigned short* text) noexcept {
    PSystem::Trace(reinterpret_cast<const wchar_t*>(text));
}

std::uint32_t PWin32MonitorPlatform::GetLastError() noexcept {
    return ::GetLastError();
}

void PWin32MonitorPlatform::SetLastError(std::uint32_t code) noexcept {
    ::SetLastError(code);
}

void* PWin32MonitorPlatform::AllocatePortHandle() {
    const PWin32LastErrorKeeper keeper;
    void* handle = ::GlobalAlloc(GMEM_FIXED, cPortHandleSize);
    if (handle == nullptr) throw std::bad_alloc();
    return handle;
}

void PWin32MonitorPlatform::FreePortHandle(void* handle) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::GlobalFree(handle);
}

bool PWin32MonitorPlatform::IsNTOrBetter() noexcept {
    const PWin32LastErrorKeeper keeper;
    return PSystem::IsNTOrBetter();
}

void* PWin32MonitorPlatform::OpenPrinter(const unsigned short* name, GString& failure) noexcept {
    const PWin32LastErrorKeeper keeper;
    // The call takes the name as writable and only reads it.
    wchar_t* text = const_cast<wchar_t*>(reinterpret_cast<const wchar_t*>(name));
    HANDLE printer = nullptr;
    if (::OpenPrinterW(text, &printer, nullptr)) return printer;
    const DWORD error = ::GetLastError();
    RunQuietly([&] { failure = PWin32SystemException(static_cast<long>(error)).GetDescription(); });
    return nullptr;
}

void PWin32MonitorPlatform::ReportJobSent(void* printer, std::uint32_t jobID) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::SetJobA(printer, jobID, 0, nullptr, JOB_CONTROL_SENT_TO_PRINTER);
}

void PWin32MonitorPlatform::ClosePrinter(void* printer) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::ClosePrinter(printer);
}

bool PWin32MonitorPlatform::PutTokenAside(void*& token) noexcept {
    const PWin32LastErrorKeeper keeper;
    token = nullptr;
    HANDLE thread = nullptr;
    // Asked as the service: the user's own rights need not reach as far as the user's token.
    if (!::OpenThreadToken(::GetCurrentThread(), TOKEN_IMPERSONATE, TRUE, &thread))
        return ::GetLastError() == ERROR_NO_TOKEN;
    PWin32ScopedHandle<PWin32KernelHandle> owned(thread);
    if (!::SetThreadToken(nullptr, nullptr)) return false;
    token = owned.Release();
    return true;
}

bool PWin32MonitorPlatform::PutTokenBack(void* token) noexcept {
    const PWin32LastErrorKeeper keeper;
    const PWin32ScopedHandle<PWin32KernelHandle> owned(token);
    return !owned || ::SetThreadToken(nullptr, owned.Get());
}

GFileFacts PWin32MonitorPlatform::GetFacts(const PFolderWalk& walk, const PFolderWalk::Opened& object) {
    const PWin32LastErrorKeeper keeper;
    return walk.GetFacts(object);
}
