#include "framework/streams/cipher/PCipher.h"

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

void PCipher::CheckKey(const GBuffer& key) {
    const long length = key.GetLength();
    if (length != 16 && length != 32) throw GSimpleException(GExceptionID::cWrongKeyLength);
}
