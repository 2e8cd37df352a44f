#pragma once

#include <cstdint>
#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/ipc/GIPCMessageQueueMgr.h"
#include "framework/ipc/GIPCRules.h"

/// GIPCRegistries: the registries that a manager works with: that of this session and, if the rules want it
/// and it is another object, the one that all sessions share. They are opened when first needed.
///
/// One thread at a time.
class QUILLON_EXPORT GIPCRegistries {
public:
    /// The rules outlive it.
    explicit GIPCRegistries(const GIPCRules& rules) noexcept : mRules(rules) {}
    GIPCRegistries(const GIPCRegistries&) = delete;
    GIPCRegistries& operator=(const GIPCRegistries&) = delete;

    /// Opens what is not open yet. Throws what opening this session's registry throws; the one that all
    /// sessions share is done without where the system refuses it.
    void Open();
    /// The next use opens them again.
    void Close() noexcept;
    /// Opens what is not open yet, as Open().
    GIPCMessageQueueMgr& GetOfSession();
    /// Null where there is none.
    GIPCMessageQueueMgr* GetGlobal();

    /// Replaces `sessions` with those whose registries a sender searches, in that order; -1 is the registry
    /// that all sessions share.
    void GetSessions(GTable<std::int32_t>& sessions);
    /// Appends the queues in one of these registries; false when it does not exist.
    bool Read(long session, GTable<GIPCQueueAddress>& queues, GIPCMessageQueueMgr::Tidying tidying);
    /// Takes a process out of the registries that are open here.
    void Purge(long processID);

private:
    bool IsGlobalAnotherOne() const;

    const GIPCRules& mRules;
    std::unique_ptr<GIPCMessageQueueMgr> mOfSession;
    std::unique_ptr<GIPCMessageQueueMgr> mGlobal;
};
