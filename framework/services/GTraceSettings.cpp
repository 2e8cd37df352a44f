#include "framework/services/GTraceSettings.h"

#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/services/GPrefsFile.h"

namespace {

// Far more than anybody writes by hand: what is larger is no configuration.
constexpr long cMaxLength = 1 << 20;

GString ToUpper(GString text) {
    text.ToUpper();
    return text;
}

}  // namespace

GTraceSettings::GTraceSettings() : mIndent(" "), mPrefix(" *** ") {}

void GTraceSettings::Read(GInStream& stream) {
    GPrefsText::Groups groups;
    GPrefsFile::Read(stream, GPlatformEncoding::GetInstance(), groups, cMaxLength);
    const GBuffer defaults("Defaults");
    if (const GPrefsText::Values* const values = groups.Find(defaults)) ReadDefaults(*values);
    groups.Remove(defaults);
    for (const auto& group : groups) ReadCategory(group.GetKey(), group.GetValue());
}

void GTraceSettings::ReadDefaults(const GPrefsText::Values& values) {
    SetDefaultBool(values, "Log", mLog);
    SetDefaultBool(values, "LogAssert", mLogAssert);
    SetDefaultBool(values, "LogDetail", mLogDetail);
    SetDefaultBool(values, "AssertOnLog", mAssertOnLog);
    SetDefaultBool(values, "AssertOnAssert", mAssertOnAssert);
    SetDefaultBool(values, "AssertOnDetail", mAssertOnDetail);
    SetDefaultBuffer(values, "Indent", mIndent);
    SetDefaultBuffer(values, "Prefix", mPrefix);
    SetDefaultBool(values, "LogLocation", mLogLocation);
    SetDefaultBool(values, "LogTime", mLogTime);
    SetDefaultBool(values, "AlwaysUseNewFile", mAlwaysUseNewFile);
}

void GTraceSettings::ReadCategory(const GBuffer& category, const GPrefsText::Values& values) {
    bool logs = LogsByDefault(GetCatType(category));
    bool alerts = AlertsByDefault(GetCatType(category));
    SetDefaultBool(values, "Log", logs);
    SetDefaultBool(values, "Assert", alerts);
    mCategories.Set(category, static_cast<std::uint8_t>((logs ? cLogs : 0) | (alerts ? cAlerts : 0)));
}

void GTraceSettings::SetDefaultBool(const GPrefsText::Values& values, const char* key, bool& value) {
    const GString* const found = values.Find(key);
    if (found == nullptr) return;
    const GString word = ToUpper(*found);
    if (word == GString("TRUE") || word == GString("1")) value = true;
    if (word == GString("FALSE") || word == GString("0")) value = false;
}

void GTraceSettings::SetDefaultBuffer(const GPrefsText::Values& values, const char* key, GBuffer& value) {
    const GString* const found = values.Find(key);
    if (found != nullptr && !found->IsEmpty()) value = found->GetBuffer(GPlatformEncoding::GetInstance());
}

GTraceSettings::Kind GTraceSettings::GetCatType(const GBuffer& category) noexcept {
    const long length = category.GetLength();
    if (length < 2) return Kind::cLog;
    const unsigned char* const end = category.GetRawData() + length;
    if (end[-2] == 'A' && end[-1] == 'S') return Kind::cAssert;
    return end[-2] == 'D' && end[-1] == 'E' ? Kind::cDetail : Kind::cLog;
}

bool GTraceSettings::LogsByDefault(Kind kind) const noexcept {
    if (kind == Kind::cAssert) return mLogAssert;
    return kind == Kind::cDetail ? mLogDetail : mLog;
}

bool GTraceSettings::AlertsByDefault(Kind kind) const noexcept {
    if (kind == Kind::cAssert) return mAssertOnAssert;
    return kind == Kind::cDetail ? mAssertOnDetail : mAssertOnLog;
}

bool GTraceSettings::GetNeedsLogging(const GBuffer& category) const {
    const std::uint8_t* const flags = mCategories.Find(category);
    return flags != nullptr ? (*flags & cLogs) != 0 : LogsByDefault(GetCatType(category));
}

bool GTraceSettings::GetAlertOnLog(const GBuffer& category) const {
    const std::uint8_t* const flags = mCategories.Find(category);
    return flags != nullptr ? (*flags & cAlerts) != 0 : AlertsByDefault(GetCatType(category));
}
