#pragma once

#include <string>
#include <string_view>

/// Console: the standard streams of a command-line program, written as text.
///
/// A console gets UTF-16, so every character shows whatever its code page; a file or a pipe gets
/// UTF-8 without a mark. Lines end in a bare line feed. Text goes out at once: nothing is kept back
/// that a program which is ended could lose. Any thread; one call's text may mix with another's.
class Console {
public:
    /// Writes to the standard output. False when it took less than all: a closed pipe, a full disk.
    static bool Write(std::wstring_view text);
    /// Writes to the standard error output. False as above.
    static bool WriteError(std::wstring_view text);
    /// From now on also appends all that is written to a file, in UTF-8, for runs that nobody sees. False
    /// when the file cannot be opened. For the start of a program: no other thread may write meanwhile.
    static bool CopyTo(const std::wstring& path);
};

/// The text with question marks for control characters: what comes from a document or its user must not
/// steer the reader's terminal.
std::wstring MakePrintable(std::wstring text);

/// The text as UTF-8; an unpaired surrogate becomes U+FFFD.
std::string ToUTF8(std::wstring_view text);
