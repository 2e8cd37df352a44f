#pragma once

#include "framework/core/GErrorReporter.h"
#include "framework/core/GException.h"
#include "framework/core/GExport.h"

/// GExceptionHandler: what a boundary does with what was thrown.
///
/// Use: `catch (...) { handler.Handle(); }`
class QUILLON_EXPORT GExceptionHandler {
public:
    GExceptionHandler() = default;
    GExceptionHandler(const GExceptionHandler&) = default;
    GExceptionHandler& operator=(const GExceptionHandler&) = default;
    virtual ~GExceptionHandler();

    virtual void Handle(const GSimpleException& exception) const = 0;
    virtual void Handle(const GMemoryException& exception) const = 0;
    virtual void Handle(const GException& exception) const = 0;
    /// Only inside a catch block: hands the exception being handled to the overload for its type.
    /// GAbortException, and everything that is no GException, is thrown on. Does nothing when no
    /// exception is being handled.
    virtual void Handle() const;
};

/// Hands the full description of every failure to the error reporter.
class QUILLON_EXPORT GDefaultExceptionHandler : public GExceptionHandler {
public:
    ~GDefaultExceptionHandler() override;

    using GExceptionHandler::Handle;
    void Handle(const GSimpleException& exception) const override;
    void Handle(const GMemoryException& exception) const override;
    void Handle(const GException& exception) const override;
};
