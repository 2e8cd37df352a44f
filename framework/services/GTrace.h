#pragma once

#include <cstdint>
#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/memory/GAutoPtr.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"
#include "framework/core/trace/GCallbackAssert.h"
#include "framework/core/trace/GTraceLog.h"
#include "framework/services/GTraceSettings.h"

class GInStream;
class GOutStream;

/// GTrace: writes the trace log, a text file for developers and administrators.
///
/// The log is off until a configuration (GTraceSettings) switches categories on: the file
/// `QuillonDebug\MODULE.tpr` in the global temporary folder, MODULE being the name of this library or
/// program. It is read once, when the object is made; where there is no temporary folder, none is read.
/// Folder and files are used only as far as GTrustedFolder trusts them; a configuration that is not is
/// named in the debugger's output.
/// The log is "MODULE.tra" beside it (GTraceFile), made with the first entry.
///
/// An entry is a line feed, the indent text as often as the level says, the prefix, the category, the
/// place in the source, the time of day and the message; texts are in the platform's 8-bit encoding.
/// The log begins with an empty line, and its last line is not ended.
///
/// What cannot be opened or written is thrown at whoever traces; what a full disk does not take is
/// lost. No lock: see GTraceLog.
class QUILLON_EXPORT GTrace : public GTraceLog {
public:
    /// Writes into its own file. Making it never fails for what the system refuses.
    GTrace();
    /// Writes into that stream instead, and opens no file.
    explicit GTrace(GAutoPtr<GOutStream> stream);
    ~GTrace() override;

    /// The log that the framework's start has installed; null when there is none.
    static GTrace* GetInstance() noexcept;
    /// Takes ownership and deletes the one before. Not while another thread traces.
    static void SetInstance(GTrace* trace);
    /// Logs under "AssertAS", when there is a log.
    static void TraceAssert(const char* message, const GCodeLocation& where = GCodeLocation::Here());
    ///@{ A copy of the bytes; null is no bytes.
    static GBuffer GetBufferFromData(const GBuffer& data) { return data; }
    static GBuffer GetBufferFromData(char* data) { return GBuffer(static_cast<const char*>(data)); }
    static GBuffer GetBufferFromData(const char* data) { return GBuffer(data); }
    ///@}

    bool GetNeedsLogging(const GBuffer& category) const override;
    bool GetAlertOnLog(const GBuffer& category) const override;
    void AddIndent() noexcept override { ++mIndentLevel; }
    void RemoveIndent() noexcept override { --mIndentLevel; }

    /// Whether the last entry was written, on which TraceStreamData() depends.
    void SetLastLogged(bool logged) noexcept { mLastLogged = logged; }
    /// Copies up to `count` bytes from where the stream stands into the log, unchanged and with nothing
    /// around them, when the last entry was written. The stream stays where it is: a clone is read.
    void TraceStreamData(GInStream* stream, long count);

    /// Null by default. The log itself never calls it.
    GCallbackAssert* GetAssertCallback() const noexcept { return mCallback.get(); }
    /// Takes ownership and deletes the one before.
    void SetAssertCallback(GCallbackAssert* callback);

private:
    class Inside;

    void TraceEntry(const GBuffer& category, const GCodeLocation& where, const GBuffer& message) override;
    bool Enter() noexcept override;
    void Leave() noexcept override;

    void ReadPrefs(const GPathName& path);
    void TraceSelf(const GBuffer& category, const GCodeLocation& where, const GBuffer& message);
    static GBuffer ComposeLocation(const GCodeLocation& where);
    GOutStream& GetStream();

    GTraceSettings mSettings;
    std::unique_ptr<GOutStream> mStream;  // null until the first entry
    std::unique_ptr<GCallbackAssert> mCallback;
    std::int32_t mIndentLevel = 0;
    std::uint32_t mDepth = 0;
    bool mLastLogged = false;
};
