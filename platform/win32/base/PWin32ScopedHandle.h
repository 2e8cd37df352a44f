#pragma once

#include <cstdint>
#include <utility>

#include "platform/base/PExport.h"

// The value that means "none" and the call that closes differ from one kind of handle to the next.

/// What the system marks as "none" by null, as most of its calls do.
struct PWin32NullableHandle {
    static void* None() noexcept { return nullptr; }
};

/// Mappings, mutexes, events, processes, threads, tokens.
struct QUILLON_EXPORT PWin32KernelHandle : PWin32NullableHandle {
    static void Close(void* handle) noexcept;
};

/// What CreateFileW and CreateToolhelp32Snapshot give.
struct PWin32FileHandle : PWin32KernelHandle {
    static void* None() noexcept { return reinterpret_cast<void*>(static_cast<std::intptr_t>(-1)); }
};

/// What FindFirstFileW gives.
struct QUILLON_EXPORT PWin32SearchHandle {
    static void* None() noexcept { return PWin32FileHandle::None(); }
    static void Close(void* handle) noexcept;
};

/// What OpenPrinterW and AddPrinterW give.
struct QUILLON_EXPORT PWin32PrinterHandle : PWin32NullableHandle {
    static void Close(void* handle) noexcept;
};

/// An open registry key, none of the predefined ones.
struct QUILLON_EXPORT PWin32RegistryHandle : PWin32NullableHandle {
    static void Close(void* handle) noexcept;
};

/// A library from LoadLibraryExW.
struct QUILLON_EXPORT PWin32ModuleHandle : PWin32NullableHandle {
    static void Close(void* handle) noexcept;
};

/// A block that the system hands out to be freed by LocalFree: texts of FormatMessageW, security descriptors.
struct QUILLON_EXPORT PWin32LocalBlock : PWin32NullableHandle {
    static void Close(void* block) noexcept;
};

/// A view from MapViewOfFile.
struct QUILLON_EXPORT PWin32MappedView : PWin32NullableHandle {
    static void Close(void* view) noexcept;
};

/// PWin32ScopedHandle: owns one handle and closes it, leaving the last error as it was.
template <class Kind>
class PWin32ScopedHandle {
public:
    PWin32ScopedHandle() noexcept : mHandle(Kind::None()) {}
    explicit PWin32ScopedHandle(void* handle) noexcept : mHandle(handle) {}
    PWin32ScopedHandle(PWin32ScopedHandle&& other) noexcept : mHandle(other.Release()) {}
    PWin32ScopedHandle& operator=(PWin32ScopedHandle&& other) noexcept {
        Reset(other.Release());
        return *this;
    }
    ~PWin32ScopedHandle() { Reset(Kind::None()); }

    void* Get() const noexcept { return mHandle; }
    explicit operator bool() const noexcept { return mHandle != Kind::None(); }
    [[nodiscard]] void* Release() noexcept { return std::exchange(mHandle, Kind::None()); }
    void Reset(void* handle) noexcept {
        void* old = std::exchange(mHandle, handle);
        if (old != Kind::None()) Kind::Close(old);
    }

private:
    void* mHandle;
};
