#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GPair.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"
#include "framework/core/time/GDateTime.h"
#include "framework/services/GPrefModule.h"
#include "framework/services/GVariableSubstitution.h"

/// GPreferences: the settings of a process, in layers of modules that have a number.
///
/// Reading asks the modules from the highest number down until one has the key: the user's own (-3), the
/// system's (-4), the defaults (-5). A group that is marked as shared lies in the shared module (-2)
/// alone, which all programs of a user read and write; the marks are values of the group "PrefSharing".
/// What is meant for the user's module in a shared group, writing, removing and defaults alike, goes to
/// the shared one.
///
/// A call that names a module that is not installed throws GSimpleException cInvalidParameter; a shared
/// group without a shared module reads as empty. What files refuse passes through. Not locked: one
/// thread, the one that has set it up.
class QUILLON_EXPORT GPreferences {
public:
    static constexpr long cSharedModule = -2;    ///< "Quillon.uprefs", UTF-16
    static constexpr long cUserModule = -3;      ///< "NAME.uprefs" in the user's preferences folder
    static constexpr long cSystemModule = -4;    ///< "NAME.sprefs" in the global preferences folder
    static constexpr long cDefaultsModule = -5;  ///< in memory

    /// Bits of SetDefaultModules().
    enum PrefDefaultModule : std::int32_t {
        cDefaultsBit = 1,  ///< cDefaultsModule
        cSystemBit = 2,    ///< cSystemModule
        cUserBit = 4,      ///< cUserModule
        cSharedBit = 8,    ///< cSharedModule
    };

    /// Nothing is installed after either; changes that were not written are lost.
    static void Initialize();
    static void Finalize();  ///< called again or without a beginning, it does nothing

    /// @name Reading. A key that nobody has is "", 0, false, the empty path and GDateTime(); the forms
    /// with an output leave that as it was and return false.
    /// @{

    /// The value, valid until the next change.
    static const GString& Get(const GBuffer& group, const GBuffer& key);
    /// From the modules but the shared one, whatever the marks say.
    static const GString& GetNonSharedPref(const GBuffer& group, const GBuffer& key);
    /// From that module alone.
    static const GString& Get(long id, const GBuffer& group, const GBuffer& key);
    /// Whether any module has the key, the shared one included.
    static bool Has(const GBuffer& group, const GBuffer& key);
    /// Whether that module has the key.
    static bool Has(long id, const GBuffer& group, const GBuffer& key);
    /// True for "true", exactly.
    static bool GetBool(const GBuffer& group, const GBuffer& key);
    /// As GString::GetInt32() reads the text.
    static std::int32_t GetInt32(const GBuffer& group, const GBuffer& key);
    /// As GString::GetReal() reads the text.
    static double GetReal(const GBuffer& group, const GBuffer& key);
    /// From the system's own form, with variables replaced by their folders.
    static GPathName GetPathName(const GBuffer& group, const GBuffer& key);
    /// As the form with an output reads it.
    static GDateTime GetDateTime(const GBuffer& group, const GBuffer& key);
    /// As GetInt32().
    static bool Get(const GBuffer& group, const GBuffer& key, long& value);
    /// As GetReal().
    static bool Get(const GBuffer& group, const GBuffer& key, double& value);
    /// As GetBool().
    static bool Get(const GBuffer& group, const GBuffer& key, bool& value);
    /// The text, which may be empty.
    static bool Get(const GBuffer& group, const GBuffer& key, GString& value);
    /// As GetPathName().
    static bool Get(const GBuffer& group, const GBuffer& key, GPathName& value);
    /// False as well for a text that is no date.
    static bool Get(const GBuffer& group, const GBuffer& key, GDateTime& value);
    /// What SetScramble() has written; a text that it has not is empty, or 0.
    static GString GetUnscramble(const GBuffer& group, const GBuffer& key);
    /// The number that SetScramble() has written.
    static std::int32_t GetUnscrambleInt32(const GBuffer& group, const GBuffer& key);
    /// @}

    /// @name Writing, into memory until FlushPrefs(). Numbers are decimal, reals in fixed notation with
    /// up to 15 digits behind the point, dates "D:20140315093000Z", paths in the system's own form.
    /// @{

    /// The text as it is.
    static void Set(long id, const GBuffer& group, const GBuffer& key, const GString& value);
    static void Set(long id, const GBuffer& group, const GBuffer& key, const char* value);  ///< ASCII text
    static void Set(long id, const GBuffer& group, const GBuffer& key, long value);         ///< 32 bits
    static void Set(long id, const GBuffer& group, const GBuffer& key, double value);       ///< see above
    static void Set(long id, const GBuffer& group, const GBuffer& key, bool value);  ///< "true" or "false"
    /// With variables in the place of folders.
    static void Set(long id, const GBuffer& group, const GBuffer& key, const GPathName& value);
    static void Set(long id, const GBuffer& group, const GBuffer& key, const GDateTime& value);  ///< in UTC
    /// Only when the module that would be written to does not have the key.
    template <class Value>
    static void SetDefault(long id, const GBuffer& group, const GBuffer& key, const Value& value) {
        if (!Has(RedirectShared(id, group), group, key)) Set(id, group, key, value);
    }
    /// Keeps the value from the casual eye, no more.
    static void SetScramble(long id, const GBuffer& group, const GBuffer& key, const GString& value);
    /// A number of 32 bits.
    static void SetScramble(long id, const GBuffer& group, const GBuffer& key, long value);
    /// Into the temporary module and the one below it.
    static void SetIgnoreTemp(long id, const GBuffer& group, const GBuffer& key, const GString& value);
    /// A key that is not there is no error.
    static void Remove(long id, const GBuffer& group, const GBuffer& key);
    static void Remove(long id, const GBuffer& group);  ///< all of the group
    /// @}

    /// @name Sharing
    /// @{
    static bool IsPrefSharing(const GBuffer& group);  ///< whether the group is marked as shared
    /// Puts the mark, in that module.
    static void SetPrefSharing(long id, const GBuffer& group, bool shares);
    /// Copies what the other modules say in the shared groups, or in one group, into the shared module.
    static void CopySharedPreferences();
    static void CopySharedPreferencesGroup(const GBuffer& group);  ///< of one group
    /// @}

    /// @name Modules
    /// @{

    /// Installs the module in the place of the one with that number; an owned one is deleted when it is
    /// replaced or removed.
    static void SetPrefModule(long id, GPrefModule* module, bool owned);
    /// Null when there is none.
    static GPrefModule* GetPrefModule(long id);
    static void RemovePrefModule(long id);  ///< a number that is not installed is no error
    /// Installs the standard modules whose bits are set; `name` is the program's. When one cannot be
    /// read, those before it stay.
    static void SetDefaultModules(const GString& name, PrefDefaultModule flags);
    /// Merges each of them into the installed module with its number (GPrefModule::UpdateWith).
    static void UpdatePreferencesWith(const GTable<GPair<long, const GPrefModule*>>& modules);
    /// Of all modules; one that is installed meanwhile has none.
    static void StartUsingTempModules();
    static void EndUsingTempModules(bool keep);  ///< as GPrefModule::EndUsingTempModule()
    /// Writes every module that has changed, and reads every one anew. One that fails keeps no other
    /// from its turn; the first failure is thrown.
    static void FlushPrefs();
    static void Refresh();  ///< as FlushPrefs(); changes that are not written stay
    static bool IsDirty();  ///< whether FlushPrefs() has something to write
    /// Of the files that are not shared and are set up later; UTF-8 at first. Not null.
    static void SetEncoding(const GEncoding* encoding);
    /// @}

    /// @name Variables in paths
    /// @{

    /// Takes ownership.
    static void AddVariableSubstitution(GVariableSubstitution* substitution);
    /// Whether any substitution takes such texts.
    static bool WillSubstituteVariablesInPrefType(GVariableSubstitution::StringType type);
    /// By all substitutions that take such texts, in the order in which they were added.
    static void SubstituteToVariables(GString& text, GVariableSubstitution::StringType type);
    /// The reverse.
    static void SubstituteFromVariables(GString& text, GVariableSubstitution::StringType type);
    /// @}

private:
    struct GPrefsData {
        std::int32_t id = 0;
        GPrefModule* module = nullptr;
        bool owned = false;
    };

    static GPrefModule& Require(long id);
    static GPrefModule* FindNonShared(const GBuffer& group, const GBuffer& key);
    static GPrefModule* FindModule(const GBuffer& group, const GBuffer& key);
    /// The module that a call for `id` works on.
    static long RedirectShared(long id, const GBuffer& group);
    static void Release(const GPrefsData& data);

    static GTable<GPrefsData> sModules;  // by number, the highest first
    static GTable<GVariableSubstitution*> sVariableSubstitutors;
    static GSharedObject<const GEncoding> sEncoding;
};
