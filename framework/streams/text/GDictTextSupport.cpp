#include "framework/streams/text/GDictTextSupport.h"

#include "framework/core/containers/GDictUtil.h"
#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/text/GStringSupport.h"
#include "framework/streams/text/GBin2TextStream.h"

namespace {

constexpr const char* cBegin = "#BEGINDICT";
constexpr const char* cEnd = "#ENDDICT";

GString Quoted(GString text) {
    GStringSupport::QuoteString(text);
    return text;
}

void PassRestOfLine(GBin2TextStream& stream) {
    GString rest;
    stream.ReadLine(rest);
}

/// A line that begins with anything but a quoted key.
bool ReadsAsEnd(GBin2TextStream& stream) {
    GString token;
    if (!stream.ReadToken(token) || token[0] != '#') return false;
    PassRestOfLine(stream);
    return true;
}

}  // namespace

void GDictTextSupport::Write(const GDict<GBuffer, GString>& dict, GString& text) {
    const GString lineEnd = GDictUtil::GetEOLString();
    GString written = GString(cBegin) + lineEnd;
    for (const auto& entry : dict) {
        written += Quoted(GString(entry.GetKey(), GASCIIEncoding::GetInstance()));
        written += GString(" ");
        written += Quoted(entry.GetValue());
        written += lineEnd;
    }
    written += GString(cEnd);
    written += lineEnd;
    text.Swap(written);
}

bool GDictTextSupport::Read(GBin2TextStream& stream, GDict<GBuffer, GString>& dict) {
    dict.Clear();
    stream.SkipWhiteSpaceAndLineEnds();
    GString token;
    if (!stream.ReadToken(token) || token != GString(cBegin)) return false;
    stream.SkipWhiteSpaceAndLineEnds();
    for (;;) {
        stream.SkipWhiteSpace();
        GString key;
        if (!stream.ReadQuotedString(key)) return ReadsAsEnd(stream);
        stream.SkipWhiteSpace();
        GString value;
        if (!stream.ReadQuotedString(value)) return false;
        PassRestOfLine(stream);
        dict.Set(key.GetBuffer(GASCIIEncoding::GetInstance()), value);
    }
}
