#include "framework/core/encodings/GUnicodeEncoding.h"

#include <atomic>
#include <memory>

#include "framework/core/bytes/GCharCode.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/encodings/GCharacterTables.h"
#include "framework/core/encodings/GCodeUnits.h"
#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GUnicodeComposition.h"
#include "framework/core/memory/GReplaceable.h"

constinit const GBuffer GUnicodeEncoding::sDescription(cLiteral<"UnicodeEncoding">);

namespace {

constinit GReplaceable<GUnicodeEncoding> sInstance;

// The glyph list, turned in every direction that is asked for. Names borrow the list's literals.
struct GlyphDictionaries {
    GlyphDictionaries();

    GDict<GBuffer, GCharCode> charCodes;           // name to units
    GDict<long, GBuffer> glyphNames;               // unit to its preferred name
    GDict<long, GTable<GBuffer>> glyphNameTables;  // unit to all its names
    GDict<long, unsigned short> compatChars;       // unit to compatibility unit

private:
    void AddGlyph(const GGlyphRow& row);
    void Prefer(const char* glyph);
};

GlyphDictionaries::GlyphDictionaries() {
    for (const GGlyphRow& row : GCharacterTables::GetGlyphList()) AddGlyph(row);
    for (const GMacExpertRow& row : GCharacterTables::GetMacExpert()) Prefer(row.glyph);
    for (const GLatinCharsetRow& row : GCharacterTables::GetLatinCharset()) Prefer(row.glyph);
    for (const GCompatRow& row : GCharacterTables::GetCompatCharacters())
        compatChars.Insert(row.unit, row.plain);
}

void GlyphDictionaries::AddGlyph(const GGlyphRow& row) {
    const GBuffer name = BorrowLiteral(row.GetGlyph());
    GCharCode code;
    for (std::size_t i = 0; i < row.count; ++i) code += static_cast<unsigned short>(row.units[i]);
    charCodes.Insert(name, code);
    if (row.count != 1) return;
    const long unit = row.units[0];
    if (!glyphNames.Has(unit)) glyphNames.Insert(unit, name);
    glyphNameTables.GetOrInsert(unit).Append(name);
}

void GlyphDictionaries::Prefer(const char* glyph) {
    const GBuffer name = BorrowLiteral(glyph);
    const GCharCode* code = charCodes.Find(name);
    if (code != nullptr && code->GetUnitCount() == 1) glyphNames.Set(code->GetUnit(), name);
}

// A plain pointer without a destructor: it works before and after all static objects.
constinit std::atomic<const GlyphDictionaries*> sDictionaries = nullptr;

const GlyphDictionaries& GetDictionaries() {
    const GlyphDictionaries* present = sDictionaries.load(std::memory_order_acquire);
    if (present != nullptr) return *present;
    // Threads that meet here may each build the dictionaries; the first to finish wins.
    auto built = std::make_unique<const GlyphDictionaries>();
    if (sDictionaries.compare_exchange_strong(present, built.get(), std::memory_order_acq_rel))
        return *built.release();
    return *present;
}

}  // namespace

GUnicodeEncoding* GUnicodeEncoding::GetInstance() {
    return sInstance.Get([] { return new GUnicodeEncoding; });
}

void GUnicodeEncoding::SetInstance(GUnicodeEncoding* instance) {
    sInstance.Set(instance);
}

void GUnicodeEncoding::Initialize() {
    GetDictionaries();
}

void GUnicodeEncoding::Finalize() {
    const std::unique_ptr<const GlyphDictionaries> old(sDictionaries.exchange(nullptr));
}

long GUnicodeEncoding::ConvertFrom(const GBuffer& bytes, const GEncoding* source, GBuffer& out) const {
    if (source != nullptr) return source->ConvertTo(bytes, this, out);
    out.Clear();
    return cConverted;
}

long GUnicodeEncoding::ConvertTo(const GBuffer& bytes, const GUnicodeEncoding*, GBuffer& out) const {
    const bool isWhole = bytes.GetLength() % 2 == 0;
    out = isWhole ? bytes : bytes.GetSubBuffer(0, bytes.GetLength() - 1);
    return isWhole ? cConverted : cInvalid;
}

bool GUnicodeEncoding::GetGlyphName(const GCharCode& code, GBuffer& name) const {
    const GBuffer* found =
        code.GetLength() == 2 ? GetDictionaries().glyphNames.Find(code.GetUnit()) : nullptr;
    if (found == nullptr) return false;
    name = *found;
    return true;
}

bool GUnicodeEncoding::GetCharCode(const GBuffer& glyphName, GCharCode& code) const {
    const GCharCode* found = GetDictionaries().charCodes.Find(glyphName);
    if (found == nullptr) return false;
    code = *found;
    return true;
}

const GBuffer& GUnicodeEncoding::GetASCIIDescription() const {
    return sDescription;
}

void GUnicodeEncoding::Normalize(GBuffer& bytes) const {
    EnsureComposedUnicode(bytes);
}

long GUnicodeEncoding::GetLength(const unsigned char* text) const {
    if (text == nullptr) return 0;
    std::size_t length = 0;
    while (GCodeUnits::Load(text, length) != 0) ++length;
    return static_cast<long>(2 * length);
}

void GUnicodeEncoding::GetGlyphNameTable(const GCharCode& code, GTable<GBuffer>& names) const {
    const GTable<GBuffer>* found =
        code.GetLength() == 2 ? GetDictionaries().glyphNameTables.Find(code.GetUnit()) : nullptr;
    if (found != nullptr)
        names = *found;
    else
        names.Clear();
}

bool GUnicodeEncoding::GetCompatChar(const GCharCode& code, GCharCode& compatible) const {
    const unsigned short* found =
        code.GetLength() == 2 ? GetDictionaries().compatChars.Find(code.GetUnit()) : nullptr;
    if (found == nullptr) return false;
    compatible = GCharCode(*found);
    return true;
}

GBuffer& GUnicodeEncoding::EnsureComposedUnicode(GBuffer& utf16) const {
    const auto length = static_cast<std::size_t>(utf16.GetLength()) / 2;
    const std::size_t first = GUnicodeComposition::FindFirst(utf16.GetRawData(), length);
    if (first == length) return utf16;
    const std::size_t composed = GUnicodeComposition::ComposeFrom(utf16.GetWritePtr(), length, first);
    utf16.Remove(static_cast<long>(2 * composed), static_cast<long>(2 * (length - composed)));
    return utf16;
}
