#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/errors/GLngString.h"
#include "framework/core/text/GString.h"

class GPathName;

/// GExceptionLocation: says what a thread is doing while the object is in scope.
///
/// An exception built meanwhile on the same thread takes the text of the innermost location along;
/// outer ones are hidden, not joined in. The objects of a thread form a list that runs through
/// themselves: entering a location needs no memory beyond the copy of what it was given. Create and
/// destroy an object on the same thread.
class QUILLON_EXPORT GExceptionLocation {
public:
    /// The text of that number.
    explicit GExceptionLocation(long id);
    /// The text itself, which is copied.
    explicit GExceptionLocation(const GString& text);
    /// The native form of the path.
    explicit GExceptionLocation(const GPathName& path);
    /// The text of the number with the native forms of the two paths as "%1" and "%2".
    GExceptionLocation(long id, const GPathName& first, const GPathName& second);
    GExceptionLocation(const GExceptionLocation&) = delete;
    GExceptionLocation& operator=(const GExceptionLocation&) = delete;
    virtual ~GExceptionLocation();

    /// What the calling thread is doing: the text of its innermost location, or an empty one.
    static GLngString GetLngDescription();

protected:
    /// For locations that describe themselves.
    GExceptionLocation();
    /// The text of this location, made when an exception asks for it.
    virtual GLngString Describe() const;

private:
    enum class Kind : std::uint8_t { cNothing, cNumber, cText, cNumberAndTwoTexts };
    // How a kept text reads; what a path looks like is known to the paths only.
    using Reading = GString (*)(const GString& kept);

    void Enter();
    void Leave() noexcept;
    GString Read(const GString& kept) const;

    Kind mKind = Kind::cNothing;
    std::int32_t mID = 0;
    Reading mReading = nullptr;  // null: as it was kept
    GString mFirst;              // the text, or a portable path
    GString mSecond;             // a portable path
    GExceptionLocation* mOuter = nullptr;
};
