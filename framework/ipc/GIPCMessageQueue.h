#pragma once

#include <optional>

#include "PPlatformIPC.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/memory/GSmartPtr.h"
#include "framework/ipc/GIPCMessage.h"
#include "framework/ipc/GSharedMemory.h"

/// GIPCMessageQueue: the inbox of one registration of one process, in shared memory.
///
/// Any process appends messages, its owner drains them all at once; nothing else ever removes one. The
/// segment holds, in 32-bit words with the low byte first: the version (1), the end offset (8 when
/// empty), and the records back to back. A record is its kind (1), the number of bytes that follow this
/// word, the sender's process ID, the message type, the payload's length, and the payload. Readers skip
/// records of other kinds.
///
/// Beside the segment and its mutex there may be an event that whoever appends sets.
///
/// All state is in the segment. Each operation holds the queue's mutex once, from beginning to end, and
/// throws GExceptionID::cNotEnoughData or cSharedMemoryReadFailed, changing nothing, when what it finds there
/// makes no sense. Failing to get the mutex within the budget throws cCouldNotLockMutex. One thread at a
/// time.
class QUILLON_EXPORT GIPCMessageQueue : public GSharedMemory {
public:
    static constexpr long cQueueLength = 32768;  ///< bytes behind the segment's size word
    static constexpr long cRecordOverhead = 20;  ///< what a record takes beyond its payload

    /// Opens the queue of somebody else. Throws GExceptionID::cGeneral when there is none, cUnknownIPCVersion
    /// for another version.
    GIPCMessageQueue(long session, long processID, long registrationID, GWaitBudget* budget = nullptr);
    /// Opens or creates a queue. An existing one of another size is used as it is, and traced, when it has
    /// room for a message; throws GExceptionID::cSharedMemorySizeDiffers otherwise, and cUnknownIPCVersion
    /// for another version.
    GIPCMessageQueue(long session, long processID, long registrationID, bool& created,
                     GWaitBudget* budget = nullptr);

    ///@{ Appends a message from this process, or from `sender`. False when there is no room for it.
    bool TryToAddRawMessage(long type, const GBuffer& data);
    bool TryToAddRawMessage(long sender, long type, const GBuffer& data);
    ///@}
    ///@{ The same, but a message that is waiting already, from whomever, is not added again: true.
    bool TryToAddRawMessageOnce(long type, const GBuffer& data);
    bool TryToAddRawMessageOnce(long sender, long type, const GBuffer& data);
    ///@}
    /// True when a message of this type and payload is waiting.
    bool ContainsRawMessage(long type, const GBuffer& data);
    /// Whether a queue could ever hold it. The queue's own header is left out on purpose: this tells
    /// what is worth keeping for a later attempt, and only appending tells what fits.
    static bool RawDataFitsEmptyQueue(const GBuffer& data);

    /// True when anything is waiting.
    bool HasMessages();
    /// Appends what is waiting to `messages`, in order of arrival, and empties the queue. When a record
    /// makes no sense, the messages before it are in the table, all of them are still in the queue, and
    /// the exception is thrown.
    void ReadPendingMessages(GTable<GSmartPtr<GIPCMessage>>& messages);
    /// For the owner: makes the queue an empty one, whatever somebody has done to it.
    void Reset();

    /// Whether a process has such a queue in the name space `path`.
    static bool Exists(const GBuffer& path, long processID, long registrationID);
    /// Makes the event that whoever appends to this queue sets, for its owner. Made before anybody can find
    /// the queue. There may be none (PIPEventImp::IsThere): then the owner has to look by itself.
    static PIPEventImp MakeEvent(long processID, long registrationID);
    /// The name space of a session's queues.
    static GBuffer GetMemoryPath(long session);
    /// "P4711MQ12345" for process 4711 and registration 12345. Throws GExceptionID::cInvalidShMemID for a
    /// negative number.
    static GShMemID ConvertToMemoryID(long processID, long registrationID);

private:
    struct Record;

    static void CheckOrWriteHeader(GSharedMemory& segment, bool created);
    long GetLimit();
    long ReadEndOffset();
    bool Add(long sender, long type, const GBuffer& data, bool once);
    bool Append(long sender, long type, const GBuffer& data);
    void WakeOwner();
    bool Contains(long type, const GBuffer& data);
    Record ReadRecord(long end);
    GSmartPtr<GIPCMessage> ReadMessage(const Record& record);

    GShMemID mIdentifier;
    std::optional<PIPEventImp> mEvent;  // looked for by the first message that is appended
};
