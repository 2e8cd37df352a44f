#pragma once

/// @file
/// Memory shared by processes.

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <limits>
#include <memory>

#include "PPlatformIPC.h"
#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/ipc/GIPMutex.h"
#include "framework/ipc/GIPPrefix.h"
#include "framework/ipc/GShMemID.h"
#include "framework/ipc/GShMemWord.h"
#include "framework/ipc/GWaitBudget.h"
#include "framework/system/PSystem.h"

/// What a platform supplies: memory that all processes of the machine know by name.
///
/// A view begins with a word that tells its whole size; what follows is usable. Offsets count from
/// there. Read and Write are plain copies which check nothing.
template <class Imp>
concept GSharedMemoryImp = GIPMutexImp<typename Imp::MutexImp> &&
    std::constructible_from<Imp, const GBuffer&, const GBuffer&> &&
    std::constructible_from<Imp, const GBuffer&, const GBuffer&, long, bool&> &&
    requires(Imp imp, const GBuffer& name, long offset, void* to, const void* from, long count) {
    { Imp::Exists(name, name) } -> std::same_as<bool>;  // path, identifier
    { Imp::GetMaxIDSize() } -> std::convertible_to<long>;
    { imp.GetLength() } -> std::same_as<long>;  // from the first word, checked against the view
    imp.SetLength(count);                       // mends the first word: count, or what the view has
    imp.Read(offset, to, count);
    imp.Write(offset, from, count);
    { imp.Equals(offset, from, count) } -> std::same_as<bool>;
    imp.Close();  // once; what the destructor does, but it reports
};

/// GSharedMemoryBase: a named segment of shared memory, its mutex, and a cursor that reads and writes.
///
/// The segment is named path + prefix + identifier; one mutex per identifier guards it in all paths. Every
/// operation locks; whoever needs several in a row locks around them, as deep as he likes: the mutex itself
/// is taken once. Words have 32 bits, low byte first. The segment can be written by any process at any time,
/// whether it holds the mutex or not. So nothing read from it is trusted: each operation checks against the
/// size that the view really has, reads every word once, and throws (GExceptionID::cNotEnoughSpace,
/// cNotEnoughData, cSharedMemoryReadFailed, cSharedMemoryWriteFailed) without having moved the cursor or
/// changed the segment.
///
/// One thread at a time.
template <GSharedMemoryImp Imp>
class GSharedMemoryBase {
public:
    /// The usable bytes of a new segment, and the least that an existing one must have.
    struct Size {
        /// One that exists must have exactly this size.
        Size(long usual) noexcept : Size(usual, std::numeric_limits<long>::max()) {}
        /// With the least that will do.
        Size(long usual, long least) noexcept : mUsual(usual), mLeast(least) {}

        long mUsual;  ///< of a new segment
        long mLeast;  ///< of one that exists already
    };
    /// Prepares or checks a segment that has just been opened, with its mutex still held.
    using Prepare = void (*)(GSharedMemoryBase& segment, bool created);

    /// Opens a segment that must exist (GExceptionID::cGeneral otherwise).
    GSharedMemoryBase(const GBuffer& path, const GShMemID& identifier, GWaitBudget* budget = nullptr,
                      Prepare prepare = nullptr);
    /// Opens or creates one of so many usable bytes, zero at first. One that exists in another size is
    /// used as it is, and traced, when it has the least that `size` asks for, and its size word is mended
    /// when that says less than the view has; throws GExceptionID::cSharedMemorySizeDiffers otherwise. No
    /// other process that locks can see a new one before `prepare` is through.
    GSharedMemoryBase(const GBuffer& path, const GShMemID& identifier, Size size, bool& created,
                      GWaitBudget* budget = nullptr, Prepare prepare = nullptr);
    GSharedMemoryBase(const GSharedMemoryBase&) = delete;
    GSharedMemoryBase& operator=(const GSharedMemoryBase&) = delete;
    /// Releases everything and reports nothing: whether another exception is passing through cannot be
    /// told when that comes from a module with a C++ run-time library of its own, and throwing a second
    /// one would end the process. Close() reports.
    ~GSharedMemoryBase();

    /// Closes segment and mutex; throws GExceptionID::cGeneral when the system refuses, having tried both.
    /// Nothing else may be called afterwards.
    void Close();

    /// Takes the mutex, within the budget given to the constructor; throws GExceptionID::cCouldNotLockMutex
    /// past it.
    void Lock();
    void Unlock();                                      ///< as often as it was locked
    bool IsLocked() const noexcept { return mLocked; }  ///< whether this object holds the mutex
    /// Waits within another budget from now on.
    void SetBudget(GWaitBudget* budget) noexcept { mBudget = budget; }

    /// The usable bytes, as the segment itself tells; GExceptionID::cSharedMemoryReadFailed when it claims
    /// more than the view has.
    long GetLength();
    /// The offset at which the next operation reads or writes.
    long GetCursor() const noexcept { return mCursor; }
    /// Any offset; the operations check it.
    void SetCursor(long offset) noexcept { mCursor = static_cast<std::int32_t>(offset); }

    /// Throws GExceptionID::cNotEnoughData with less than four bytes between cursor and end.
    std::int32_t ReadInt32();
    /// Throws GExceptionID::cNotEnoughSpace with less than four bytes between cursor and end.
    void WriteInt32(long value);
    /// Reads a length and so many bytes. Throws GExceptionID::cNotEnoughData when the length is negative or
    /// leads past the end.
    void ReadBuffer(GBuffer& data);
    /// Writes the length and the bytes. Throws GExceptionID::cNotEnoughSpace when the bytes alone do not fit,
    /// and cSharedMemoryWriteFailed when only the length in front of them makes it too much.
    void WriteBuffer(const GBuffer& data);
    /// Reads `count` bytes to memory that has room for them; throws GExceptionID::cNotEnoughData.
    void ReadBytes(void* bytes, long count);
    /// Throws GExceptionID::cNotEnoughSpace when they do not fit.
    void WriteBytes(const void* bytes, long count);
    /// True when the bytes at the cursor are those of `data`, which must lie inside; throws
    /// GExceptionID::cNotEnoughData. The cursor stays.
    bool Matches(const GBuffer& data);

    /// Mends the word that tells the size: `size` usable bytes, or as many as the view has.
    void RestoreLength(long size);

private:
    static std::unique_ptr<Imp> OpenOrCreate(const GBuffer& path, const GBuffer& name, const Size& size,
                                             bool& created);
    long GetRemaining();

    std::int32_t mCursor = 0;
    std::uint32_t mLockDepth = 0;
    GIPMutexBase<typename Imp::MutexImp> mMutex;
    bool mLocked = false;
    std::unique_ptr<Imp> mSegment;
    GWaitBudget* mBudget;
};

/// GSharedMemoryLocker: locks a segment for its own lifetime.
template <class Segment>
class GSharedMemoryLocker {
public:
    /// The segment outlives the locker. Throws as GSharedMemoryBase::Lock().
    explicit GSharedMemoryLocker(Segment& segment) : mSegment(segment) { mSegment.Lock(); }
    GSharedMemoryLocker(const GSharedMemoryLocker&) = delete;
    GSharedMemoryLocker& operator=(const GSharedMemoryLocker&) = delete;
    ~GSharedMemoryLocker() {
        try {
            mSegment.Unlock();
        } catch (...) {
            // An exception may be on its way through this scope; a second one would end the process.
        }
    }

private:
    Segment& mSegment;
};

/// GShMemCursorGuard: puts a segment's cursor back where it was, unless released.
template <class Segment>
class GShMemCursorGuard {
public:
    /// Remembers where the cursor stands.
    explicit GShMemCursorGuard(Segment& segment) noexcept : mSegment(segment), mCursor(segment.GetCursor()) {}
    GShMemCursorGuard(const GShMemCursorGuard&) = delete;
    GShMemCursorGuard& operator=(const GShMemCursorGuard&) = delete;
    ~GShMemCursorGuard() {
        if (!mReleased) mSegment.SetCursor(mCursor);
    }
    void Release() noexcept { mReleased = true; }  ///< lets the cursor stay where it is

private:
    Segment& mSegment;
    long mCursor;
    bool mReleased = false;
};

/// Shared memory of this platform.
using GSharedMemory = GSharedMemoryBase<PSharedMemory>;
extern template class QUILLON_EXPORT GSharedMemoryBase<PSharedMemory>;

template <GSharedMemoryImp Imp>
GSharedMemoryBase<Imp>::GSharedMemoryBase(const GBuffer& path, const GShMemID& identifier,
                                          GWaitBudget* budget, Prepare prepare)
    : mMutex(identifier, GIPPrefix::cSharedMemoryLock), mBudget(budget) {
    GSharedMemoryLocker locker(*this);
    mSegment = std::make_unique<Imp>(path, GIPPrefix::AddPrefix(GIPPrefix::cSharedMemory, identifier));
    if (prepare != nullptr) prepare(*this, false);
}

template <GSharedMemoryImp Imp>
GSharedMemoryBase<Imp>::GSharedMemoryBase(const GBuffer& path, const GShMemID& identifier, Size size,
                                          bool& created, GWaitBudget* budget, Prepare prepare)
    : mMutex(identifier, GIPPrefix::cSharedMemoryLock), mBudget(budget) {
    GSharedMemoryLocker locker(*this);
    mSegment = OpenOrCreate(path, GIPPrefix::AddPrefix(GIPPrefix::cSharedMemory, identifier), size, created);
    if (prepare != nullptr) prepare(*this, created);
}

template <GSharedMemoryImp Imp>
std::unique_ptr<Imp> GSharedMemoryBase<Imp>::OpenOrCreate(const GBuffer& path, const GBuffer& name,
                                                          const Size& size, bool& created) {
    try {
        return std::make_unique<Imp>(path, name, size.mUsual, created);
    } catch (const GException& failure) {
        if (failure.GetExceptionID() != GExceptionID::cSharedMemorySizeDiffers) throw;
    }
    auto segment = std::make_unique<Imp>(path, name);
    long length = 0;
    RunQuietly([&] { length = segment->GetLength(); });
    if (length < size.mLeast && size.mLeast <= size.mUsual) {
        // Somebody may have spoilt the word that tells the size; the view itself cannot be changed.
        segment->SetLength(size.mUsual);
        length = segment->GetLength();
    }
    if (length < size.mLeast) throw GSimpleException(GExceptionID::cSharedMemorySizeDiffers);
    PSystem::Trace(L"A shared segment of another size than usual is used");
    return segment;
}

template <GSharedMemoryImp Imp>
GSharedMemoryBase<Imp>::~GSharedMemoryBase() = default;

template <GSharedMemoryImp Imp>
void GSharedMemoryBase<Imp>::Close() {
    try {
        mSegment->Close();
    } catch (...) {
        mMutex.Close();
        throw;
    }
    mMutex.Close();
}

template <GSharedMemoryImp Imp>
void GSharedMemoryBase<Imp>::Lock() {
    // Counted only once the mutex is ours: if it cannot be had, no unlock may follow.
    if (mLockDepth == 0) {
        GWaitBudget::Lock(mBudget, mMutex);
        mLocked = true;
    }
    ++mLockDepth;
}

template <GSharedMemoryImp Imp>
void GSharedMemoryBase<Imp>::Unlock() {
    if (mLockDepth == 0 || --mLockDepth > 0) return;
    mLocked = false;
    mMutex.Unlock();
}

template <GSharedMemoryImp Imp>
long GSharedMemoryBase<Imp>::GetLength() {
    GSharedMemoryLocker locker(*this);
    return mSegment->GetLength();
}

template <GSharedMemoryImp Imp>
void GSharedMemoryBase<Imp>::RestoreLength(long size) {
    GSharedMemoryLocker locker(*this);
    mSegment->SetLength(size);
}

template <GSharedMemoryImp Imp>
long GSharedMemoryBase<Imp>::GetRemaining() {
    const long length = mSegment->GetLength();
    return mCursor < 0 ? 0 : std::max(length - mCursor, 0L);
}

template <GSharedMemoryImp Imp>
std::int32_t GSharedMemoryBase<Imp>::ReadInt32() {
    unsigned char bytes[GShMemWord::cSize];
    ReadBytes(bytes, GShMemWord::cSize);
    return GShMemWord::Get(bytes);
}

template <GSharedMemoryImp Imp>
void GSharedMemoryBase<Imp>::WriteInt32(long value) {
    unsigned char bytes[GShMemWord::cSize];
    GShMemWord::Put(bytes, static_cast<std::int32_t>(value));
    WriteBytes(bytes, GShMemWord::cSize);
}

template <GSharedMemoryImp Imp>
void GSharedMemoryBase<Imp>::ReadBytes(void* bytes, long count) {
    GSharedMemoryLocker locker(*this);
    if (count < 0 || GetRemaining() < count) throw GSimpleException(GExceptionID::cNotEnoughData);
    mSegment->Read(mCursor, bytes, count);
    mCursor += static_cast<std::int32_t>(count);
}

template <GSharedMemoryImp Imp>
void GSharedMemoryBase<Imp>::WriteBytes(const void* bytes, long count) {
    GSharedMemoryLocker locker(*this);
    if (count < 0 || GetRemaining() < count) throw GSimpleException(GExceptionID::cNotEnoughSpace);
    mSegment->Write(mCursor, bytes, count);
    mCursor += static_cast<std::int32_t>(count);
}

template <GSharedMemoryImp Imp>
void GSharedMemoryBase<Imp>::ReadBuffer(GBuffer& data) {
    GSharedMemoryLocker locker(*this);
    GShMemCursorGuard cursor(*this);
    const long length = ReadInt32();
    // Checked before anything is allocated: the length is whatever somebody has written there.
    if (length < 0 || GetRemaining() < length) throw GSimpleException(GExceptionID::cNotEnoughData);
    data.Clear();
    if (length > 0) {
        data.Allocate(length);
        data.SetLength(length);
        ReadBytes(data.GetWritePtr(), length);
    }
    cursor.Release();
}

template <GSharedMemoryImp Imp>
void GSharedMemoryBase<Imp>::WriteBuffer(const GBuffer& data) {
    GSharedMemoryLocker locker(*this);
    const long remaining = GetRemaining();
    if (remaining < data.GetLength()) throw GSimpleException(GExceptionID::cNotEnoughSpace);
    if (remaining < GShMemWord::cSize) throw GSimpleException(GExceptionID::cNotEnoughSpace);
    if (remaining - GShMemWord::cSize < data.GetLength())
        throw GSimpleException(GExceptionID::cSharedMemoryWriteFailed);
    WriteInt32(data.GetLength());
    WriteBytes(data.GetRawData(), data.GetLength());
}

template <GSharedMemoryImp Imp>
bool GSharedMemoryBase<Imp>::Matches(const GBuffer& data) {
    GSharedMemoryLocker locker(*this);
    if (GetRemaining() < data.GetLength()) throw GSimpleException(GExceptionID::cNotEnoughData);
    return mSegment->Equals(mCursor, data.GetRawData(), data.GetLength());
}
