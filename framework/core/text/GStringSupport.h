#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GWhiteSpace.h"
#include "framework/core/containers/GPair.h"
#include "framework/core/containers/GRange.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/text/GString.h"

class GEncoding;

/// GStringSupport: functions on strings that need nothing of their insides.
///
/// They throw only for want of memory, and what they were to change is then as it was. Strings given
/// by reference end up as UTF-16.
struct QUILLON_EXPORT GStringSupport {
    /// The blocks of Unicode that GetUnicodeRange knows.
    enum RangeSpecifier {
        cBasicLatin,
        cLatin1Supplement,
        cLatinExtendedA,
        cLatinExtendedB,
        cSpacingModifierLetters,
        cCombiningDiacriticalMarks,
        cGreek,
        cCyrillic,
        cHebrew,
        cArabic,
        cThai,
        cHangulJamo,
        cGeneralPunctuation,
        cCurrencySymbols,
        cLetterlikeSymbols,
        cMathematicalOperators,
        cBoxDrawing,
        cCJKSymbolsAndPunctuation,
        cHiragana,
        cKatakana,
        cCJKUnifiedIdeographs,
        cHangulSyllables,
        cSurrogates,
        cPrivateUseArea,
        cCJKCompatibilityIdeographs,
        cAlphabeticPresentationForms,
        cHalfwidthAndFullwidthForms,
    };

    /// The one comparison that asks the user's locale: -1, 0 or 1 as the operating system sorts; in
    /// the native build by units, after ToLower when the case does not count.
    static long Compare(const GString& a, const GString& b, bool caseSensitive);
    /// Equal after ToLower, the same in every locale.
    static bool IsEqualIgnoreCase(const GString& a, const GString& b);
    /// Natural order: "file9" is less than "file10". Digits are '0' to '9', numbers of more than 32 bits
    /// count as the largest, and leading zeros make no difference. Strings that are not UTF-16 yet
    /// become it on the first comparison; all else allocates nothing, and long texts take no more of
    /// the stack than short ones.
    ///
    /// A sort predicate for texts of units below U+0100. It is none for all texts: other units compare
    /// as GString does, by their low bytes first, and one whose low byte is that of a digit stands
    /// between numbers. So 9 is less than 10, 10 less than U+0432, and that less than 9.
    static bool IsLessThanAlphanumeric(const GString& a, const GString& b);
    /// "Report" becomes "Report (2)", that "Report (3)". With `maxLength` the part before the
    /// suffix is cut so that the whole is no longer than that many units, or is the suffix alone where
    /// not even that fits; 0: no limit. A surrogate pair is not split. A suffix that no 64-bit number can
    /// count on from stays.
    static void IncreaseNumericSuffix(GString& text, unsigned long maxLength);

    ///@{ Whether it belongs to GWhiteSpace.
    static constexpr bool IsWhiteSpace(unsigned char byte) noexcept { return GWhiteSpace::Has(byte); }
    static constexpr bool IsWhiteSpace(unsigned short unit) noexcept { return GWhiteSpace::Has(unit); }
    ///@}
    ///@{ Removes white space at the start or the end. Returns `text`.
    static GString& StripLeadingWhiteSpace(GString& text);
    static GString& StripTrailingWhiteSpace(GString& text);
    ///@}

    /// Tabs, line ends, quotes and backslashes become `\t`, `\n`, `\"` and `\\`.
    static void ReplaceSpecialChars(GString& text);
    /// Every line break becomes one default character.
    static void ReplaceSpecialEndCharsWithDefaultChar(GString& text);
    /// ReplaceSpecialChars, then a quote before and one after.
    static void QuoteString(GString& text);

    /// Splits `text` at every occurrence of the whole `separator`; an empty separator splits nothing.
    /// With `keepEmpty` false empty parts are dropped, with true kept, also a trailing one. An empty
    /// text has no parts, with `keepEmpty` one empty part.
    static void SeparatedStringToStringTable(const GString& text, const GString& separator,
                                             GTable<GString>& out, bool keepEmpty);
    /// The strings with `separator` between them.
    static void StringTableToSeparatedString(const GTable<GString>& strings, const GString& separator,
                                             GString& out);
    /// Replaces every occurrence of each pair's first string by its second, pair by pair.
    static void SearchAndReplace(GString& text, const GTable<GPair<GString, GString>>& pairs);

    /// The text's bytes in the first candidate that can hold all of it; if none can, in UTF-8, which
    /// always can. Returns the encoding chosen. Without candidates: ASCII, WinAnsi, UTF-8. Null
    /// candidates are passed over.
    static const GEncoding* GetBuffer(const GString& text, GBuffer& out);
    /// The same with the caller's candidates, in their order.
    static const GEncoding* GetBuffer(const GString& text, GBuffer& out,
                                      const GTable<const GEncoding*>& candidates);
    /// Takes `bytes` as text in the first candidate in which all of them are valid; if there is
    /// none, in the last candidate. Without candidates: ASCII, UTF-8, WinAnsi, and MacRoman, so that
    /// bytes that are valid UTF-8 are read as such. Returns the encoding chosen, null for an empty
    /// table of candidates (`text` becomes empty).
    static const GEncoding* AssignEncoding(const GBuffer& bytes, GString& text);
    /// The same with the caller's candidates, in their order.
    static const GEncoding* AssignEncoding(const GBuffer& bytes, GString& text,
                                           const GTable<const GEncoding*>& candidates);

    /// A test of the form only: one '@' with a local part of 1 to 64 units before it (letters, digits
    /// and "!#$%&'*+-/=?^_`{|}~", and single dots inside it) and a domain after it (at least two
    /// labels of 1 to 63 letters, digits and inner hyphens, 253 units in all, the last not all
    /// digits). Letters beyond ASCII are allowed in both.
    static bool IsPossibleEmailAddress(const GString& text);
    /// The code points of a block; an unknown specifier gives an empty range.
    static GRange GetUnicodeRange(RangeSpecifier specifier);

    /// Hides a text from the casual eye, no more: printable ASCII that DeScramble turns back.
    /// An empty text stays empty.
    static void Scramble(GString& text);
    /// Undoes Scramble. False, `text` untouched, for a text that Scramble did not make.
    static bool DeScramble(GString& text);
};
