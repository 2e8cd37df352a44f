#pragma once

#include <cstdint>
#include <memory>
#include <new>

#include "framework/core/GExport.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/errors/GLngString.h"

class GString;

/// GException: the root of everything the framework throws.
///
/// It carries a number, which is the key of its text in the string pools, and the description of
/// what the throwing thread was doing (GExceptionLocation), taken when the exception is built. The
/// copy taken then outlives the scope it describes. Building and copying an exception, of any class
/// here, never fails: when memory runs out, it stays without its location and without a text of its
/// own, but with its number. Putting it into words does need memory: the calls that describe throw
/// what running out of it throws. Exceptions are values; catch by reference.
class QUILLON_EXPORT GException {
public:
    /// A general exception, GExceptionID::cGeneral.
    GException();
    /// With that number, of GExceptionID or of the program's own texts.
    explicit GException(long id);
    GException(const GException&) = default;
    GException& operator=(const GException&) = default;
    virtual ~GException();

    /// What went wrong: the text of the number; "Message" and the number where there is none.
    virtual GLngString GetLngDescription() const;
    /// The location, ": " and the description; the description alone when there was no location.
    virtual GLngString GetLngFullDescription() const;
    /// The number; of GExceptionID's unless the program has texts of its own.
    virtual long GetExceptionID() const;

    ///@{ The readable texts of the two, in the current language.
    GString GetDescription() const;
    GString GetFullDescription() const;
    ///@}

    /// The failure that is being handled, whatever it is, in words. Only within a handler.
    static GString DescribeCurrent();

    /// Registers the texts of all exceptions in the string pools ("enUS"). May be called again.
    static void Initialize();

private:
    void CaptureLocation() noexcept;

    std::int32_t mExceptionID;
    GLngString mLocation;
};

/// A failure that its number says all about.
class QUILLON_EXPORT GSimpleException : public GException {
public:
    explicit GSimpleException(long id);  ///< with that number
    GSimpleException(const GSimpleException&) = default;
    GSimpleException& operator=(const GSimpleException&) = default;
    ~GSimpleException() override;
};

/// The user or the program has canceled the action (GExceptionID::cAborted). Handlers pass it on to the
/// outer level.
class QUILLON_EXPORT GAbortException : public GException {
public:
    GAbortException();
    GAbortException(const GAbortException&) = default;
    GAbortException& operator=(const GAbortException&) = default;
    ~GAbortException() override;
};

/// Out of memory (GExceptionID::cOutOfMemory), also as the standard library knows it. Never carries a
/// location, so that making one needs no memory.
class QUILLON_EXPORT GMemoryException : public GException, public std::bad_alloc {
public:
    GMemoryException();
    GMemoryException(const GMemoryException&) = default;
    GMemoryException& operator=(const GMemoryException&) = default;
    ~GMemoryException() override;

    /// "bad allocation"
    const char* what() const noexcept override;
};

/// A failure with a text of its own; without one, the text of the number.
class QUILLON_EXPORT GCustomException : public GException {
public:
    explicit GCustomException(long id);  ///< with the text of that number
    /// With a text of its own, which is copied.
    GCustomException(long id, const GString& text);
    ///@{ Without memory the copy has the number only.
    GCustomException(const GCustomException& other) noexcept;
    GCustomException& operator=(const GCustomException& other) noexcept;
    ///@}
    ~GCustomException() override;

    GLngString GetLngDescription() const override;

private:
    std::unique_ptr<GString> mText;  // null: none was given
};

/// A failure described by a language string.
class QUILLON_EXPORT GLngException : public GException {
public:
    /// Takes its number from the language string.
    explicit GLngException(const GLngString& description);
    /// The text of the number, with the parameter for its "%1".
    GLngException(long id, const GString& param);
    GLngException(const GLngException&) = default;
    GLngException& operator=(const GLngException&) = default;
    ~GLngException() override;

    GLngString GetLngDescription() const override;

private:
    GLngString mDescription;
};
