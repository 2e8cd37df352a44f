#include "framework/streams/GProgress.h"
#include "framework/streams/GStreamSupport.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

/// Notes what is reported, as "done/total", and cancels at 6 bytes.
struct NotingCentre : GProgressCentre {
    explicit NotingCentre(std::string& notes) : mNotes(notes) {}

    void Report(const GProgress& progress) override {
        mNotes += std::to_string(progress.GetDone()) + "/" + std::to_string(progress.GetTotal()) + " ";
        if (progress.GetDone() == 6) throw GAbortException();
    }
    void Finished(const GProgress&) noexcept override { mNotes += "finished"; }

    std::string& mNotes;
};

TEST(CopyStream, CopiesTheRestOfTheSource) {
    for (const auto& [length, piece] :
         {std::pair(0u, 10L), {102399, 102400}, {102400, 102400}, {102401, 102400}, {250000, 999}}) {
        SCOPED_TRACE(length);
        PieceStream source(Pattern(length), piece);
        GBuffer copy;
        GMemoryOutStream target(copy);
        EXPECT_EQ(GStreamSupport::CopyStream(source, target), static_cast<long long>(length));
        EXPECT_EQ(BytesOf(copy), Pattern(length));
        EXPECT_EQ(source.mLargestRequest, 102400);
    }
}

TEST(CopyStream, ReportsBytesOfATotalIfKnownAndIsCanceledByTheCentre) {
    std::string notes;
    GProgressCentre::SetInstance(new NotingCentre(notes));
    const GBuffer data = BufferOf(Pattern(102400 + 50));
    GMemoryInStream source(data);
    source.Skip(10);
    FullStream target(1000000);
    GStreamSupport::CopyStream(source, target);
    EXPECT_EQ(notes, "0/102440 102400/102440 102440/102440 finished");
    EXPECT_EQ(target.mTaken, BytesOf(data).substr(10));

    notes.clear();
    PieceStream unknown("0123456789", 3);
    FullStream other(100);
    EXPECT_THROW(GStreamSupport::CopyStream(unknown, other), GAbortException);
    EXPECT_EQ(notes, "0/-1 3/-1 6/-1 finished");
    EXPECT_EQ(other.mTaken, "012345");
    GProgressCentre::SetInstance(nullptr);
}

TEST(CopyStream, ThrowsWhenTheTargetIsFull) {
    PieceStream source("0123456789", 4);
    FullStream target(6);
    EXPECT_EQ(ThrownBy([&] { GStreamSupport::CopyStream(source, target); }), 2464);
    EXPECT_EQ(target.mTaken, "012345");
}

TEST(GProgress, TellsItsFraction) {
    for (const auto& [total, done, fraction] :
         {std::tuple(-1, 50, 0.0), {0, 0, 0}, {200, 0, 0}, {200, 50, 0.25}, {200, 200, 1}, {200, 250, 1}}) {
        GProgress progress(total);
        progress.Advance(done);
        EXPECT_EQ(progress.GetFraction(), fraction) << done << " of " << total;
    }
}

TEST(GetContent, CollectsTheRestOfTheSourceOrThrowsWhenItIsMoreThanTheLimit) {
    for (const long length : {0L, 1L, 102400L, 102401L, 300000L}) {
        const std::string rest = Pattern(static_cast<std::size_t>(length));
        const GBuffer data = BufferOf("head" + rest);
        for (const long limit : {0L, length - 1, length, length + 1, long{GBuffer::cMaxLength}}) {
            SCOPED_TRACE(testing::Message() << length << ", at most " << limit);
            if (limit < 0) continue;
            PieceStream pieces("head" + rest, 70000);
            GMemoryInStream memory(data);
            for (GInStream* source : {static_cast<GInStream*>(&pieces), static_cast<GInStream*>(&memory)}) {
                source->Skip(4);
                GBuffer content("as it was");
                const auto get = [&] {
                    EXPECT_EQ(GStreamSupport::GetContent(*source, content, limit), length);
                };
                EXPECT_EQ(ThrownBy(get), length > limit ? 40160 : 0);
                EXPECT_EQ(BytesOf(content), length > limit ? "as it was" : rest);
            }
        }
    }
}

TEST(GetStreamLength, CountsAllDataAndMovesNothing) {
    for (const std::size_t length : {0u, 1u, 2000000u}) {
        SCOPED_TRACE(length);
        const GBuffer data = BufferOf(Pattern(length));
        GMemoryInStream memory(data);
        PieceStream pieces(Pattern(length), 65536);
        memory.Skip(1);
        pieces.Skip(1);
        EXPECT_EQ(GStreamSupport::GetStreamLength(memory), length);
        EXPECT_EQ(GStreamSupport::GetStreamLength(pieces), length);
        EXPECT_EQ(pieces.mPosition, length < 1 ? 0 : 1);
    }
}

// Some stand behind an end of transmission, a preview or printer job language; an icon begins as a
// metafile does, and one of the PNG headers has gone through a transfer as text.
const std::pair<GTypeEnums::Types, std::vector<std::string>> cKinds[] = {
    {GTypeEnums::cNone,
     {"", "\x1B", "ab\1", "\x90\xF8\xFF\xFA", "\x89PNG\n\x1A\n\0"s, "\0\0\1\0\1\0\x20\x20\0\0\0\0\0\0\0\0"s}},
    {GTypeEnums::cText,
     {"Dear Sir,\r\n\tyou\f", "%PDF", "BMW is a make of car", "\xEF\xBB\xBFhello", "\xFF\xFEh\0"s,
      "\xFE\xFF\0h"s, "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2",
      "Gr\xFC\xDF"
      "e aus Wien",
      std::string(1020, 'x') + "%PDF-1.7"}},
    {GTypeEnums::cPostScript,
     {"%!PS-Adobe-3.0\n%%Title: x EPSF-3.0", "%!\nshowpage", "\x04%!PS-Adobe-3.0\n",
      "\x1B%-12345X@PJL\r\n@PJL ENTER LANGUAGE=POSTSCRIPT\r\n%!PS-Adobe-3.0\n",
      "\x1B%-12345X%!PS-Adobe-3.0\n"}},
    {GTypeEnums::cEPS, {"%!PS-Adobe-3.0 EPSF-3.0\n", "\xC5\xD0\xD3\xC6\x1E"}},
    {GTypeEnums::cPrinterJob, {"\x1B%-12345X@PJL ENTER LANGUAGE=PCL\r\n\033E"}},
    {GTypeEnums::cPCL, {"\x1B&l26A", ") HP-PCL XL;2;0"}},
    {GTypeEnums::cPDF, {"%PDF-1.7\n", std::string(1019, 'x') + "%PDF-1.7"}},
    {GTypeEnums::cEMFSpool, {"\0\0\1\0\x20\0\0\0\x10\0\0\0\x18\0\0\0d\0"s}},
    {GTypeEnums::cPNG, {"\x89PNG\r\n\x1A\n\0"s}},
    {GTypeEnums::cJPEG, {"\xFF\xD8\xFF\xE0"}},
    {GTypeEnums::cGIF, {"GIF87a", "GIF89a"}},
    {GTypeEnums::cTIFF, {"II*\0\x08"s, "MM\0*"s}},
    {GTypeEnums::cBMP, {"BM\x36\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0"s}},
    {GTypeEnums::cZip, {"PK\x03\x04"}},
    {GTypeEnums::cXPS, {"PK\x03\x04....FixedDocSeq.fdseq"}},
    {GTypeEnums::cGZip, {"\x1F\x8B\x08"}},
    {GTypeEnums::cDictionary, {"#BEGINDICT\r\n"}},
    {GTypeEnums::cPreferences, {"#BEGINPREFS\r\n"}},
};

TEST(GetStreamType, KnowsDataByItsFirstBytes) {
    for (const auto& [type, kinds] : cKinds) {
        for (const std::string& data : kinds) {
            SCOPED_TRACE(testing::PrintToString(data));
            PieceStream stream(data, 3);
            stream.Skip(2);
            const long position = stream.mPosition;
            EXPECT_EQ(GStreamSupport::GetStreamType(stream), type);
            EXPECT_EQ(stream.mPosition, position);
            EXPECT_EQ(GStreamSupport::GetBufferType(BufferOf(data)), type);
        }
    }
}

}  // namespace
