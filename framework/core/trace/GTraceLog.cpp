#include "framework/core/trace/GTraceLog.h"

#include <atomic>
#include <utility>

#include "framework/core/encodings/GPlatformEncoding.h"

namespace {

std::atomic<GTraceLog*> sLog = nullptr;

}  // namespace

GTraceLog::~GTraceLog() = default;

GTraceLog* GTraceLog::GetInstance() noexcept {
    return sLog.load(std::memory_order_acquire);
}

void GTraceLog::Install(GTraceLog* log) noexcept {
    sLog.store(log, std::memory_order_release);
}

void GTraceLog::Trace(const GBuffer& category, const GBuffer& message, const GCodeLocation& where) {
    if (GTraceLog* const log = GetInstance()) log->TraceEntry(category, where, message);
}

bool GTraceLog::IsOn(const char* category) {
    const GTraceLog* const log = GetInstance();
    return log != nullptr && log->GetNeedsLogging(category);
}

void GTraceLog::TraceText(const GBuffer& category, const GString& text, const GCodeLocation& where) {
    Trace(category, text.GetBuffer(GPlatformEncoding::GetInstance()), where);
}

GTraceLock::GTraceLock() noexcept {
    GTraceLog* const log = GTraceLog::GetInstance();
    mIsOK = log != nullptr && log->Enter();
}

GTraceLock::~GTraceLock() {
    if (GTraceLog* const log = GTraceLog::GetInstance()) log->Leave();
}

GTraceBlock::GTraceBlock(const GBuffer& category, const GBuffer& name, const GCodeLocation& where)
    : mCategory(category), mName(name), mWhere(where), mHasBegun(GTraceLog::GetInstance() != nullptr) {
    if (!mHasBegun) return;
    GBuffer message("Beginning:");
    message += mName;
    GTraceLog::Trace(mCategory, message, mWhere);
    GTraceLog::GetInstance()->AddIndent();
}

GTraceBlock::GTraceBlock(const GTraceBlock& other)
    : mCategory(other.mCategory), mName(other.mName), mWhere(other.mWhere) {}

GTraceBlock& GTraceBlock::operator=(const GTraceBlock& other) {
    if (this == &other) return *this;
    End();
    mCategory = other.mCategory;
    mName = other.mName;
    mWhere = other.mWhere;
    return *this;
}

GTraceBlock::~GTraceBlock() {
    End();
}

void GTraceBlock::End() noexcept {
    GTraceLog* const log = GTraceLog::GetInstance();
    if (!std::exchange(mHasBegun, false) || log == nullptr) return;
    log->RemoveIndent();
    RunQuietly([this] {
        GBuffer message("Ending:");
        message += mName;
        GTraceLog::Trace(mCategory, message, mWhere);
    });
}
