#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/text/GString.h"

class GBin2TextStream;

/// GDictTextSupport: a flat dictionary of named strings as lines of text.
///
///     #BEGINDICT
///     "UserName" "anna"
///     "JobPath" "C:\\jobs\\Q3.ps"
///     #ENDDICT
///
/// Keys are ASCII, values any text; both stand in double quotes with tabs, line ends, double quotes
/// and backslashes escaped. Lines end as the platform's do. The order of the lines means nothing.
struct QUILLON_EXPORT GDictTextSupport {
    /// Replaces `text` with the whole dictionary, the last line end included.
    static void Write(const GDict<GBuffer, GString>& dict, GString& text);
    /// Clears `dict` and fills it from the text that begins at the stream's place, up to and with the
    /// line that ends it: "#ENDDICT", or any other line that begins with '#'. What follows a value on
    /// its line is passed over; the last of equal keys counts. False for malformed text: what was
    /// read before the fault stays in `dict`.
    static bool Read(GBin2TextStream& stream, GDict<GBuffer, GString>& dict);
};
