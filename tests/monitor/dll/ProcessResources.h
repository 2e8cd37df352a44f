#pragma once

#include "tests/WindowsTesting.h"

#include <winternl.h>

/// What this process holds at the moment, exactly.
struct ProcessResources {
    std::size_t mHandles = 0;
    std::size_t mHeapBytes = 0;  ///< in use, in all heaps of the process

    static ProcessResources Count() {
        ProcessResources all;
        // The heap first: counting handles needs memory itself.
        HANDLE heaps[64];
        const DWORD count = ::GetProcessHeaps(64, heaps);
        for (DWORD i = 0; i < count && i < 64; ++i) all.mHeapBytes += CountBusyBytes(heaps[i]);
        all.mHandles = CountHandles();
        return all;
    }

private:
    // The system's own table of all handles: the documented call for the number does not work everywhere.
    static std::size_t CountHandles() {
        std::vector<std::uint64_t> buffer(1 << 17);
        const auto size = static_cast<ULONG>(buffer.size() * sizeof buffer[0]);
        if (::NtQuerySystemInformation(SystemHandleInformation, buffer.data(), size, nullptr) != 0) return 0;
        const auto& table = *reinterpret_cast<const SYSTEM_HANDLE_INFORMATION*>(buffer.data());
        const DWORD self = ::GetCurrentProcessId();
        return std::count_if(table.Handle, table.Handle + table.Count,
                             [self](const auto& handle) { return handle.OwnerPid == self; });
    }
    static std::size_t CountBusyBytes(HANDLE heap) {
        std::size_t bytes = 0;
        ::HeapLock(heap);
        PROCESS_HEAP_ENTRY entry{};
        while (::HeapWalk(heap, &entry))
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
        ::HeapUnlock(heap);
        return bytes;
    }
};
