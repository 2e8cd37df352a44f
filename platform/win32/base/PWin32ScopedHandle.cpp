#include "platform/win32/base/PWin32ScopedHandle.h"

#include "platform/win32/base/PWin32LastErrorKeeper.h"
#include "platform/win32/base/PWin32SpoolerApi.h"

// Owners unwind while an exception is being made from the last error: closing leaves it as it is.

void PWin32KernelHandle::Close(void* handle) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::CloseHandle(handle);
}

void PWin32SearchHandle::Close(void* handle) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::FindClose(handle);
}

void PWin32PrinterHandle::Close(void* handle) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::ClosePrinter(handle);
}

void PWin32RegistryHandle::Close(void* handle) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::RegCloseKey(static_cast<HKEY>(handle));
}

void PWin32ModuleHandle::Close(void* handle) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::FreeLibrary(static_cast<HMODULE>(handle));
}

void PWin32LocalBlock::Close(void* block) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::LocalFree(block);
}

void PWin32MappedView::Close(void* view) noexcept {
    const PWin32LastErrorKeeper keeper;
    ::UnmapViewOfFile(view);
}
