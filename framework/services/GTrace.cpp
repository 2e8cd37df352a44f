#include "framework/services/GTrace.h"

#include <algorithm>
#include <utility>

#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/core/memory/GReplaceable.h"
#include "framework/core/time/GDateTime.h"
#include "framework/files/GFileSystem.h"
#include "framework/services/GTraceFile.h"
#include "framework/streams/GFileInStream.h"
#include "framework/streams/GStreamSupport.h"
#include "framework/system/PSystem.h"

namespace {

GReplaceable<GTrace> sTrace;

constexpr const char* cAssertCategory = "AssertAS";

GBuffer TimeOfDay() {
    GString text;
    GDateTime(true).GetTimeAsString(text, true, GString());
    return text.GetBuffer(GPlatformEncoding::GetInstance());
}

// Compilers write '/' into names of sources on Windows, too.
const char* LeafOf(const char* file) {
    const char* leaf = file;
    for (const char* at = file; *at != 0; ++at)
        if (*at == '/' || *at == PSystem::GetPathSeparator()) leaf = at + 1;
    return leaf;
}

}  // namespace

/// Whoever comes while one is inside is dropped, on this thread or on another.
class GTrace::Inside {
public:
    explicit Inside(GTrace& trace) : mTrace(trace), mIsFirst(trace.Enter()) {}
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
    ~Inside() { mTrace.Leave(); }
    bool IsFirst() const { return mIsFirst; }

private:
    GTrace& mTrace;
    bool mIsFirst;
};

GTrace::GTrace() : GTrace(nullptr) {}

GTrace::GTrace(GAutoPtr<GOutStream> stream) : mStream(std::move(stream)) {
    // The log is a help and must not keep a program from starting.
    RunQuietly([this] {
        try {
            ReadPrefs(GTraceFile::GetPath("tpr"));
        } catch (const GException& failure) {
            PSystem::Trace(L"The configuration of the trace log is not used");
            PSystem::Trace(failure.GetFullDescription().GetBuffer(GPlatformEncoding::GetInstance()).GetPtr());
        }
    });
}

GTrace::~GTrace() = default;

GTrace* GTrace::GetInstance() noexcept {
    return sTrace.Get([]() -> GTrace* { return nullptr; });
}

void GTrace::SetInstance(GTrace* trace) {
    Install(trace);
    sTrace.Set(trace);
}

void GTrace::TraceAssert(const char* message, const GCodeLocation& where) {
    Trace(cAssertCategory, GetBufferFromData(message), where);
}

void GTrace::ReadPrefs(const GPathName& path) {
    if (path.IsEmpty() || !GFileSystem::FileExists(path)) return;
    const GTrustedFolder folder(path.GetBranch(), false);
    GFileInStream stream(GSharedObject<GFile>(folder.OpenToRead(path.GetLeaf()).release()));
    mSettings.Read(stream);
}

bool GTrace::GetNeedsLogging(const GBuffer& category) const {
    return mSettings.GetNeedsLogging(category);
}

bool GTrace::GetAlertOnLog(const GBuffer& category) const {
    return mSettings.GetAlertOnLog(category);
}

void GTrace::SetAssertCallback(GCallbackAssert* callback) {
    if (callback != mCallback.get()) mCallback.reset(callback);
}

bool GTrace::Enter() noexcept {
    return mDepth++ == 0;
}

void GTrace::Leave() noexcept {
    --mDepth;
}

void GTrace::TraceEntry(const GBuffer& category, const GCodeLocation& where, const GBuffer& message) {
    const Inside inside(*this);
    if (!inside.IsFirst()) return;
    mLastLogged = GetNeedsLogging(category);
    if (mLastLogged) TraceSelf(category, where, message);
}

void GTrace::TraceSelf(const GBuffer& category, const GCodeLocation& where, const GBuffer& message) {
    GBuffer entry("\n");
    for (std::int32_t i = 0; i < mIndentLevel; ++i) entry += mSettings.GetIndent();
    entry += mSettings.GetPrefix();
    entry += category;
    entry += ' ';
    if (mSettings.GetLogLocation()) entry += ComposeLocation(where) += ' ';
    if (mSettings.GetLogTime()) entry += TimeOfDay() += ' ';
    entry += message;
    GOutStream& stream = GetStream();
    stream.Write(entry);
    stream.Flush();
}

GBuffer GTrace::ComposeLocation(const GCodeLocation& where) {
    GBuffer text;
    if (where.GetFile() != nullptr) text += LeafOf(where.GetFile());
    text += ':';
    text += GBuffer(where.GetLine());
    if (where.GetFunction() != nullptr) {
        text += '@';
        text += where.GetFunction();
    }
    return text;
}

GOutStream& GTrace::GetStream() {
    if (!mStream)
        mStream = std::make_unique<GTraceFile>(GTraceFile::GetPath("tra"), mSettings.GetAlwaysUseNewFile());
    return *mStream;
}

void GTrace::TraceStreamData(GInStream* stream, long count) {
    const Inside inside(*this);
    if (!inside.IsFirst() || !mLastLogged || stream == nullptr) return;
    const std::unique_ptr<GInStream> reader(stream->CreateClone());
    GBuffer chunk;
    while (count > 0 && reader->Read(chunk, std::min(count, GStreamSupport::cCopyChunk)) > 0) {
        GetStream().Write(chunk);
        count -= chunk.GetLength();
    }
}
