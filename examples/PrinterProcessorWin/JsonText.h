#pragma once

#include <string>
#include <string_view>

/// A JSON string (RFC 8259) of the text, quotes included. Control characters and unpaired surrogates
/// are escaped, so that the result is always well-formed, in UTF-8 too; other characters stay.
std::wstring QuoteAsJson(std::wstring_view text);
