#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/text/GString.h"

class GEncoding;

/// One numbered text. The bytes are zero-terminated in the encoding of the pool they belong to.
struct GStringPoolRow {
    std::int32_t mID;   ///< the number; a pool may have rows of any numbers
    const char* mText;  ///< zero-terminated, in the pool's encoding; not owned
};

/// GStringPool: the numbered texts of one language in one encoding.
///
/// The rows are borrowed and must stay where they are as long as the pool is registered. Sorted rows
/// are searched faster; any order is right. The first of several rows of one number counts.
class QUILLON_EXPORT GStringPool {
public:
    /// `encodingName` as GStringPoolSupport::GetEncoding knows it; with an unknown one the texts are
    /// read as ASCII.
    GStringPool(const GBuffer& language, const GBuffer& encodingName, const GStringPoolRow* rows, long count);

    const GBuffer& GetLanguage() const noexcept { return mLanguage; }  ///< such as "enUS"
    const GStringPoolRow* GetRows() const noexcept { return mRows; }  ///< GetCount() rows, as they were given
    long GetCount() const noexcept { return mCount; }                 ///< rows
    /// The text of that number, in the pool's encoding; false, and `text` unchanged, without one.
    bool Find(long id, GString& text) const;

private:
    const GStringPoolRow* FindRow(std::int32_t id) const noexcept;

    GBuffer mLanguage;
    GBuffer mEncodingName;
    const GStringPoolRow* mRows;
    std::int32_t mCount;
    bool mSorted;
};

/// GStringPoolSupport: the registered string pools, the current language, and the look-up.
///
/// All functions may be called from any thread.
class QUILLON_EXPORT GStringPoolSupport {
public:
    /// Makes the rows known. What was registered last is asked first. Registering the same rows for
    /// the same language again changes nothing.
    static void Register(const GBuffer& language, const GBuffer& encodingName, const GStringPoolRow* rows,
                         long count);
    /// Forgets the rows; for a module that is about to be unloaded. Unknown rows are no error.
    static void Unregister(const GStringPoolRow* rows);

    /// "enUS" until it is set. A language without texts is allowed: then the English ones serve.
    static void SetCurrentLanguage(const GBuffer& language);
    static GBuffer GetCurrentLanguage();  ///< a copy; another thread may change it at once

    /// The text of that number in the current language, otherwise in "enUS"; false, and `text`
    /// unchanged, when neither has one.
    static bool FindString(long id, GString& text);
    /// The same, but a number without a text reads "Message" and the number, so that a failure
    /// never goes unnamed.
    static GString GetString(long id);

    /// The encoding that string files know as "WinAnsiEncoding", "MacRomanEncoding",
    /// "UnicodeEncoding", "ShiftJISEncoding" or "UTF8Encoding" (written without a hyphen here,
    /// unlike that encoding's own description); null for any other name.
    static const GEncoding* GetEncoding(const GBuffer& name);
};
