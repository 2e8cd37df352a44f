#include "framework/core/encodings/GSimpleEncoding.h"

#include <algorithm>

#include "framework/core/encodings/GCodeUnits.h"
#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/memory/GReplaceable.h"

constinit const GBuffer GSimpleEncoding::sDescription(cLiteral<"SimpleEncoding">);

namespace {

constinit GReplaceable<GSimpleEncoding> sInstance;

constexpr std::uint32_t cIsUnit = 0x10000;
constexpr std::uint16_t cIsCode = 0x100;

// How many elements a vector takes, and how many go through a table before the check whether one of them
// was missing there.
constexpr std::size_t cBlock = 16;

}  // namespace

GSimpleEncoding::GSimpleEncoding() : mPages(1) {
    for (unsigned short control = 0; control < 0x20; ++control)
        AddMapping(static_cast<unsigned char>(control), control);
}

GSimpleEncoding::~GSimpleEncoding() = default;

GSimpleEncoding* GSimpleEncoding::GetInstance() {
    return sInstance.Get([] { return new GSimpleEncoding; });
}

void GSimpleEncoding::SetInstance(GSimpleEncoding* instance) {
    sInstance.Set(instance);
}

void GSimpleEncoding::AddMapping(unsigned char code, const GBuffer& glyphName) {
    GCharCode unicode;
    if (GUnicodeEncoding::GetInstance()->GetCharCode(glyphName, unicode))
        AddMapping(code, glyphName, unicode, true);
}

void GSimpleEncoding::AddMapping(unsigned char code, const GBuffer& glyphName, unsigned short unicode) {
    AddMapping(code, glyphName, GCharCode(unicode), true);
}

void GSimpleEncoding::AddMapping(unsigned char code, const GCharCode& unicode) {
    AddMapping(code, GBuffer(), unicode, true);
}

void GSimpleEncoding::AddMapping(unsigned char code, unsigned short unicode) {
    AddMapping(code, GBuffer(), GCharCode(unicode), true);
}

void GSimpleEncoding::AddMapping(unsigned char code, const GBuffer& glyphName, const GCharCode& unicode,
                                 bool convertsBack) {
    const bool isUnit = unicode.GetUnitCount() == 1;
    Mapping mapping{GCharCode(unicode.GetPtr(), 2 * unicode.GetUnitCount()), glyphName,
                    convertsBack && isUnit};
    if (mapping.convertsBack) EnsurePage(unicode.GetUnit());
    // From here on nothing fails: what was replaced has its page if it converted back.
    std::swap(mMappings[code], mapping);
    mDirect[code] = isUnit ? cIsUnit | unicode.GetUnit() : 0;
    if (mapping.convertsBack) RefreshReverse(mapping.units.GetUnit());
    if (mMappings[code].convertsBack) RefreshReverse(unicode.GetUnit());
    RefreshFlags();
}

bool GSimpleEncoding::HasMapping(unsigned char code) const {
    return !mMappings[code].units.IsEmpty();
}

void GSimpleEncoding::EnsurePage(unsigned short unit) {
    std::uint16_t& page = mPageOfHighByte[unit >> 8];
    if (page != 0) return;
    mPages.emplace_back();
    page = static_cast<std::uint16_t>(mPages.size() - 1);
}

void GSimpleEncoding::RefreshReverse(unsigned short unit) {
    mPages[mPageOfHighByte[unit >> 8]][unit & 0xFF] = FindLowestCode(unit);
}

std::uint16_t GSimpleEncoding::FindLowestCode(unsigned short unit) const {
    for (std::size_t code = 0; code < mMappings.size(); ++code)
        if (mMappings[code].convertsBack && mMappings[code].units.GetUnit() == unit)
            return static_cast<std::uint16_t>(cIsCode | code);
    return 0;
}

void GSimpleEncoding::RefreshFlags() {
    mHasSequences = false;
    for (const Mapping& mapping : mMappings) mHasSequences |= mapping.units.GetUnitCount() > 1;
    mLeastSame = cMostSame + 1;
    if (AreSame(0, cMostSame)) mLeastSame = AreSame(0xA0, 0xFF) ? 0xA0 - 0x100 : 0;
}

bool GSimpleEncoding::AreSame(int first, int last) const {
    for (int code = first; code <= last; ++code) {
        const auto unit = static_cast<std::uint16_t>(code);
        if (mDirect[unit] != (cIsUnit | unit) || GetReverse(unit) != (cIsCode | unit)) return false;
    }
    return true;
}

long GSimpleEncoding::ConvertTo(const GBuffer& bytes, const GUnicodeEncoding*, GBuffer& out) const {
    const unsigned char* source = bytes.GetRawData();
    return mHasSequences ? ConvertSequences(source, bytes.GetLength(), out)
                         : ConvertUnits(source, bytes.GetLength(), out);
}

long GSimpleEncoding::ConvertUnits(const unsigned char* bytes, long length, GBuffer& out) const {
    const auto count = static_cast<std::size_t>(length);
    GBuffer result = MakeEncodingOutput(2 * count);
    unsigned char* units = result.GetWritePtr();
    const std::uint32_t* direct = mDirect.data();
    const int leastSame = mLeastSame;
    long code = cConverted;
    for (std::size_t i = 0; i < count;) {
        if (count - i >= cBlock && GCodeUnits::WidenBlock(bytes + i, units + 2 * i, leastSame, cMostSame)) {
            i += cBlock;
            continue;
        }
        // Other text goes through the table by blocks, without a question for each byte.
        const std::size_t end = std::min(count, i + cBlock);
        std::uint32_t all = cIsUnit;
        const std::size_t start = i;
        for (; i < end; ++i) {
            all &= direct[bytes[i]];
            GCodeUnits::Store(units, i, static_cast<std::uint16_t>(direct[bytes[i]]));
        }
        if ((all & cIsUnit) != 0) continue;
        code = cReplaced;
        for (std::size_t j = start; j < end; ++j)
            if (direct[bytes[j]] == 0) GCodeUnits::Store(units, j, GetDefaultUnit());
    }
    out = std::move(result);
    return code;
}

long GSimpleEncoding::ConvertSequences(const unsigned char* bytes, long length, GBuffer& out) const {
    GBuffer result = MakeEncodingOutput(2 * static_cast<std::size_t>(length));
    result.Clear();
    long code = cConverted;
    for (long i = 0; i < length; ++i) {
        const GCharCode& units = mMappings[bytes[i]].units;
        if (units.IsEmpty()) {
            result += GetDefaultUnit();
            code = cReplaced;
        } else {
            result += units;
        }
    }
    out = std::move(result);
    return code;
}

long GSimpleEncoding::ConvertFromUnicode(const GBuffer& utf16, GBuffer& out) const {
    const unsigned char* units = utf16.GetRawData();
    const auto count = static_cast<std::size_t>(utf16.GetLength()) / 2;
    GBuffer result = MakeEncodingOutput(count);
    unsigned char* bytes = result.GetWritePtr();
    const ReversePage* pages = mPages.data();
    const std::uint16_t* pageOfHighByte = mPageOfHighByte.data();
    const auto find = [=](std::uint16_t unit) { return pages[pageOfHighByte[unit >> 8]][unit & 0xFF]; };
    const int leastSame = mLeastSame;
    long code = cConverted;
    for (std::size_t i = 0; i < count;) {
        if (count - i >= cBlock && GCodeUnits::NarrowBlock(units + 2 * i, bytes + i, leastSame, cMostSame)) {
            i += cBlock;
            continue;
        }
        const std::size_t end = std::min(count, i + cBlock);
        std::uint16_t all = cIsCode;
        const std::size_t start = i;
        for (; i < end; ++i) {
            const std::uint16_t entry = find(GCodeUnits::Load(units, i));
            all &= entry;
            bytes[i] = static_cast<unsigned char>(entry);
        }
        if ((all & cIsCode) != 0) continue;
        code = cReplaced;
        for (std::size_t j = start; j < end; ++j)
            if (find(GCodeUnits::Load(units, j)) == 0)
                bytes[j] = static_cast<unsigned char>(GetDefaultCharacter());
    }
    out = std::move(result);
    return code;
}

bool GSimpleEncoding::GetGlyphName(const GCharCode& code, GBuffer& name) const {
    if (code.GetLength() != 1 || mMappings[code.GetByte()].glyphName.IsEmpty()) return false;
    name = mMappings[code.GetByte()].glyphName;
    return true;
}

bool GSimpleEncoding::GetCharCode(const GBuffer& glyphName, GCharCode& code) const {
    if (glyphName.IsEmpty()) return false;
    for (std::size_t i = 0; i < mMappings.size(); ++i) {
        if (!(mMappings[i].glyphName == glyphName)) continue;
        code = GCharCode(static_cast<unsigned char>(i));
        return true;
    }
    return false;
}

const GBuffer& GSimpleEncoding::GetASCIIDescription() const {
    return sDescription;
}
