#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/services/GPrefsText.h"

class GInStream;

/// GTraceSettings: what the trace log's configuration switches on, and how entries look.
///
/// The configuration is a GPrefsText. Its group "Defaults" sets the fields below by their names; every
/// other group is named after a category and may hold "Log" and "Assert". Booleans are "true", "1",
/// "false" and "0" in any letter case; any other word, and an empty text, changes nothing.
///
/// A category whose name ends in "AS" is one of assertions, in "DE" one of details, otherwise one of
/// plain entries. What no group says is decided by its kind.
class QUILLON_EXPORT GTraceSettings {
public:
    GTraceSettings();

    /// Reads a configuration. Of a damaged one, what stands before the damage counts; a stream that
    /// cannot be read is an empty one. Throws only for want of memory.
    void Read(GInStream& stream);

    /// Whether entries of the category are written.
    bool GetNeedsLogging(const GBuffer& category) const;
    /// Whether entries of the category raise an alert.
    bool GetAlertOnLog(const GBuffer& category) const;
    /// One step of indentation; one blank unless set.
    const GBuffer& GetIndent() const noexcept { return mIndent; }
    /// What stands before each entry; " *** " unless set.
    const GBuffer& GetPrefix() const noexcept { return mPrefix; }
    /// Whether entries tell their place in the source.
    bool GetLogLocation() const noexcept { return mLogLocation; }
    bool GetLogTime() const noexcept { return mLogTime; }  ///< whether entries tell the time of day
    /// Whether each start begins a new file.
    bool GetAlwaysUseNewFile() const noexcept { return mAlwaysUseNewFile; }

private:
    enum class Kind : std::uint8_t { cLog, cAssert, cDetail };

    static Kind GetCatType(const GBuffer& category) noexcept;
    static void SetDefaultBool(const GPrefsText::Values& values, const char* key, bool& value);
    static void SetDefaultBuffer(const GPrefsText::Values& values, const char* key, GBuffer& value);
    void ReadDefaults(const GPrefsText::Values& values);
    void ReadCategory(const GBuffer& category, const GPrefsText::Values& values);
    bool LogsByDefault(Kind kind) const noexcept;
    bool AlertsByDefault(Kind kind) const noexcept;

    static constexpr std::uint8_t cLogs = 1;
    static constexpr std::uint8_t cAlerts = 2;

    GDict<GBuffer, std::uint8_t> mCategories;
    bool mLog = false;
    bool mLogAssert = false;
    bool mLogDetail = false;
    bool mAssertOnLog = false;
    bool mAssertOnAssert = false;
    bool mAssertOnDetail = false;
    bool mAlwaysUseNewFile = false;
    GBuffer mIndent;
    GBuffer mPrefix;
    bool mLogLocation = true;
    bool mLogTime = true;
};
