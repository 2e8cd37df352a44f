#pragma once

/// @file
/// Texts for people, in the language that is current when they are read.

#include "framework/core/GExport.h"
#include "framework/core/memory/GSharedObject.h"

class GString;

/// GLngString: a text for people that is put into words only when it is read.
///
/// It is a row of parts. A part is either the number of a text in the string pools or a plain text,
/// and carries parameters for the markers "%1" to "%9" and "%s" of that text. GetString() looks the
/// numbers up in the language that is current at that moment. Copies share their parts, so copying
/// never fails; a changed copy parts with the others. One thread at a time for one object.
class QUILLON_EXPORT GLngString {
public:
    GLngString() noexcept;
    /// The text of that number, in whatever language is current when it is read; 0 gives the empty
    /// language string.
    explicit GLngString(long id);
    /// A text that is the same in every language; an empty one gives the empty language string.
    explicit GLngString(const GString& text);
    ///@{ Shares the parts; moving leaves the other empty.
    GLngString(const GLngString& other) noexcept;
    GLngString(GLngString&& other) noexcept;
    GLngString& operator=(const GLngString& other) noexcept;
    GLngString& operator=(GLngString&& other) noexcept;
    ///@}
    ~GLngString();

    /// True when there is nothing to read: no part at all.
    bool IsEmpty() const noexcept;
    /// The first number among the parts; 0 for plain text.
    long GetID() const noexcept;
    /// Adds the next parameter of the last part: the first call gives "%1". An empty language
    /// string has no part that could take one and stays empty. Returns this string.
    GLngString& AddParam(const GString& param);

    /// Appends the other's parts, each with its own parameters.
    GLngString& operator+=(const GLngString& other);
    /// Appends a plain text.
    GLngString& operator+=(const GString& text);

    /// The readable text: every part in the current language with its parameters put in. Markers
    /// without a parameter stay; markers inside a parameter are not expanded.
    GString GetString() const;

private:
    class Parts;
    Parts& OwnParts();

    GSharedObject<Parts> mParts;  // null: empty
};

/// The parts of the first one and behind them those of the second one.
QUILLON_EXPORT GLngString operator+(const GLngString& first, const GLngString& second);
