// The table of modules and what is done to all of them.
#include <memory>

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/files/GFileSystem.h"
#include "framework/services/GPrefFileModule.h"
#include "framework/services/GPreferences.h"

GTable<GPreferences::GPrefsData> GPreferences::sModules;
GTable<GVariableSubstitution*> GPreferences::sVariableSubstitutors;
GSharedObject<const GEncoding> GPreferences::sEncoding;

namespace {

template <class Module>
std::unique_ptr<GPrefModule> Open(long folder, const GString& leaf, const GEncoding* encoding) {
    GPathName path = GFileSystem::GetSpecialPath(folder);
    path.Append(leaf);
    return std::make_unique<Module>(path, encoding);
}

}  // namespace

void GPreferences::Initialize() {
    Finalize();
    sEncoding = GSharedObject<const GEncoding>(GUTF8Encoding::GetInstance());
}

void GPreferences::Finalize() {
    for (const GPrefsData& data : sModules) Release(data);
    GTable<GPrefsData>().Swap(sModules);
    for (const GVariableSubstitution* const substitution : sVariableSubstitutors) delete substitution;
    GTable<GVariableSubstitution*>().Swap(sVariableSubstitutors);
    sEncoding = GSharedObject<const GEncoding>();
}

void GPreferences::Release(const GPrefsData& data) {
    if (data.owned) delete data.module;
}

GPrefModule* GPreferences::GetPrefModule(long id) {
    for (const GPrefsData& data : sModules)
        if (data.id == id) return data.module;
    return nullptr;
}

GPrefModule& GPreferences::Require(long id) {
    GPrefModule* const module = GetPrefModule(id);
    if (module == nullptr) throw GSimpleException(GExceptionID::cInvalidParameter);
    return *module;
}

GPrefModule* GPreferences::FindNonShared(const GBuffer& group, const GBuffer& key) {
    for (const GPrefsData& data : sModules)
        if (data.id != cSharedModule && data.module->Has(group, key)) return data.module;
    return nullptr;
}

GPrefModule* GPreferences::FindModule(const GBuffer& group, const GBuffer& key) {
    if (!IsPrefSharing(group)) return FindNonShared(group, key);
    GPrefModule* const shared = GetPrefModule(cSharedModule);
    return shared != nullptr && shared->Has(group, key) ? shared : nullptr;
}

void GPreferences::SetPrefModule(long id, GPrefModule* module, bool owned) {
    std::unique_ptr<GPrefModule> owner(owned ? module : nullptr);
    if (module == nullptr) throw GSimpleException(GExceptionID::cInvalidParameter);
    const GPrefsData entry = {static_cast<std::int32_t>(id), module, owned};
    long position = 0;
    while (position < sModules.GetCount() && sModules[position].id > id) ++position;
    if (position < sModules.GetCount() && sModules[position].id == id) {
        if (sModules[position].module != module) Release(sModules[position]);
        sModules[position] = entry;
    } else {
        sModules.Insert(position, entry);
    }
    (void)owner.release();
}

void GPreferences::RemovePrefModule(long id) {
    for (long position = 0; position < sModules.GetCount(); ++position) {
        if (sModules[position].id != id) continue;
        Release(sModules[position]);
        sModules.Remove(position);
        return;
    }
}

void GPreferences::SetDefaultModules(const GString& name, PrefDefaultModule flags) {
    if (!sEncoding) Initialize();
    const GString userFile = name + GString(".uprefs");
    const GString systemFile = name + GString(".sprefs");
    const auto install = [](long id, std::unique_ptr<GPrefModule> module) {
        SetPrefModule(id, module.release(), true);
    };
    if ((flags & cUserBit) != 0)
        install(cUserModule,
                Open<GPrefFileModule>(GSpecialPath::cUserPreferences, userFile, sEncoding.Get()));
    if ((flags & cSharedBit) != 0)
        install(cSharedModule, Open<GPrefSharedFileModule>(GSpecialPath::cUserPreferences, "Quillon.uprefs",
                                                           GUnicodeEncoding::GetInstance()));
    if ((flags & cSystemBit) != 0)
        install(cSystemModule,
                Open<GPrefFileModule>(GSpecialPath::cGlobalPreferences, systemFile, sEncoding.Get()));
    if ((flags & cDefaultsBit) != 0) install(cDefaultsModule, std::make_unique<GPrefMemoryModule>());
}

void GPreferences::UpdatePreferencesWith(const GTable<GPair<long, const GPrefModule*>>& modules) {
    for (const auto& pair : modules) Require(pair.GetFirst()).UpdateWith(pair.GetSecond());
}

void GPreferences::StartUsingTempModules() {
    for (const GPrefsData& data : sModules) data.module->StartUsingTempModule();
}

void GPreferences::EndUsingTempModules(bool keep) {
    for (const GPrefsData& data : sModules) data.module->EndUsingTempModule(keep);
}

void GPreferences::FlushPrefs() {
    GFirstFailure failure;
    for (const GPrefsData& data : sModules) failure.Run([&] { data.module->FlushPrefs(); });
    failure.Throw();
}

void GPreferences::Refresh() {
    GFirstFailure failure;
    for (const GPrefsData& data : sModules) failure.Run([&] { data.module->Refresh(); });
    failure.Throw();
}

bool GPreferences::IsDirty() {
    for (const GPrefsData& data : sModules)
        if (data.module->IsDirty()) return true;
    return false;
}

void GPreferences::SetEncoding(const GEncoding* encoding) {
    if (encoding == nullptr) throw GSimpleException(GExceptionID::cInvalidParameter);
    sEncoding = GSharedObject<const GEncoding>(encoding);
}

void GPreferences::AddVariableSubstitution(GVariableSubstitution* substitution) {
    std::unique_ptr<GVariableSubstitution> owner(substitution);
    if (!owner) throw GSimpleException(GExceptionID::cInvalidParameter);
    sVariableSubstitutors.Append(substitution);
    (void)owner.release();
}

bool GPreferences::WillSubstituteVariablesInPrefType(GVariableSubstitution::StringType type) {
    for (const GVariableSubstitution* const substitution : sVariableSubstitutors)
        if (substitution->WillProcessStringTypes(type)) return true;
    return false;
}

void GPreferences::SubstituteToVariables(GString& text, GVariableSubstitution::StringType type) {
    for (const GVariableSubstitution* const substitution : sVariableSubstitutors)
        if (substitution->WillProcessStringTypes(type)) substitution->ToVariables(text);
}

void GPreferences::SubstituteFromVariables(GString& text, GVariableSubstitution::StringType type) {
    for (const GVariableSubstitution* const substitution : sVariableSubstitutors)
        if (substitution->WillProcessStringTypes(type)) substitution->FromVariables(text);
}
