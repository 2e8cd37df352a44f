#pragma once

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GEncoding.h"
#include "framework/core/memory/GSharedObject.h"
#include "framework/core/text/GString.h"
#include "framework/streams/GBufferedInStream.h"
#include "framework/streams/GHeldStream.h"

/// GBin2TextStream: reads text, by tokens or as UTF-16 bytes, from the bytes of a source stream.
///
/// The source is taken line by line: it always stands behind the last line that was touched. Line
/// ends are CR LF, CR and LF. White space is the framework's set (8, 9, 11, 32 and the line ends).
/// A byte-order mark at the start of the data is not part of the text. Bytes that are not valid in
/// the encoding end the text where they stand. One thread at a time.
class QUILLON_EXPORT GBin2TextStream : public GInStream {
public:
    /// From a reference the source is borrowed and outlives this stream, from a pointer it is owned.
    /// `encoding` is shared and not null (that throws
    /// GExceptionID::cInvalidParameter).
    GBin2TextStream(GHeldStream<GBufferedInStream> source, const GEncoding* encoding);
    /// Clones the source and stands at the same place of the text.
    GBin2TextStream(const GBin2TextStream& other);
    GBin2TextStream& operator=(const GBin2TextStream&) = delete;
    ~GBin2TextStream() override;

    /// Skips white space on the line, then reads up to the next white space. False, with `token`
    /// empty, when the line or the text ends first.
    bool ReadToken(GString& token);
    /// Reads a string in double quotes that begins right here and ends on this line, with its escapes
    /// undone. False, with `text` empty and nothing read, when there is none.
    bool ReadQuotedString(GString& text);
    /// Reads the rest of the line and its line end, which is not part of `line`. False, with `line`
    /// empty, at the end of the text.
    bool ReadLine(GString& line);
    /// Skips white space up to the end of the line at most.
    void SkipWhiteSpace();
    /// Skips white space and line ends.
    void SkipWhiteSpaceAndLineEnds();
    /// True when no text is left.
    bool IsAtEnd();

    /// An own source (a clone of this one's), standing at the same place of the text. Throws
    /// GExceptionID::cGeneral when the source's clone cannot step back.
    GBin2TextStream* CreateClone() const override;
    /// The text as UTF-16 bytes in machine order. A token or line that is read after half a unit
    /// begins behind that unit.
    long Read(GBuffer& out, long maxBytes) override;
    void Reset() override;

private:
    bool FetchLine();
    bool FetchRawLine(GBuffer& line);
    bool HasUnit();
    void DropHalfUnit();
    unsigned short GetUnit(long position) const { return mLine.GetWordAt(position); }
    long FindClosingQuote() const;
    GBuffer GetUnits(long start, long end) const;

    GHeldStream<GBufferedInStream> mSource;
    GSharedObject<const GEncoding> mEncoding;
    GBuffer mLine;                // the line being read, UTF-16, with its line end
    std::int32_t mUnitCount = 0;  // units in mLine
    std::int32_t mPosition = 0;   // the next unit
    bool mAtStart = true;         // a byte-order mark may follow
    bool mHalfTaken = false;      // Read has delivered the first byte of the next unit
    bool mEnded = false;          // the source is exhausted or not valid in the encoding
};
