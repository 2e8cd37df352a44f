#include "framework/ipc/GIPCMessageQueue.h"

#include <algorithm>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/ipc/GShMemWord.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/GSessionInfo.h"

namespace {

constexpr long cVersion = 1;
constexpr long cVersionOffset = 0;
constexpr long cEndOffset = 4;    // where the end offset stands
constexpr long cFirstRecord = 8;  // and what it is in an empty queue

// The event that wakes a queue's owner has this before the queue's identifier.
constexpr const char* cEventPrefix = "QulShE";

constexpr std::int32_t cMessageKind = 1;
constexpr long cRecordHeader = 8;    // kind and length, in every record
constexpr long cMessageHeader = 12;  // sender, type and payload length, behind that in a message

[[noreturn]] void ThrowMakesNoSense() {
    throw GSimpleException(GExceptionID::cNotEnoughData);
}

long GetOwnProcessID() {
    return GProcessInfo::GetInstance()->GetCurrentProcessID();
}

}  // namespace

/// A record's header, with the cursor behind it: at the payload of a message.
struct GIPCMessageQueue::Record {
    std::int32_t mKind = 0;
    std::int32_t mSender = 0;
    std::int32_t mType = 0;
    long mPayloadLength = 0;
    long mNext = 0;  // offset of the next record

    bool IsMessage() const noexcept { return mKind == cMessageKind; }
};

GIPCMessageQueue::GIPCMessageQueue(long session, long processID, long registrationID, GWaitBudget* budget)
    : GSharedMemory(GetMemoryPath(session), ConvertToMemoryID(processID, registrationID), budget,
                    &CheckOrWriteHeader),
      mIdentifier(ConvertToMemoryID(processID, registrationID)) {}

GIPCMessageQueue::GIPCMessageQueue(long session, long processID, long registrationID, bool& created,
                                   GWaitBudget* budget)
    : GSharedMemory(GetMemoryPath(session), ConvertToMemoryID(processID, registrationID),
                    {cQueueLength, cFirstRecord + cRecordOverhead}, created, budget, &CheckOrWriteHeader),
      mIdentifier(ConvertToMemoryID(processID, registrationID)) {}

void GIPCMessageQueue::CheckOrWriteHeader(GSharedMemory& segment, bool created) {
    segment.SetCursor(cVersionOffset);
    if (created) {
        segment.WriteInt32(cVersion);
        segment.WriteInt32(cFirstRecord);
    } else if (segment.ReadInt32() != cVersion) {
        throw GSimpleException(GExceptionID::cUnknownIPCVersion);
    }
}

GBuffer GIPCMessageQueue::GetMemoryPath(long session) {
    GBuffer path;
    GSessionInfo::GetInstance()->GetSessionPath(path, session);
    return path;
}

bool GIPCMessageQueue::Exists(const GBuffer& path, long processID, long registrationID) {
    return PSharedMemory::Exists(
        path, GIPPrefix::AddPrefix(GIPPrefix::cSharedMemory, ConvertToMemoryID(processID, registrationID)));
}

GShMemID GIPCMessageQueue::ConvertToMemoryID(long processID, long registrationID) {
    return GShMemID::GetSpecialID(GShMemID::cProcess) + GShMemID(GBuffer(processID)) +
           GShMemID::GetSpecialID(GShMemID::cMessageQueue) + GShMemID(GBuffer(registrationID));
}

bool GIPCMessageQueue::RawDataFitsEmptyQueue(const GBuffer& data) {
    return data.GetLength() <= cQueueLength - cRecordOverhead;
}

bool GIPCMessageQueue::TryToAddRawMessage(long type, const GBuffer& data) {
    return Add(GetOwnProcessID(), type, data, false);
}

bool GIPCMessageQueue::TryToAddRawMessage(long sender, long type, const GBuffer& data) {
    return Add(sender, type, data, false);
}

bool GIPCMessageQueue::TryToAddRawMessageOnce(long type, const GBuffer& data) {
    return Add(GetOwnProcessID(), type, data, true);
}

bool GIPCMessageQueue::TryToAddRawMessageOnce(long sender, long type, const GBuffer& data) {
    return Add(sender, type, data, true);
}

bool GIPCMessageQueue::Add(long sender, long type, const GBuffer& data, bool once) {
    {
        GSharedMemoryLocker locker(*this);
        if (once && Contains(type, data)) return true;
        if (!Append(sender, type, data)) return false;
    }
    // With the mutex free, so that the owner does not wake up to wait for it. The message is on its way:
    // nothing may throw.
    RunQuietly([this] { WakeOwner(); });
    return true;
}

void GIPCMessageQueue::WakeOwner() {
    // An owner that waits has made the event before anybody could find the queue.
    if (!mEvent) mEvent.emplace(GBuffer(cEventPrefix) + mIdentifier.GetBuffer(), PIPEventImp::Use::cOpen);
    mEvent->Set();
}

PIPEventImp GIPCMessageQueue::MakeEvent(long processID, long registrationID) {
    return PIPEventImp(GBuffer(cEventPrefix) + ConvertToMemoryID(processID, registrationID).GetBuffer(),
                       PIPEventImp::Use::cOpenOrCreate);
}

bool GIPCMessageQueue::HasMessages() {
    GSharedMemoryLocker locker(*this);
    return ReadEndOffset() > cFirstRecord;
}

bool GIPCMessageQueue::ContainsRawMessage(long type, const GBuffer& data) {
    GSharedMemoryLocker locker(*this);
    return Contains(type, data);
}

// However much the segment claims or has, nothing lies beyond the size that every queue has: that
// bounds all walks over the records.
long GIPCMessageQueue::GetLimit() {
    return std::min(GetLength(), cQueueLength);
}

long GIPCMessageQueue::ReadEndOffset() {
    SetCursor(cEndOffset);
    const long end = ReadInt32();
    if (end < cFirstRecord || end > GetLimit()) ThrowMakesNoSense();
    return end;
}

bool GIPCMessageQueue::Append(long sender, long type, const GBuffer& data) {
    const long end = ReadEndOffset();
    const long length = data.GetLength();
    if (length > GetLimit() - end - cRecordOverhead) return false;
    unsigned char header[cRecordOverhead];
    GShMemWord::Put(header, cMessageKind);
    GShMemWord::Put(header + 4, static_cast<std::int32_t>(length + cMessageHeader));
    GShMemWord::Put(header + 8, static_cast<std::int32_t>(sender));
    GShMemWord::Put(header + 12, static_cast<std::int32_t>(type));
    GShMemWord::Put(header + 16, static_cast<std::int32_t>(length));
    SetCursor(end);
    WriteBytes(header, cRecordOverhead);
    WriteBytes(data.GetRawData(), length);
    // Last, so that a writer which dies on the way leaves the queue as it was.
    SetCursor(cEndOffset);
    WriteInt32(end + cRecordOverhead + length);
    return true;
}

GIPCMessageQueue::Record GIPCMessageQueue::ReadRecord(long end) {
    const long start = GetCursor();
    if (end - start < cRecordHeader) ThrowMakesNoSense();
    unsigned char header[cRecordHeader + cMessageHeader];
    ReadBytes(header, cRecordHeader);
    Record record;
    record.mKind = GShMemWord::Get(header);
    const long length = GShMemWord::Get(header + 4);
    if (length < 0 || length > end - start - cRecordHeader) ThrowMakesNoSense();
    record.mNext = start + cRecordHeader + length;
    if (!record.IsMessage()) return record;
    if (length < cMessageHeader) ThrowMakesNoSense();
    ReadBytes(header + cRecordHeader, cMessageHeader);
    record.mSender = GShMemWord::Get(header + 8);
    record.mType = GShMemWord::Get(header + 12);
    record.mPayloadLength = GShMemWord::Get(header + 16);
    // A payload must not reach into the next record, or one queue could be read as many times its size.
    if (record.mPayloadLength < 0 || record.mPayloadLength > length - cMessageHeader) ThrowMakesNoSense();
    return record;
}

bool GIPCMessageQueue::Contains(long type, const GBuffer& data) {
    const long end = ReadEndOffset();
    for (long offset = cFirstRecord; offset < end;) {
        SetCursor(offset);
        const Record record = ReadRecord(end);
        if (record.IsMessage() && record.mType == static_cast<std::int32_t>(type) &&
            record.mPayloadLength == data.GetLength() && Matches(data))
            return true;
        offset = record.mNext;
    }
    return false;
}

void GIPCMessageQueue::ReadPendingMessages(GTable<GSmartPtr<GIPCMessage>>& messages) {
    GSharedMemoryLocker locker(*this);
    const long end = ReadEndOffset();
    if (end == cFirstRecord) return;
    for (long offset = cFirstRecord; offset < end;) {
        SetCursor(offset);
        const Record record = ReadRecord(end);
        if (record.IsMessage()) messages.Append(ReadMessage(record));
        offset = record.mNext;
    }
    SetCursor(cEndOffset);
    WriteInt32(cFirstRecord);
}

GSmartPtr<GIPCMessage> GIPCMessageQueue::ReadMessage(const Record& record) {
    GBuffer data;
    if (record.mPayloadLength > 0) {
        data.Allocate(record.mPayloadLength);
        data.SetLength(record.mPayloadLength);
        ReadBytes(data.GetWritePtr(), record.mPayloadLength);
    }
    return new GIPCMessage(record.mSender, record.mType, std::move(data));
}

void GIPCMessageQueue::Reset() {
    GSharedMemoryLocker locker(*this);
    RestoreLength(cQueueLength);
    CheckOrWriteHeader(*this, true);
}
