#pragma once

#include <vector>

#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"

/// JobPath: where the file of a print job lies: in the global temporary folder, in a folder of the user and
/// one of the printer.
class JobPath {
public:
    /// For the calling thread's user, whose name is empty when the system does not tell it.
    JobPath(const GString& printerName, const GString& documentName);

    const GString& GetUserName() const { return mUserName; }
    const GPathName& GetTempFolder() const { return mTempFolder; }
    /// The folders of the user and of the printer, from the temporary folder down, by their names. A
    /// printer name with separators of either kind makes several. Throws GExceptionID::cInvalidPath for a
    /// name that leads out of the folder that it is in, stands for a device, or is none that Windows takes
    /// for a folder, and when there is no temporary folder.
    std::vector<GString> GetFolders() const;
    /// The title without the name of the application that Microsoft Word and Outlook put before it, made a
    /// valid file name, its extension replaced by ".ps". Always one component, whatever the title.
    const GString& GetFileName() const { return mFileName; }
    /// All of it, with the printer name just as it is.
    GPathName GetPath() const;

private:
    GPathName mTempFolder;
    GString mUserName;
    GString mPrinterName;
    GString mFileName;
};
