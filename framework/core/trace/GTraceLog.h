#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/core/text/GString.h"
#include "framework/core/trace/GCodeLocation.h"

/// GTraceLog: the trace log as everybody calls it; GTrace is what stands behind.
///
///     GTraceLog::Trace(cCategory, "the printer is gone");
///
/// Without a log nothing happens, and a category that is off costs one look-up. There is no lock: an
/// entry that comes while another is being written, on this thread or another, is dropped. What cannot
/// be written is thrown, see GTrace.
class QUILLON_EXPORT GTraceLog {
public:
    GTraceLog(const GTraceLog&) = delete;
    GTraceLog& operator=(const GTraceLog&) = delete;
    virtual ~GTraceLog();

    /// Null when there is none.
    static GTraceLog* GetInstance() noexcept;
    /// Logs `message` under `category`, with the place of the call.
    static void Trace(const GBuffer& category, const GBuffer& message,
                      const GCodeLocation& where = GCodeLocation::Here());

    /// For what must not fail for its log: logs the GString that `compose` gives, which is asked for one only
    /// when the category is on. What cannot be written is lost.
    template <class Compose>
    static void TraceQuietly(const char* category, Compose compose,
                             const GCodeLocation& where = GCodeLocation::Here()) noexcept {
        RunQuietly([&] {
            if (IsOn(category)) TraceText(category, compose(), where);
        });
    }
    /// Whether there is a log and entries of the category are written.
    static bool IsOn(const char* category);

    ///@{ Whether entries of the category are written, and whether they raise an alert.
    virtual bool GetNeedsLogging(const GBuffer& category) const = 0;
    virtual bool GetAlertOnLog(const GBuffer& category) const = 0;
    ///@}
    /// How often the indent text stands before an entry; below zero like zero.
    virtual void AddIndent() noexcept = 0;
    virtual void RemoveIndent() noexcept = 0;  ///< the reverse of AddIndent()

protected:
    GTraceLog() = default;
    /// Not owned; null: none.
    static void Install(GTraceLog* log) noexcept;

private:
    friend class GTraceLock;

    static void TraceText(const GBuffer& category, const GString& text, const GCodeLocation& where);
    virtual void TraceEntry(const GBuffer& category, const GCodeLocation& where, const GBuffer& message) = 0;
    /// Counts who is inside; true for the first.
    virtual bool Enter() noexcept = 0;
    virtual void Leave() noexcept = 0;
};

/// GTraceLock: keeps entries out of the log while it is in scope. One thread; scopes may nest.
class QUILLON_EXPORT GTraceLock {
public:
    GTraceLock() noexcept;
    GTraceLock(const GTraceLock&) = delete;
    GTraceLock& operator=(const GTraceLock&) = delete;
    ~GTraceLock();

    /// True for the outermost one, when there is a log.
    bool GetIsOK() const noexcept { return mIsOK; }

private:
    bool mIsOK;
};

/// GTraceBlock: logs the beginning and the end of a scope, between which entries are indented.
///
/// The log reads "Beginning:" and "Ending:" with the block's name. A copy is a copy of the record
/// alone: only what was made with a name begins and ends. What cannot be written at the end is lost.
class QUILLON_EXPORT GTraceBlock {
public:
    /// Throws as GTraceLog::Trace() does; the block has then not begun.
    GTraceBlock(const GBuffer& category, const GBuffer& name,
                const GCodeLocation& where = GCodeLocation::Here());
    /// The record alone: the copy has not begun and logs no end.
    GTraceBlock(const GTraceBlock& other);
    /// Ends its own block first.
    GTraceBlock& operator=(const GTraceBlock& other);
    ~GTraceBlock();

private:
    void End() noexcept;

    GBuffer mCategory;
    GBuffer mName;
    GCodeLocation mWhere;
    bool mHasBegun = false;
};
