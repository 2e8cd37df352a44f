#pragma once

#include "framework/core/GExport.h"
#include "framework/core/paths/GPathName.h"
#include "framework/services/GPrefsText.h"

class GEncoding;
class GInStream;

/// GPrefsFile: a GPrefsText in a file.
struct QUILLON_EXPORT GPrefsFile {
    static constexpr long cMaxLength = 64 << 20;  ///< bytes; a larger file is no such text

    /// Reads a text in `encoding`, or in the one that its byte-order mark names. Clears `groups` first;
    /// false for a damaged one, and for more than `maxLength` bytes, of which nothing is read: see
    /// GPrefsText::Read(). Throws what the stream throws.
    static bool Read(GInStream& stream, const GEncoding* encoding, GPrefsText::Groups& groups,
                     long maxLength = cMaxLength);
    /// The same from a file, which must be there.
    static bool Read(const GPathName& path, const GEncoding* encoding, GPrefsText::Groups& groups);
    /// Writes the file anew, with the folders that are missing. A reader finds the old file or the new
    /// one, whole: the text is written beside it ("NAME (new)"), put on the disk and then takes its
    /// place. Waits up to a third of a second for others who read or write it. UTF-16 begins with a
    /// byte-order mark. When it throws, the old file is as it was.
    static void Write(const GPathName& path, const GEncoding* encoding, const GPrefsText::Groups& groups);
    /// Gives a file that could not be read whole the name "NAME (damaged)", or with the first free
    /// number "NAME (damaged 2)"; the new path.
    static GPathName SetAside(const GPathName& path);
};
