#include "framework/services/GVariableMgr.h"

#include <cstdio>
#include <iterator>

#include "framework/core/variables/GVariableText.h"
#include "framework/files/GFileSystem.h"
#include "framework/system/PSystem.h"

namespace {

using Kind = GVariableText::Kind;

constexpr const char* cNames[] = {
    "%Date%",          "%Time%", "%User Name%", "%User Company%",          "%Desktop%",    "%My Documents%",
    "%Program Files%", "%Temp%", "%Unique ID%", "%Current Document Name%", "%System Disk%"};
static_assert(std::size(cNames) == GVariableMgr::cSystemDisk + 1);

}  // namespace

GVariableMgr::GVariableMgr(bool fileNameFriendly, VariableCategories categories)
    : mFileNameFriendly(fileNameFriendly) {
    SelectVars(categories);
}

GVariableMgr::~GVariableMgr() = default;

void GVariableMgr::SelectVars(VariableCategories categories) {
    mSelected.Clear();
    if (categories == cPlain || categories == cAll) AddNonPathVars();
    if (categories == cPaths || categories == cAll) AddPathVars();
}

void GVariableMgr::AddNonPathVars() {
    for (const Variables variable : {cDate, cTime, cUserName, cUserCompany, cUniqueID, cCurrentDocumentName})
        SelectVar(variable);
}

void GVariableMgr::AddPathVars() {
    for (const Variables variable : {cDesktop, cMyDocuments, cProgramFiles, cTemp, cSystemDisk})
        SelectVar(variable);
}

void GVariableMgr::SelectVar(Variables variable) {
    mSelected.Set(cNames[variable], variable);
}

void GVariableMgr::DeselectVar(Variables variable) {
    mSelected.Remove(cNames[variable]);
}

bool GVariableMgr::IsPathVar(Variables variable) noexcept {
    return (variable >= cDesktop && variable <= cTemp) || variable == cSystemDisk;
}

bool GVariableMgr::IsPathVar(const GString& name) const {
    const Variables* const variable = mSelected.Find(name);
    return variable != nullptr && IsPathVar(*variable);
}

bool GVariableMgr::GetVar(const GString& name, GString& value) const {
    if (const Variables* const variable = mSelected.Find(name)) {
        GetValue(*variable, value);
        return true;
    }
    if (GetCustomVariable(name, value)) return true;
    value = name;
    return false;
}

void GVariableMgr::GetVars(GDict<GString, GString>& values) const {
    values.Clear();
    for (const auto& entry : mSelected) GetValue(entry.GetValue(), values.GetOrInsert(entry.GetKey()));
}

void GVariableMgr::GetVars(GTable<GString>& names) const {
    names.Clear();
    for (const auto& entry : mSelected) names.Append(entry.GetKey());
}

void GVariableMgr::GetValue(Variables variable, GString& value) const {
    using Source = void (GVariableMgr::*)(GString&) const;
    static constexpr Source cSources[] = {
        &GVariableMgr::GetDate,         &GVariableMgr::GetTime,
        &GVariableMgr::GetUserName,     &GVariableMgr::GetUserCompany,
        &GVariableMgr::GetDesktop,      &GVariableMgr::GetMyDocuments,
        &GVariableMgr::GetProgramFiles, &GVariableMgr::GetTemp,
        &GVariableMgr::GetUniqueID,     &GVariableMgr::GetCurrentDocumentName,
        &GVariableMgr::GetSystemDisk};
    static_assert(std::size(cSources) == std::size(cNames));
    constexpr long cNoLimit = 0;
    constexpr unsigned short cReplacement = '_';
    (this->*cSources[variable])(value);
    if (mFileNameFriendly && !IsPathVar(variable))
        GPathName::CreateValidFileName(value, cNoLimit, cReplacement);
}

bool GVariableMgr::ExpandVars(const GString& in, GString& out) const {
    const unsigned short separator = PSystem::GetPathSeparator();
    GString expanded;
    GString piece;
    bool endsPath = false;  // a separator has just been written behind a path
    GVariableText text(in);
    out.Clear();
    for (Kind kind = Kind::cText; text.Next(kind, piece);) {
        if (kind == Kind::cError) return false;
        if (kind == Kind::cText) {
            if (endsPath && piece[0] == separator) piece.Remove(0, 1);
            endsPath = false;
            expanded += piece;
            continue;
        }
        GString value;
        if (!GetVar(piece, value)) return false;
        endsPath = IsPathVar(piece);
        if (endsPath && value[value.GetLength() - 1] != separator) value += separator;
        expanded += value;
    }
    out.Swap(expanded);
    return true;
}

void GVariableMgr::ExtractVars(const GString& text, GTable<GString>& names) const {
    GVariableText pieces(text);
    GString piece;
    names.Clear();
    for (Kind kind = Kind::cText; pieces.Next(kind, piece);)
        if (kind == Kind::cVariable) names.Append(piece);
}

GDateTime GVariableMgr::GetDateTime() const {
    return GDateTime(true);
}

void GVariableMgr::GetDate(GString& value) const {
    char text[40];
    const GDateTime now = GetDateTime();
    long day = now.GetDay();
    long month = now.GetMonth();
    long year = now.GetYear();
    long hour = now.GetHour();
    long minute = now.GetMinute();
    long second = now.GetSecond();
    GDateTime::TranslateUTCToLocal(day, month, year, hour, minute, second, now.GetRelationToUTC(),
                                   now.GetOffsetHours(), now.GetOffsetMinutes());
    std::snprintf(text, sizeof text, "%.4ld-%.2ld-%.2ld", year, month, day);
    value = text;
}

void GVariableMgr::GetTime(GString& value) const {
    GetDateTime().GetTimeAsString(value, true, GString());
}

void GVariableMgr::GetUserName(GString& value) const {
    PSystem::GetLogonName(value);
}

void GVariableMgr::GetUserCompany(GString& value) const {
    value.Clear();
}

void GVariableMgr::GetCurrentDocumentName(GString& value) const {
    value.Clear();
}

void GVariableMgr::GetUniqueID(GString& value) const {
    value.Clear();
}

void GVariableMgr::GetDesktop(GString& value) const {
    value = GFileSystem::GetDesktopFolder().GetNativePathString();
}

void GVariableMgr::GetMyDocuments(GString& value) const {
    value = GFileSystem::GetUserDocumentsFolder().GetNativePathString();
}

void GVariableMgr::GetProgramFiles(GString& value) const {
    value = GFileSystem::GetApplicationsFolder().GetNativePathString();
}

void GVariableMgr::GetTemp(GString& value) const {
    value = GFileSystem::GetSpecialPath(GSpecialPath::cGlobalTemp).GetNativePathString();
}

void GVariableMgr::GetSystemDisk(GString& value) const {
    value = GFileSystem::GetGlobalSystemFolder().GetRootPath().GetNativePathString();
}

bool GVariableMgr::GetCustomVariable(const GString&, GString&) const {
    return false;
}
