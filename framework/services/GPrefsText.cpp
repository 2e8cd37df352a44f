#include "framework/services/GPrefsText.h"

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/streams/text/GBin2TextStream.h"
#include "framework/streams/text/GDictTextSupport.h"
#include "framework/streams/text/GText2BinStream.h"

namespace {

constexpr const char* cBegin = "#BEGINPREFS";
constexpr const char* cEnd = "#ENDPREFS";

bool PassBeginning(GBin2TextStream& stream) {
    GString line;
    GString token;
    while (!stream.IsAtEnd()) {
        stream.SkipWhiteSpaceAndLineEnds();
        const bool begins = stream.ReadToken(token) && token == GString(cBegin);
        stream.ReadLine(line);
        if (begins) return true;
    }
    return false;
}

// A damaged block gives what stood before the damage.
bool ReadGroup(GBin2TextStream& stream, GPrefsText::Values& values) {
    GPrefsText::Values read;
    const bool isWhole = GDictTextSupport::Read(stream, read);
    for (const auto& entry : read) values.Set(entry.GetKey(), entry.GetValue());
    return isWhole;
}

}  // namespace

void GPrefsText::Write(const Groups& groups, GText2BinStream& stream) {
    stream.WriteString(cBegin);
    stream.WriteEOL();
    for (const auto& group : groups) {
        if (group.GetValue().IsEmpty()) continue;
        GString block;
        GDictTextSupport::Write(group.GetValue(), block);
        stream.WriteEOL();
        stream.WriteQuotedString(GString(group.GetKey(), GASCIIEncoding::GetInstance()));
        stream.WriteEOL();
        stream.WriteString(block);
        stream.WriteEOL();
    }
    stream.WriteString(cEnd);
    stream.WriteEOL();
}

bool GPrefsText::Read(GBin2TextStream& stream, Groups& groups) {
    groups.Clear();
    if (!PassBeginning(stream)) return false;
    for (;;) {
        stream.SkipWhiteSpaceAndLineEnds();
        GString name;
        if (!stream.ReadQuotedString(name)) {
            GString token;
            return stream.ReadToken(token) && token == GString(cEnd);
        }
        if (!ReadGroup(stream, groups.GetOrInsert(name.GetBuffer(GASCIIEncoding::GetInstance()))))
            return false;
    }
}
