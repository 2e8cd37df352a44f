#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/text/GString.h"

class GBin2TextStream;
class GText2BinStream;

/// GPrefsText: groups of named values as lines of text, the form of the preference files and of the
/// trace log's configuration.
///
///     #BEGINPREFS
///
///     "Paths"
///     #BEGINDICT
///     "Output" "C:\\Jobs"
///     #ENDDICT
///
///     #ENDPREFS
///
/// Group names and keys are ASCII, values any text. The order means nothing. Each group is in the form
/// of GDictTextSupport.
struct QUILLON_EXPORT GPrefsText {
    using Values = GDict<GBuffer, GString>;  ///< of one group, by their keys
    using Groups = GDict<GBuffer, Values>;   ///< by the groups' names

    /// Groups without values are left out. Throws what the stream throws.
    static void Write(const Groups& groups, GText2BinStream& stream);
    /// Clears `groups` and fills it from the text at the stream's place; what stands before
    /// "#BEGINPREFS" is passed over. Two blocks of one group are one group, in which the later value of
    /// a key counts. False for a text that has no beginning, that breaks off, or that is damaged: what
    /// could be read before that stays in `groups`.
    static bool Read(GBin2TextStream& stream, Groups& groups);
};
