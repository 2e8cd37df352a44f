#pragma once

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
/// All state is in the segment. Each operation holds the queue's mutex once, from beginning to end, and
/// throws 40161 or 40163, changing nothing, when what it finds there makes no sense. Failing to get the
/// mutex within the budget throws 40202. One thread at a time.
class QUILLON_EXPORT GIPCMessageQueue : public GSharedMemory {
public:
    static constexpr long cQueueLength = 32768;  ///< bytes behind the segment's size word
    static constexpr long cRecordOverhead = 20;  ///< what a record takes beyond its payload

    /// Opens the queue of somebody else. Throws 2450 when there is none, 40154 for another version.
    GIPCMessageQueue(long session, long processID, long registrationID, GWaitBudget* budget = nullptr);
    /// Opens or creates a queue; an existing one must have this version (40154) and size (40168).
    GIPCMessageQueue(long session, long processID, long registrationID, bool& created,
                     GWaitBudget* budget = nullptr);

    /// Appends a message from this process, or from `sender`. False when there is no room for it.
    bool TryToAddRawMessage(long type, const GBuffer& data);
    bool TryToAddRawMessage(long sender, long type, const GBuffer& data);
    /// The same, but a message that is waiting already, from whomever, is not added again: true.
    bool TryToAddRawMessageOnce(long type, const GBuffer& data);
    bool TryToAddRawMessageOnce(long sender, long type, const GBuffer& data);
    /// True when a message of this type and payload is waiting.
    bool ContainsRawMessage(long type, const GBuffer& data);
    /// Whether a queue could ever hold it. The queue's own header is left out on purpose: this tells
    /// what is worth keeping for a later attempt, and only appending tells what fits.
    static bool RawDataFitsEmptyQueue(const GBuffer& data);

    /// Appends what is waiting to `messages`, in order of arrival, and empties the queue. When a record
    /// makes no sense, the messages before it are in the table, all of them are still in the queue, and
    /// the exception is thrown.
    void ReadPendingMessages(GTable<GSmartPtr<GIPCMessage>>& messages);
    /// For the owner: makes the queue an empty one, whatever somebody has done to it.
    void Reset();

    /// The name space of a session's queues.
    static GBuffer GetMemoryPath(long session);
    /// "P4711MQ12345" for process 4711 and registration 12345. Throws 40162 for a negative number.
    static GShMemID ConvertToMemoryID(long processID, long registrationID);

private:
    struct Record;

    static void CheckOrWriteHeader(GSharedMemory& segment, bool created);
    long GetLimit();
    long ReadEndOffset();
    bool Append(long sender, long type, const GBuffer& data);
    bool Contains(long type, const GBuffer& data);
    Record ReadRecord(long end);
    GSmartPtr<GIPCMessage> ReadMessage(const Record& record);
};
