#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/text/GString.h"
#include "framework/core/time/GDateTime.h"

/// GVariableMgr: puts values in the place of variables in a text, such as a template for file names.
///
/// The form of the variables is that of GVariableText. A program derives from it to supply the user, the
/// company, the document and the unique identifier, and variables of its own. What a folder's look-up
/// throws passes through. One thread at a time.
class QUILLON_EXPORT GVariableMgr {
public:
    /// The variables that it knows by itself.
    enum Variables {
        cDate = 0,             ///< "%Date%", plain: "2014-03-15"
        cTime,                 ///< "%Time%", plain: the short form of the user's locale
        cUserName,             ///< "%User Name%", plain
        cUserCompany,          ///< "%User Company%", plain
        cDesktop,              ///< "%Desktop%", a path
        cMyDocuments,          ///< "%My Documents%", a path
        cProgramFiles,         ///< "%Program Files%", a path
        cTemp,                 ///< "%Temp%", a path
        cUniqueID,             ///< "%Unique ID%", plain
        cCurrentDocumentName,  ///< "%Current Document Name%", plain
        cSystemDisk,           ///< "%System Disk%", a path
    };
    /// Which of them are selected; bits.
    enum VariableCategories : std::int32_t {
        cPlain = 1,  ///< all that are no paths
        cPaths = 2,  ///< the paths
        cAll = 3,    ///< both
    };

    /// With `fileNameFriendly`, plain values are made fit for names of files, with '_' in the place of
    /// what is not; custom values stay as they are given.
    GVariableMgr(bool fileNameFriendly, VariableCategories categories);
    GVariableMgr(const GVariableMgr&) = delete;
    GVariableMgr& operator=(const GVariableMgr&) = delete;
    virtual ~GVariableMgr();

    /// Asks the selected variables, then the custom ones. False, with `value` set to the name, for a name
    /// that nobody knows. Names have their percent signs.
    virtual bool GetVar(const GString& name, GString& value) const;
    /// Replaces the dictionary by the selected variables and their values.
    virtual void GetVars(GDict<GString, GString>& values) const;
    /// Replaces the table by the names of the selected variables.
    virtual void GetVars(GTable<GString>& names) const;

    /// Replaces the selection; any other number selects none.
    void SelectVars(VariableCategories categories);
    /// Replaces every variable in `in` by its value. A path is followed by one separator, also where the
    /// text has one there. False, with `out` empty, for a variable that nobody knows and for a percent
    /// sign without a partner.
    bool ExpandVars(const GString& in, GString& out) const;
    /// Replaces the table by the names of the variables in the text, known or not, in their order.
    void ExtractVars(const GString& text, GTable<GString>& names) const;
    bool IsPathVar(const GString& name) const;  ///< whether it is one of the paths, selected or not

protected:
    /// What the variables stand for. Paths are in the system's own form.
    virtual void GetDate(GString& value) const;
    /// The short form of the user's locale.
    virtual void GetTime(GString& value) const;
    /// What date and time are taken from: now, local.
    virtual GDateTime GetDateTime() const;
    /// PSystem::GetLogonName(); empty when the system does not tell.
    virtual void GetUserName(GString& value) const;
    virtual void GetUserCompany(GString& value) const;          ///< empty here
    virtual void GetCurrentDocumentName(GString& value) const;  ///< empty here
    virtual void GetUniqueID(GString& value) const;             ///< empty here
    virtual void GetDesktop(GString& value) const;              ///< GFileSystem::GetDesktopFolder()
    virtual void GetMyDocuments(GString& value) const;          ///< GFileSystem::GetUserDocumentsFolder()
    virtual void GetProgramFiles(GString& value) const;         ///< GFileSystem::GetApplicationsFolder()
    virtual void GetTemp(GString& value) const;        ///< the special path GSpecialPath::cGlobalTemp
    virtual void GetSystemDisk(GString& value) const;  ///< the root of GFileSystem::GetGlobalSystemFolder()
    /// Here it knows none.
    virtual bool GetCustomVariable(const GString& name, GString& value) const;

    void SelectVar(Variables variable);    ///< adds it to the selection
    void DeselectVar(Variables variable);  ///< takes it out of the selection

private:
    static bool IsPathVar(Variables variable) noexcept;
    void AddNonPathVars();
    void AddPathVars();
    void GetValue(Variables variable, GString& value) const;

    GDict<GString, Variables> mSelected;
    bool mFileNameFriendly;
};
