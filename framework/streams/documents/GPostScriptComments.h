#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/text/GString.h"

class GInStream;

/// GPostScriptComments: what a PostScript document says of itself in its structuring comments (PostScript
/// Language Document Structuring Conventions, version 3.0), and whether it is whole.
///
/// The document may stand behind Ctrl-D or printer job language, and may be the PostScript part of an EPS
/// file with a binary header. Its first 256 KiB and last 64 KiB are looked at and no more, so that any data
/// is done with soon. Nothing in the data is taken for granted: what makes no sense counts as not there.
struct QUILLON_EXPORT GPostScriptComments {
    static constexpr std::int32_t cUnknown = -1;  ///< of pages and copies: not told, or not sensible
    static constexpr long cMaxTitle = 1024;       ///< bytes; the rest of a longer title is left out

    /// Reads them wherever `source` stands, which does not move: clones of it are read, up to the end
    /// when its length is not known otherwise. What they throw passes through.
    static GPostScriptComments Read(const GInStream& source);

    bool isPostScript = false;  ///< whether the data is PostScript at all; without it nothing else is told
    /// Empty when there is none. UTF-16 behind a byte-order mark, UTF-8 or else Windows-1252. May hold
    /// control characters.
    GString title;
    std::int32_t pages = cUnknown;  ///< as "%%Pages" tells, at the start or the end
    /// How often each page is to be printed: what `numcopies` among the requirements says, or else the
    /// last `/#copies` or `/NumCopies` before the first page.
    std::int32_t copies = cUnknown;
    /// The last line is "%%EOF". White space, zeros, Ctrl-D and printer job language may follow it. True
    /// for data that is no PostScript, too.
    bool isComplete = false;
};
