#include "framework/services/GPreferences.h"

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/text/GStringSupport.h"

namespace {

constexpr const char* cSharingGroup = "PrefSharing";
constexpr const char* cTrue = "true";

}  // namespace

// --- Reading -----------------------------------------------------------------------------------

const GString& GPreferences::Get(const GBuffer& group, const GBuffer& key) {
    const GPrefModule* const module = FindModule(group, key);
    return module != nullptr ? module->Get(group, key) : GString::cEmptyString;
}

const GString& GPreferences::GetNonSharedPref(const GBuffer& group, const GBuffer& key) {
    const GPrefModule* const module = FindNonShared(group, key);
    return module != nullptr ? module->Get(group, key) : GString::cEmptyString;
}

const GString& GPreferences::Get(long id, const GBuffer& group, const GBuffer& key) {
    return Require(id).Get(group, key);
}

bool GPreferences::Has(const GBuffer& group, const GBuffer& key) {
    for (const GPrefsData& data : sModules)
        if (data.module->Has(group, key)) return true;
    return false;
}

bool GPreferences::Has(long id, const GBuffer& group, const GBuffer& key) {
    return Require(id).Has(group, key);
}

bool GPreferences::GetBool(const GBuffer& group, const GBuffer& key) {
    return Get(group, key) == GString(cTrue);
}

std::int32_t GPreferences::GetInt32(const GBuffer& group, const GBuffer& key) {
    return Get(group, key).GetInt32();
}

double GPreferences::GetReal(const GBuffer& group, const GBuffer& key) {
    return Get(group, key).GetReal();
}

GPathName GPreferences::GetPathName(const GBuffer& group, const GBuffer& key) {
    GPathName path;
    Get(group, key, path);
    return path;
}

GDateTime GPreferences::GetDateTime(const GBuffer& group, const GBuffer& key) {
    GDateTime moment;
    Get(group, key, moment);
    return moment;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, long& value) {
    if (FindModule(group, key) == nullptr) return false;
    value = GetInt32(group, key);
    return true;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, double& value) {
    if (FindModule(group, key) == nullptr) return false;
    value = GetReal(group, key);
    return true;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, bool& value) {
    if (FindModule(group, key) == nullptr) return false;
    value = GetBool(group, key);
    return true;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, GString& value) {
    const GPrefModule* const module = FindModule(group, key);
    if (module != nullptr) value = module->Get(group, key);
    return module != nullptr;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, GPathName& value) {
    GString text;
    if (!Get(group, key, text)) return false;
    SubstituteFromVariables(text, GVariableSubstitution::cPath);
    // An empty path is an empty text; the system's form would make the current folder of it.
    value = text.IsEmpty() ? GPathName() : GPathName::FromNative(text);
    return true;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, GDateTime& value) {
    GString text;
    return Get(group, key, text) &&
           value.SetFromPDFDateTime(text.GetBuffer(GASCIIEncoding::GetInstance())) != 0;
}

GString GPreferences::GetUnscramble(const GBuffer& group, const GBuffer& key) {
    GString text(Get(group, key));
    return GStringSupport::DeScramble(text) ? text : GString();
}

std::int32_t GPreferences::GetUnscrambleInt32(const GBuffer& group, const GBuffer& key) {
    return GetUnscramble(group, key).GetInt32();
}

// --- Writing -----------------------------------------------------------------------------------

void GPreferences::Set(long id, const GBuffer& group, const GBuffer& key, const GString& value) {
    Require(RedirectShared(id, group)).Set(group, key, value);
}

void GPreferences::Set(long id, const GBuffer& group, const GBuffer& key, const char* value) {
    Set(id, group, key, GString(value));
}

void GPreferences::Set(long id, const GBuffer& group, const GBuffer& key, long value) {
    Set(id, group, key, GString(value));
}

void GPreferences::Set(long id, const GBuffer& group, const GBuffer& key, double value) {
    GString text;
    text.SetWithHighPrecision(value);
    Set(id, group, key, text);
}

void GPreferences::Set(long id, const GBuffer& group, const GBuffer& key, bool value) {
    Set(id, group, key, value ? cTrue : "false");
}

void GPreferences::Set(long id, const GBuffer& group, const GBuffer& key, const GPathName& value) {
    GString text = value.IsEmpty() ? GString() : value.GetNativePathString();
    SubstituteToVariables(text, GVariableSubstitution::cPath);
    Set(id, group, key, text);
}

void GPreferences::Set(long id, const GBuffer& group, const GBuffer& key, const GDateTime& value) {
    GBuffer text;
    value.GetAsPDFDateTime(text);
    Set(id, group, key, GString(text, GASCIIEncoding::GetInstance()));
}

void GPreferences::SetScramble(long id, const GBuffer& group, const GBuffer& key, const GString& value) {
    GString text(value);
    GStringSupport::Scramble(text);
    Set(id, group, key, text);
}

void GPreferences::SetScramble(long id, const GBuffer& group, const GBuffer& key, long value) {
    SetScramble(id, group, key, GString(value));
}

void GPreferences::SetIgnoreTemp(long id, const GBuffer& group, const GBuffer& key, const GString& value) {
    Require(RedirectShared(id, group)).SetIgnoreTemp(group, key, value);
}

void GPreferences::Remove(long id, const GBuffer& group, const GBuffer& key) {
    Require(RedirectShared(id, group)).Remove(group, key);
}

void GPreferences::Remove(long id, const GBuffer& group) {
    Require(RedirectShared(id, group)).RemoveGroup(group);
}

// --- Sharing -----------------------------------------------------------------------------------

bool GPreferences::IsPrefSharing(const GBuffer& group) {
    return !(group == cSharingGroup) && GetNonSharedPref(cSharingGroup, group) == GString(cTrue);
}

void GPreferences::SetPrefSharing(long id, const GBuffer& group, bool shares) {
    Set(id, cSharingGroup, group, shares);
}

long GPreferences::RedirectShared(long id, const GBuffer& group) {
    return id == cUserModule && IsPrefSharing(group) ? cSharedModule : id;
}

void GPreferences::CopySharedPreferences() {
    for (const GPrefsData& data : GTable<GPrefsData>(sModules)) {
        GTable<GBuffer> groups;
        data.module->GetGroupPreferences(cSharingGroup, groups);
        for (const GBuffer& group : groups)
            if (data.id != cSharedModule && IsPrefSharing(group)) CopySharedPreferencesGroup(group);
    }
}

void GPreferences::CopySharedPreferencesGroup(const GBuffer& group) {
    GPrefModule& shared = Require(cSharedModule);
    for (const GPrefsData& data : sModules) {
        GTable<GBuffer> keys;
        if (data.id != cSharedModule) data.module->GetGroupPreferences(group, keys);
        for (const GBuffer& key : keys) shared.Set(group, key, GetNonSharedPref(group, key));
    }
}
