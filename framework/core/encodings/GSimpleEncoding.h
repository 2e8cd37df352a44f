#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/bytes/GCharCode.h"
#include "framework/core/encodings/GCustomEncoding.h"

/// GSimpleEncoding: a single-byte encoding that is a table of mappings.
///
/// Each of the 256 codes may stand for one UTF-16 unit, or for a sequence of units, and may bear the
/// name of a glyph. The control codes 0x00 to 0x1F stand for themselves until they are mapped, so
/// that line ends survive. A code without a mapping becomes the default character's unit, a unit
/// without a code the default character, both with the result cReplaced.
///
/// When several codes stand for one unit, the unit converts back to the lowest of them.
/// AddMapping must not run while other threads convert.
class QUILLON_EXPORT GSimpleEncoding : public GCustomEncoding {
public:
    /// Only the control codes are mapped.
    GSimpleEncoding();
    ~GSimpleEncoding() override;

    /// The shared instance, made on first use without mappings but the control codes.
    static GSimpleEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GSimpleEncoding* instance);

    /// Maps `code`, replacing what it was mapped to. The units come from the glyph's name, through
    /// the Unicode dictionaries; a name that is unknown there leaves the code as it was.
    void AddMapping(unsigned char code, const GBuffer& glyphName);
    /// With the unit that the caller gives; an empty name is none.
    void AddMapping(unsigned char code, const GBuffer& glyphName, unsigned short unicode);
    /// `unicode` holds UTF-16 units. With `convertsBack` false the code is only read, never written; a
    /// code for several units never is.
    void AddMapping(unsigned char code, const GBuffer& glyphName, const GCharCode& unicode,
                    bool convertsBack);
    ///@{ Without a glyph's name.
    void AddMapping(unsigned char code, const GCharCode& unicode);
    void AddMapping(unsigned char code, unsigned short unicode);
    ///@}
    /// True for a code that stands for a character, control codes included.
    bool HasMapping(unsigned char code) const;

    using GEncoding::ConvertTo;
    long ConvertTo(const GBuffer& bytes, const GUnicodeEncoding* target, GBuffer& out) const override;
    long ConvertFromUnicode(const GBuffer& utf16, GBuffer& out) const override;
    /// Codes are single bytes.
    bool GetGlyphName(const GCharCode& code, GBuffer& name) const override;
    /// The lowest code that bears the name.
    bool GetCharCode(const GBuffer& glyphName, GCharCode& code) const override;
    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< "SimpleEncoding"

private:
    struct Mapping {
        GCharCode units;  // none: the code is not mapped
        GBuffer glyphName;
        bool convertsBack = false;
    };
    using ReversePage = std::array<std::uint16_t, 256>;
    static constexpr int cMostSame = 0x7E;  // delete has a character in few encodings

    void EnsurePage(unsigned short unit);
    void RefreshReverse(unsigned short unit);
    void RefreshFlags();
    bool AreSame(int first, int last) const;
    std::uint16_t FindLowestCode(unsigned short unit) const;
    std::uint16_t GetReverse(std::uint16_t unit) const {
        return mPages[mPageOfHighByte[unit >> 8]][unit & 0xFF];
    }
    long ConvertUnits(const unsigned char* bytes, long length, GBuffer& out) const;
    long ConvertSequences(const unsigned char* bytes, long length, GBuffer& out) const;

    std::array<Mapping, 256> mMappings;
    // What the mappings say, ready for the conversions. For a code that stands for one unit: 0x10000
    // and the unit; 0 for any other.
    std::array<std::uint32_t, 256> mDirect{};
    bool mHasSequences = false;
    // Codes that equal their units, in both directions, are converted by blocks. As signed numbers these
    // are the codes from here to cMostSame; there are none when this is larger.
    int mLeastSame = cMostSame + 1;
    // From unit to code: the unit's high byte selects a page, its low byte the entry, which is
    // 0x100 + code, or 0. High bytes without codes share page 0. It answers what a binary search in
    // the sorted pairs of unit and code would, without the search.
    std::array<std::uint16_t, 256> mPageOfHighByte{};
    std::vector<ReversePage> mPages;
};
