#include "framework/ipc/GShMemID.h"

#include <memory>

#include "framework/core/containers/GDict.h"
#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

namespace {

// Identifiers are joined by this. While it is empty, nothing can begin or end with it.
constexpr const char* cSeparator = "";

using SpecialIDs = GDict<std::int32_t, GShMemID>;

std::unique_ptr<SpecialIDs>& GetSpecialIDs() {
    static std::unique_ptr<SpecialIDs> sSpecialIDs;  // null while the framework is not running
    return sSpecialIDs;
}

bool IsAllowed(char character) noexcept {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

bool IsSeparator(char character) noexcept {
    return cSeparator[0] != '\0' && character == cSeparator[0];
}

bool IsValid(const GBuffer& text) {
    const char* bytes = text.GetPtr();
    const long length = text.GetLength();
    if (IsSeparator(bytes[0]) || IsSeparator(bytes[length - 1])) return false;
    for (long position = 0; position < length; ++position)
        if (!IsAllowed(bytes[position])) return false;
    return true;
}

// The bytes of a text that ASCII can hold; GExceptionID::cInvalidShMemID for any other.
GBuffer ToASCII(const GString& text) {
    const GEncoding* ascii = GASCIIEncoding::GetInstance();
    GBuffer bytes = text.GetBuffer(ascii);
    if (GString(bytes, ascii) != text) throw GSimpleException(GExceptionID::cInvalidShMemID);
    return bytes;
}

}  // namespace

GShMemID::GShMemID(const GBuffer& text) {
    CheckAndInitialize(text);
}

GShMemID::GShMemID(const char* text) {
    CheckAndInitialize(GBuffer(text));
}

GShMemID::GShMemID(const GString& text) {
    if (!text.IsEmpty()) CheckAndInitialize(ToASCII(text));
}

void GShMemID::CheckAndInitialize(const GBuffer& text) {
    if (!text.IsEmpty() && !IsValid(text)) throw GSimpleException(GExceptionID::cInvalidShMemID);
    mText = text;
}

GShMemID operator+(const GShMemID& left, const GShMemID& right) {
    GBuffer text(left.mText);
    text += cSeparator;
    text += right.mText;
    return GShMemID(text);
}

GShMemID& GShMemID::operator+=(const GShMemID& right) {
    *this = *this + right;
    return *this;
}

const GShMemID& GShMemID::GetSpecialID(long number) {
    static const GShMemID sNone;
    const SpecialIDs* identifiers = GetSpecialIDs().get();
    const GShMemID* identifier =
        identifiers != nullptr ? identifiers->Find(static_cast<std::int32_t>(number)) : nullptr;
    return identifier != nullptr ? *identifier : sNone;
}

void GShMemID::Initialize() {
    auto identifiers = std::make_unique<SpecialIDs>();
    const GShMemID global("G");
    identifiers->Set(cProcess, GShMemID("P"));
    identifiers->Set(cGlobal, global);
    identifiers->Set(3, GShMemID("M"));
    identifiers->Set(cMessageQueue, GShMemID("MQ"));
    identifiers->Set(102, GShMemID("PS"));
    identifiers->Set(cRegistry, global + GShMemID("IPC"));
    identifiers->Set(cTestRegistry, global + GShMemID("IPCTest"));
    GetSpecialIDs() = std::move(identifiers);
}

void GShMemID::Finalize() {
    GetSpecialIDs().reset();
}
