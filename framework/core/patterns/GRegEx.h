#pragma once

#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/containers/GRange.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/text/GString.h"

/// GRegEx: a regular expression over UTF-16 text, in Perl's syntax.
///
/// Positions and lengths are units, as in GString; a surrogate pair is two characters to the
/// expression. Letters, digits and case are Unicode's as PText knows them, never a locale's. An
/// expression may be used by several threads at once, each with texts of its own.
class QUILLON_EXPORT GRegEx {
public:
    /// Throws GCustomException (GExceptionID::cGeneral, with the parser's text) for an expression
    /// that is malformed.
    explicit GRegEx(const GString& expression, bool ignoreCase = false);
    ~GRegEx();
    ///@{ Takes the compiled expression; the other may only be destroyed or assigned to.
    GRegEx(GRegEx&& other) noexcept;
    GRegEx& operator=(GRegEx&& other) noexcept;
    ///@}
    GRegEx(const GRegEx&) = delete;
    GRegEx& operator=(const GRegEx&) = delete;

    /// How many groups the expression captures, the whole match not counted.
    long GetGroupCount() const;
    /// True when the whole text matches. This and all searches below throw GCustomException for a
    /// text on which the expression would take more than 100 million steps: some seconds. Neither long
    /// texts nor long or deep expressions use up the stack.
    bool Matches(const GString& text) const;
    /// The first match at or after `start`, as a range of positions (empty, from its position to the
    /// one before, for a match of nothing); false, `match` untouched, when there is none.
    bool Find(const GString& text, long start, GRange& match) const;
    /// The same with the texts of the whole match and of all groups; a group that took no part is
    /// empty.
    bool Find(const GString& text, long start, GRange& match, GTable<GString>& groups) const;
    /// All matches replaced by `with`, in which `$1` or `\1` stand for a group and `$&` for the match.
    GString Replace(const GString& text, const GString& with) const;

private:
    struct Implementation;
    std::unique_ptr<Implementation> mImplementation;
};
