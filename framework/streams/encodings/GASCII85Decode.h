#pragma once

#include "framework/streams/GFilterInStream.h"

/// GASCII85Decode: four bytes from five characters from '!' to 'u', four zero bytes from 'z', up to "~>"
/// (ISO 32000-1, 7.4.3).
///
/// White space (NUL, tab, LF, form feed, CR, blank) is skipped everywhere, also between '~' and '>'. A
/// "<~" in front of the data is skipped. A last group of two to four characters gives one byte less.
/// Wrong are a single character as last group (without an end mark: an unexpected end), 'z' inside a
/// group, a group above 2^32 - 1, and any other byte.
class QUILLON_EXPORT GASCII85Decode : public GFilterInStream {
public:
    /// From a reference the source is borrowed, from a pointer owned.
    explicit GASCII85Decode(GHeldStream<GInStream> source);

    GASCII85Decode* CreateClone() const override;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;
    bool PassStart(GFilterWindow& window);
    GFilterStep TakeCharacter(GFilterWindow& window);
    GFilterStep TakeDigit(GFilterWindow& window, unsigned digit);
    GFilterStep Finish(GFilterWindow& window) const;

    std::uint64_t mValue = 0;      // of the characters of an unfinished group
    std::int32_t mDigitCount = 0;  // how many those are
    bool mAtStart = true;          // a "<~" may come
    bool mTildeSeen = false;
};
