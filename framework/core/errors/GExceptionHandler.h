#pragma once

#include <exception>

#include "framework/core/GExport.h"
#include "framework/core/errors/GErrorReporter.h"
#include "framework/core/errors/GException.h"
#include "framework/core/text/GString.h"

/// GExceptionHandler: what a boundary does with what was thrown.
///
/// Use: `catch (...) { handler.Handle(); }`. Handlers hold no state of their own and may serve any
/// number of threads. The classes stand whole in this header, because a module with its own C++
/// run-time library can throw again only what it has caught itself: whoever uses them takes a copy.
class QUILLON_EXPORT_INLINE GExceptionHandler {
public:
    GExceptionHandler() = default;
    GExceptionHandler(const GExceptionHandler&) = default;
    GExceptionHandler& operator=(const GExceptionHandler&) = default;
    virtual ~GExceptionHandler() = default;

    ///@{ What is done with a failure of that kind; the kinds of their own come before the general one.
    virtual void Handle(const GSimpleException& exception) const = 0;
    virtual void Handle(const GMemoryException& exception) const = 0;
    virtual void Handle(const GException& exception) const = 0;
    ///@}
    /// Only inside a catch block: hands the exception being handled to the overload for its type.
    /// GAbortException, and everything that is no GException, is thrown on; what an overload throws
    /// leaves in the place of the exception. Does nothing when no exception is being handled.
    virtual void Handle() const {
        // Without an exception to throw again the language would end the process.
        if (!std::current_exception()) return;
        try {
            throw;
        } catch (const GMemoryException& exception) {
            Handle(exception);
        } catch (const GSimpleException& exception) {
            Handle(exception);
        } catch (const GAbortException&) {
            throw;
        } catch (const GException& exception) {
            Handle(exception);
        }
    }
};

/// Hands the full description of every failure to the error reporter. What the reporter throws, and
/// want of memory for the text, leave the handler.
class QUILLON_EXPORT_INLINE GDefaultExceptionHandler : public GExceptionHandler {
public:
    using GExceptionHandler::Handle;
    /// Reports the full description.
    void Handle(const GSimpleException& exception) const override {
        Handle(static_cast<const GException&>(exception));
    }
    /// Reports the full description.
    void Handle(const GMemoryException& exception) const override {
        Handle(static_cast<const GException&>(exception));
    }
    /// Reports the full description.
    void Handle(const GException& exception) const override {
        GErrorReporter::GetInstance()->Report(exception.GetFullDescription());
    }
};
