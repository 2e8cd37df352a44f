#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

#include "framework/core/encodings/GUnicodeCharacters.h"
#include "framework/core/encodings/PText.h"
#include "framework/core/text/GString.h"

/// The units of a text, in place. Valid until the text changes.
using GPathUnits = std::span<const unsigned short>;

/// GPathText: what the rules on paths need of text, over units in place.
struct GPathText {
    static constexpr std::size_t cNotFound = static_cast<std::size_t>(-1);

    /// Leaves an empty text untouched: the shared empty path is read by all threads.
    static GPathUnits UnitsOf(const GString& text) {
        if (text.IsEmpty()) return {};
        const auto length = static_cast<std::size_t>(text.GetLength());
        return {text.GetUTF16Ptr(), length};
    }
    /// Unit by unit as they are: composed, a part of a path would name another file.
    static GString MakeString(GPathUnits units);
    /// The text in UTF-16, made in one block.
    static GString MakeUnicode(const GString& text);
    /// The bytes of a text that stand for units one by one; null for any other text.
    static const GBuffer* GetPlainASCII(const GString& text) noexcept;
    static bool IsEqual(GPathUnits units, std::string_view ascii) noexcept {
        return std::equal(units.begin(), units.end(), ascii.begin(), ascii.end(),
                          [](unsigned short unit, char c) { return unit == static_cast<unsigned char>(c); });
    }
    static bool StartsWith(GPathUnits units, std::string_view ascii) noexcept {
        return units.size() >= ascii.size() && IsEqual(units.first(ascii.size()), ascii);
    }
    static bool IsEqualIgnoreCase(GPathUnits a, GPathUnits b) noexcept {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned short x, unsigned short y) {
            return x == y || PText::ToLower(x) == PText::ToLower(y);
        });
    }
    static std::size_t Find(GPathUnits units, unsigned short unit, std::size_t start = 0) noexcept {
        for (std::size_t i = start; i < units.size(); ++i)
            if (units[i] == unit) return i;
        return cNotFound;
    }
    static std::size_t FindLast(GPathUnits units, unsigned short unit) noexcept {
        for (std::size_t i = units.size(); i > 0; --i)
            if (units[i - 1] == unit) return i - 1;
        return cNotFound;
    }
    static constexpr bool IsASCIILetter(unsigned short unit) noexcept {
        return (unit | 0x20) >= 'a' && (unit | 0x20) <= 'z';
    }

    /// The next component at or after `position`, which moves behind it; empty at the end.
    static GPathUnits NextComponent(GPathUnits path, std::size_t& position) noexcept {
        while (position < path.size() && path[position] == '/') ++position;
        const std::size_t start = position;
        while (position < path.size() && path[position] != '/') ++position;
        return path.subspan(start, position - start);
    }
};

/// GPathInput: the units of a text that a caller gave, and leaves a short ASCII text as it is: reading
/// its characters would turn it into UTF-16, in a block of its own.
class GPathInput {
public:
    /// The text must stay as it is while the units are used.
    explicit GPathInput(const GString& text);
    GPathInput(const GPathInput&) = delete;
    GPathInput& operator=(const GPathInput&) = delete;
    GPathUnits GetUnits() const noexcept { return mUnits; }

private:
    static constexpr std::size_t cMostWidened = 260;  // what Windows calls the longest ordinary path

    unsigned short mWidened[cMostWidened];
    GPathUnits mUnits;
};

/// GUnitBuilder: makes a text of known largest length with one allocation.
///
/// Units beyond that length are left out.
class GUnitBuilder {
public:
    explicit GUnitBuilder(std::size_t maxLength) {
        mText.SetLength(static_cast<long>(maxLength));
        // The text owns the block that it has just made, and nobody else has seen it.
        mUnits = const_cast<unsigned short*>(mText.GetUTF16Ptr());
        mRoom = static_cast<std::size_t>(mText.GetLength());
    }
    GUnitBuilder(const GUnitBuilder&) = delete;
    GUnitBuilder& operator=(const GUnitBuilder&) = delete;

    void Add(unsigned short unit) noexcept {
        if (mCount < mRoom) mUnits[mCount++] = unit;
    }
    void Add(GPathUnits units) noexcept {
        const std::size_t count = std::min(units.size(), mRoom - mCount);
        std::copy_n(units.data(), count, mUnits + mCount);
        mCount += count;
    }
    void Add(std::string_view ascii) noexcept {
        for (const char c : ascii) Add(static_cast<unsigned short>(static_cast<unsigned char>(c)));
    }
    void AddBytes(const GBuffer& ascii) noexcept {
        for (long i = 0; i < ascii.GetLength(); ++i) Add(static_cast<unsigned short>(ascii.GetRawData()[i]));
    }
    /// Adds the units with every `find` as `with`.
    void AddReplacing(GPathUnits units, unsigned short find, unsigned short with) noexcept {
        const std::size_t count = std::min(units.size(), mRoom - mCount);
        // Always stores, so that the compiler can take many units at once.
        std::transform(units.data(), units.data() + count, mUnits + mCount,
                       [find, with](unsigned short unit) { return unit == find ? with : unit; });
        mCount += count;
    }
    void CutTo(std::size_t count) noexcept { mCount = std::min(mCount, count); }
    std::size_t GetCount() const noexcept { return mCount; }
    /// What has been built so far.
    GPathUnits GetUnits() const noexcept { return {mUnits, mCount}; }

    /// The text; the builder is used up.
    GString Take() {
        if (mCount != mRoom) mText.SetLength(static_cast<long>(mCount));
        mRoom = mCount = 0;
        return std::move(mText);
    }

private:
    GString mText;
    unsigned short* mUnits;
    std::size_t mRoom;
    std::size_t mCount = 0;
};
