#include "monitor/spooling/JobPath.h"

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

}  // namespace

GString JobPath::MakeFileName(const GString& documentName) {
    GString name = WithoutApplication(documentName);
    GPathName::CreateValidFileName(name, -1, '_');
    const long dot = name.FindLast('.', name.GetLength() - 1);
    if (dot >= 0) name.SetLength(dot);
    name += GString(".ps");
    return name;
}

GPathName JobPath::MakePath(const GString& printerName, const GString& documentName) {
    GString userName;
    PSystem::GetLogonName(userName);
    GPathName path = GFileSystem::GetSpecialPath(GSpecialPath::cGlobalTemp);
    path.Append(userName);
    path.Append(printerName);
    path.Append(MakeFileName(documentName));
    return path;
}
