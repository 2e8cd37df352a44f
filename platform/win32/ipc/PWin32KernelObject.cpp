#include "platform/win32/ipc/PWin32KernelObject.h"

#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

struct PWin32KernelObject::OpenToEverybody::Content {
    SECURITY_DESCRIPTOR mDescriptor = {};
    SECURITY_ATTRIBUTES mAttributes = {};
};

PWin32KernelObject::OpenToEverybody::OpenToEverybody() : mContent(std::make_unique<Content>()) {
    if (!::InitializeSecurityDescriptor(&mContent->mDescriptor, SECURITY_DESCRIPTOR_REVISION) ||
        !::SetSecurityDescriptorDacl(&mContent->mDescriptor, TRUE, nullptr, FALSE))
        ThrowLastError();
    mContent->mAttributes.nLength = sizeof(SECURITY_ATTRIBUTES);
    mContent->mAttributes.lpSecurityDescriptor = &mContent->mDescriptor;
    mContent->mAttributes.bInheritHandle = FALSE;
}

PWin32KernelObject::OpenToEverybody::~OpenToEverybody() = default;

void* PWin32KernelObject::OpenToEverybody::GetAttributes() noexcept {
    return &mContent->mAttributes;
}

GString PWin32KernelObject::GetError(unsigned long code) {
    constexpr DWORD cFlags =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM;
    constexpr DWORD cUserLanguage = 0x400;
    char* text = nullptr;
    const DWORD length =
        ::FormatMessageA(cFlags, nullptr, code, cUserLanguage, reinterpret_cast<char*>(&text), 0, nullptr);
    // The function wants a pointer to a pointer behind a type that says otherwise.
    const PWin32ScopedHandle<PWin32LocalBlock> owner(text);
    if (length == 0 || text == nullptr) return GString(code);
    return GString(reinterpret_cast<const unsigned char*>(text), static_cast<long>(length),
                   GPlatformEncoding::GetInstance());
}

void PWin32KernelObject::ThrowLastError() {
    ThrowError(::GetLastError());
}

void PWin32KernelObject::ThrowError(unsigned long code) {
    throw GCustomException(GExceptionID::cGeneral, GetError(code));
}
