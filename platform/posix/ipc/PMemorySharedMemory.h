#pragma once

#include <cstdint>
#include <memory>

#include "framework/core/bytes/GBuffer.h"

class PMemoryIPMutexImp;

/// PMemorySharedMemory: a block of this process's memory that its objects know by name.
///
/// It stands in for a system's shared memory where messaging is tested. A block has exactly the bytes
/// that were asked for, so that a memory checker sees every access beyond them. It goes with the last
/// object that has it open.
class PMemorySharedMemory {
public:
    using MutexImp = PMemoryIPMutexImp;

    /// Opens the block named path + identifier; throws GExceptionID::cGeneral when there is none.
    PMemorySharedMemory(const GBuffer& path, const GBuffer& identifier);
    /// Opens it, or creates it with `size` usable bytes, all zero. Throws
    /// GExceptionID::cSharedMemorySizeDiffers when it exists with another size.
    PMemorySharedMemory(const GBuffer& path, const GBuffer& identifier, long size, bool& created);
    PMemorySharedMemory(const PMemorySharedMemory&) = delete;
    PMemorySharedMemory& operator=(const PMemorySharedMemory&) = delete;
    ~PMemorySharedMemory();

    static bool Exists(const GBuffer& path, const GBuffer& identifier);
    static long GetMaxIDSize();

    /// The usable bytes by the first word. Throws GExceptionID::cSharedMemoryReadFailed when that is not
    /// between 4 and the block's size.
    long GetLength() const;
    /// Writes the first word: `size` usable bytes, or as many as the block has. Throws
    /// GExceptionID::cSharedMemoryReadFailed when that is none at all.
    void SetLength(long size);
    /// Plain copies; the caller has checked against GetLength().
    void Read(long offset, void* destination, long count) const noexcept;
    void Write(long offset, const void* source, long count) noexcept;
    [[nodiscard]] bool Equals(long offset, const void* bytes, long count) const noexcept;

    void Close() noexcept;

    /// @name For whoever plays another process: a block with all its bytes, the size word included. It
    /// lives as long as it is held.
    /// @{
    using Block = std::shared_ptr<unsigned char[]>;
    /// Null when there is none.
    static Block FindBlock(const GBuffer& path, const GBuffer& identifier, long& wholeSize);
    /// Makes one in place of any that has the name already.
    static Block MakeBlock(const GBuffer& path, const GBuffer& identifier, long wholeSize);
    /// @}

private:
    std::uint32_t ReadSizeWord() const noexcept;

    Block mBlock;
    long mBlockSize = 0;
};
