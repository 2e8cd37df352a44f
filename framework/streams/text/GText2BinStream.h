#pragma once

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GEncoding.h"
#include "framework/core/memory/GSharedObject.h"
#include "framework/streams/GHeldStream.h"
#include "framework/streams/GOutStream.h"

class GString;

/// GText2BinStream: writes text into a target stream, as bytes of one encoding.
///
/// Characters that the encoding lacks become the default character. A target that takes fewer bytes than
/// it was given makes every operation throw GExceptionID::cCouldNotWriteFile. One thread at a time.
class QUILLON_EXPORT GText2BinStream : public GOutStream {
public:
    /// From a reference the target is borrowed and outlives this stream, from a pointer it is owned.
    /// `encoding` is shared and not null (that throws
    /// GExceptionID::cInvalidParameter).
    GText2BinStream(GHeldStream<GOutStream> target, const GEncoding* encoding);
    ~GText2BinStream() override;

    void WriteString(const GString& text);  ///< the text as it is, without a line end
    /// The text in double quotes, with tabs, line ends, double quotes and backslashes escaped.
    void WriteQuotedString(const GString& text);
    /// The platform's line end.
    void WriteEOL();

    /// Writes UTF-16 bytes in machine order as text; returns the length of `data`. Half a unit at the
    /// end waits for its other half in the next Write.
    long Write(const GBuffer& data) override;
    void Flush() override;
    void Reset() override;

private:
    GHeldStream<GOutStream> mTarget;
    GSharedObject<const GEncoding> mEncoding;
    GBuffer mHalfUnit;  // empty, or the first byte of a unit
};
