#include "framework/streams/GHeldStream.h"

#include "framework/core/errors/GException.h"

void GHeldStreamCheck::RequireStream(const void* stream) {
    if (stream == nullptr) throw GSimpleException(GExceptionID::cInvalidParameter);
}

void GHeldStreamCheck::RequireKind(const void* stream) {
    if (stream == nullptr) throw GSimpleException(GExceptionID::cGeneral);
}
