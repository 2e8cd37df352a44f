#pragma once

#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"

/// JobPath: where the file of a print job lies.
struct JobPath {
    /// The name of the job file for a document: the title without the name of the application that
    /// Microsoft Word and Outlook put before it, made a valid file name, its extension replaced by
    /// ".ps". Always one component, whatever the title.
    static GString MakeFileName(const GString& documentName);
    /// The global temporary folder, the logon name of the calling thread's user, the printer name just
    /// as it is, and the file name. A printer name is the administrator's choice; one with separators
    /// makes folders of its own.
    static GPathName MakePath(const GString& printerName, const GString& documentName);
};
