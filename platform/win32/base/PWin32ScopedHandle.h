#pragma once

#include <cstdint>
#include <utility>

// The value that means "none" and the call that closes differ from one kind of handle to the next.

/// Mappings, mutexes, processes, tokens.
struct PWin32KernelHandle {
    static void* None() noexcept { return nullptr; }
    static void Close(void* handle) noexcept;
};

/// What CreateFileW and CreateToolhelp32Snapshot give.
struct PWin32FileHandle {
    static void* None() noexcept { return reinterpret_cast<void*>(static_cast<std::intptr_t>(-1)); }
    static void Close(void* handle) noexcept;
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
