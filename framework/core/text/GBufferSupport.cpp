#include "framework/core/text/GBufferSupport.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/encodings/GEncoding.h"

namespace {

std::atomic<bool> sLineEndingNeedsCR{true};
std::atomic<bool> sLineEndingNeedsLF{true};

constexpr unsigned char cMergeEscape = '#';
constexpr unsigned char cMergeSeparator = '|';

// Rewrites a text of bytes or 16-bit units: elements are read in order, and the result is put together
// apart, so that a failure leaves the text as it was.
template <class Unit>
class Rewriter {
public:
    explicit Rewriter(GBuffer& text)
        : mText(text), mCount(text.GetLength() / static_cast<long>(sizeof(Unit))) {
        mResult.Allocate(text.GetLength());
    }
    bool HasMore() const { return mNext < mCount; }
    Unit Take() { return At(mNext++); }
    /// Takes the next element if it is `unit`.
    bool TakeIf(Unit unit) {
        if (!HasMore() || At(mNext) != unit) return false;
        ++mNext;
        return true;
    }
    void Put(Unit unit) { mResult += unit; }
    void PutLineEnding() {
        if (sLineEndingNeedsCR) Put('\r');
        if (sLineEndingNeedsLF) Put('\n');
    }
    /// Puts the result in the text's place, behind it a byte that is no whole unit.
    void Finish() {
        const long used = mCount * static_cast<long>(sizeof(Unit));
        mResult.AppendByteArray(mText.GetRawData() + used, mText.GetLength() - used);
        mText.Swap(mResult);
    }

private:
    Unit At(long index) const {
        Unit unit;
        std::memcpy(&unit, mText.GetRawData() + index * static_cast<long>(sizeof(Unit)), sizeof unit);
        return unit;
    }

    GBuffer& mText;
    GBuffer mResult;
    long mCount;
    long mNext = 0;
};

// Whether a text has any of the elements that a rewriting looks for; most have none.
template <class Unit, std::size_t Count>
bool HasAnyOf(const GBuffer& text, const Unit (&set)[Count]) {
    return text.FindFirstOccurrence(set, static_cast<long>(Count), 0) >= 0;
}

template <class Unit>
void ToPlatformLineEndings(GBuffer& text) {
    constexpr Unit cLineEnds[] = {'\r', '\n'};
    if (!HasAnyOf(text, cLineEnds)) return;
    Rewriter<Unit> rewriter(text);
    while (rewriter.HasMore()) {
        const Unit unit = rewriter.Take();
        if (unit == '\r') rewriter.TakeIf('\n');
        if (unit == '\r' || unit == '\n') {
            rewriter.PutLineEnding();
        } else {
            rewriter.Put(unit);
        }
    }
    rewriter.Finish();
}

template <class Unit>
void PutEscaped(Rewriter<Unit>& rewriter, Unit unit) {
    Unit code = unit;
    if (unit == '\t') {
        code = 't';
    } else if (unit == '\n' || unit == '\r') {
        rewriter.TakeIf(unit == '\n' ? '\r' : '\n');
        code = 'n';
    } else if (unit != '"' && unit != '\\') {
        rewriter.Put(unit);
        return;
    }
    rewriter.Put('\\');
    rewriter.Put(code);
}

template <class Unit>
void ToEscapes(GBuffer& text) {
    constexpr Unit cSpecial[] = {'\t', '\n', '\r', '"', '\\'};
    if (!HasAnyOf(text, cSpecial)) return;
    Rewriter<Unit> rewriter(text);
    while (rewriter.HasMore()) PutEscaped<Unit>(rewriter, rewriter.Take());
    rewriter.Finish();
}

// Puts what stands for an introducer and the element after it.
template <class Unit>
void PutUnescaped(Rewriter<Unit>& rewriter, Unit introducer, Unit code) {
    switch (code) {
        case '"':
        case '\'':
        case '\\':
            rewriter.Put(code);
            break;
        case 'n':
            rewriter.PutLineEnding();
            break;
        case 't':
            rewriter.Put('\t');
            break;
        default:
            rewriter.Put(introducer);
            rewriter.Put(code);
    }
}

bool IsBackslash(unsigned short character) noexcept {
    return character == '\\';
}

template <class Unit>
void FromEscapes(GBuffer& text, bool (*introduces)(unsigned short)) {
    constexpr Unit cIntroducers[] = {'\\', 0x80, 0xA5};
    if (!HasAnyOf(text, cIntroducers)) return;
    Rewriter<Unit> rewriter(text);
    while (rewriter.HasMore()) {
        const Unit unit = rewriter.Take();
        if (introduces(unit) && rewriter.HasMore()) {
            PutUnescaped<Unit>(rewriter, unit, rewriter.Take());
        } else {
            rewriter.Put(unit);
        }
    }
    rewriter.Finish();
}

}  // namespace

// --- Line ends and escapes ---------------------------------------------------------------------

void GBufferSupport::SetLineEnding(bool cr, bool lf) noexcept {
    sLineEndingNeedsCR = cr;
    sLineEndingNeedsLF = lf;
}

bool GBufferSupport::GetLineEndingNeedsCR() noexcept {
    return sLineEndingNeedsCR;
}

bool GBufferSupport::GetLineEndingNeedsLF() noexcept {
    return sLineEndingNeedsLF;
}

void GBufferSupport::ASCIIPlatformLineEndings(GBuffer& text) {
    ToPlatformLineEndings<unsigned char>(text);
}

void GBufferSupport::UniPlatformLineEndings(GBuffer& text) {
    ToPlatformLineEndings<unsigned short>(text);
}

void GBufferSupport::ASCIIReplaceSpecialChars(GBuffer& text) {
    ToEscapes<unsigned char>(text);
}

void GBufferSupport::UniReplaceSpecialChars(GBuffer& text) {
    ToEscapes<unsigned short>(text);
}

void GBufferSupport::ASCIIReplaceEscapeCodes(GBuffer& text) {
    FromEscapes<unsigned char>(text, IsBackSlashCharacter);
}

void GBufferSupport::UniReplaceEscapeCodes(GBuffer& text) {
    FromEscapes<unsigned short>(text, IsBackSlashCharacter);
}

void GBufferSupport::UniReplaceBackslashEscapes(GBuffer& text) {
    FromEscapes<unsigned short>(text, IsBackslash);
}

void GBufferSupport::UniReplaceSpecialEndCharsWithDefaultChar(GBuffer& text) {
    constexpr unsigned short cLineEnds[] = {'\r', '\n'};
    if (!HasAnyOf(text, cLineEnds)) return;
    const unsigned short replacement = GEncoding::GetDefaultUnit();
    Rewriter<unsigned short> rewriter(text);
    while (rewriter.HasMore()) {
        const unsigned short unit = rewriter.Take();
        if (unit == '\r' || unit == '\n') {
            rewriter.TakeIf(unit == '\r' ? '\n' : '\r');
            rewriter.Put(replacement);
        } else {
            rewriter.Put(unit);
        }
    }
    rewriter.Finish();
}

// --- Lists -------------------------------------------------------------------------------------

void GBufferSupport::SeparatedBufferToBufferTable(const GBuffer& text, const GBuffer& separators,
                                                  GTable<GBuffer>& out, bool keepEmpty) {
    GTable<GBuffer> fields;
    const unsigned char* const set = separators.GetRawData();
    for (long start = 0; start <= text.GetLength();) {
        long end = text.FindFirstOccurrence(set, separators.GetLength(), start);
        if (end < 0) end = text.GetLength();
        if (keepEmpty || end > start) fields.Append(text.GetSubBuffer(start, end - start));
        start = end + 1;
    }
    out = std::move(fields);
}

void GBufferSupport::BufferTableToSeparatedBuffer(const GTable<GBuffer>& elements, const GBuffer& separator,
                                                  GBuffer& out) {
    GBuffer joined;
    for (const GBuffer& element : elements) {
        if (&element != elements.begin()) joined += separator;
        joined += element;
    }
    out.Swap(joined);
}

void GBufferSupport::MergeIntoSeparatedBuffer(const GTable<GBuffer>& elements, GBuffer& out) {
    GBuffer merged;
    for (const GBuffer& element : elements) {
        if (merged.IsEmpty()) merged += cMergeEscape;
        merged += cMergeSeparator;
        const unsigned char* const bytes = element.GetRawData();
        for (long i = 0; i < element.GetLength(); ++i) {
            if (bytes[i] == cMergeEscape || bytes[i] == cMergeSeparator) merged += cMergeEscape;
            merged += bytes[i];
        }
    }
    out.Swap(merged);
}

void GBufferSupport::SplitSeparatedBuffer(const GBuffer& merged, GTable<GBuffer>& out) {
    constexpr long cShortest = 3;
    GTable<GBuffer> elements;
    if (merged.GetLength() >= cShortest) {
        const unsigned char* const bytes = merged.GetRawData();
        const unsigned char escape = bytes[0];
        const unsigned char separator = bytes[1];
        elements.Append(GBuffer());
        for (long i = 2; i < merged.GetLength(); ++i) {
            if (bytes[i] == escape) {
                if (++i < merged.GetLength()) elements.GetLast() += bytes[i];
            } else if (bytes[i] == separator) {
                elements.Append(GBuffer());
            } else {
                elements.GetLast() += bytes[i];
            }
        }
    }
    out = std::move(elements);
}
