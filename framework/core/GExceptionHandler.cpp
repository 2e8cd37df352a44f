#include "framework/core/GExceptionHandler.h"

#include <exception>

#include "framework/core/GString.h"

GExceptionHandler::~GExceptionHandler() = default;

void GExceptionHandler::Handle() const {
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

GDefaultExceptionHandler::~GDefaultExceptionHandler() = default;

void GDefaultExceptionHandler::Handle(const GSimpleException& exception) const {
    Handle(static_cast<const GException&>(exception));
}

void GDefaultExceptionHandler::Handle(const GMemoryException& exception) const {
    Handle(static_cast<const GException&>(exception));
}

void GDefaultExceptionHandler::Handle(const GException& exception) const {
    GErrorReporter::GetInstance()->Report(exception.GetFullDescription());
}
