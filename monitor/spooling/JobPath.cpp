#include "monitor/spooling/JobPath.h"

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/core/paths/GValidFileName.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GSpecialPath.h"
#include "framework/system/PSystem.h"

namespace {

/// What the applications put before their documents' names; at most one is taken off.
constexpr const char* cApplicationPrefixes[] = {"Microsoft Word - ", "Microsoft Outlook - "};

GString WithoutApplication(const GString& title) {
    for (const char* text : cApplicationPrefixes) {
        const GString prefix(text);
        const long length = prefix.GetLength();
        if (title.GetSubstring(0, length) == prefix) return title.GetSubstring(length, -1);
    }
    return title;
}

GString MakeFileName(const GString& documentName) {
    GString name = WithoutApplication(documentName);
    GPathName::CreateValidFileName(name, -1, '_');
    const long dot = name.FindLast('.', name.GetLength() - 1);
    if (dot >= 0) name.SetLength(dot);
    name += GString(".ps");
    return name;
}

/// The name of a folder as Windows reads it within a path, where it takes off a single dot at the end; it
/// is empty when it stands for the folder around it.
GString FolderNameOf(GPathUnits component) {
    if (GPathText::IsEqual(component, "..")) throw GSimpleException(GExceptionID::cInvalidPath);
    if (component.back() == '.') component = component.first(component.size() - 1);
    if (!component.empty() && !GValidFileName::IsFolderName(component))
        throw GSimpleException(GExceptionID::cInvalidPath);
    return GPathText::MakeString(component);
}

void AddFolders(const GString& text, std::vector<GString>& folders) {
    const GExceptionLocation location(text);
    GString portable;
    GPathName::ConvertNativeToPortable(text, portable);
    const GPathUnits units = GPathText::UnitsOf(portable);
    std::size_t position = 0;
    for (;;) {
        const GPathUnits component = GPathText::NextComponent(units, position);
        if (component.empty()) return;
        GString name = FolderNameOf(component);
        if (!name.IsEmpty()) folders.push_back(std::move(name));
    }
}

}  // namespace

JobPath::JobPath(const GString& printerName, const GString& documentName)
    : mTempFolder(GFileSystem::GetSpecialPath(GSpecialPath::cGlobalTemp)),
      mPrinterName(printerName),
      mFileName(MakeFileName(documentName)) {
    PSystem::GetLogonName(mUserName);
}

std::vector<GString> JobPath::GetFolders() const {
    if (mTempFolder.IsEmpty()) throw GSimpleException(GExceptionID::cInvalidPath);
    std::vector<GString> folders;
    AddFolders(mUserName, folders);
    AddFolders(mPrinterName, folders);
    return folders;
}

GPathName JobPath::GetPath() const {
    GPathName path = mTempFolder;
    path.Append(mUserName);
    path.Append(mPrinterName);
    path.Append(mFileName);
    return path;
}
