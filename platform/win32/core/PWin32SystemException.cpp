#include "platform/win32/core/PWin32SystemException.h"

#include "framework/core/errors/GStringPool.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

constexpr DWORD cEnglish = 1033;
constexpr DWORD cUserDefault = 1024;
constexpr DWORD cSystemDefault = 2048;

/// Asks for the message in one language; false when the system has none.
bool FindMessage(DWORD code, DWORD language, GString& text) {
    wchar_t* buffer = nullptr;
    // Some texts have inserts such as "%1", for which nobody here knows the values: they stay.
    const DWORD flags =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    DWORD length =
        ::FormatMessageW(flags, nullptr, code, language, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    if (length == 0) return false;
    const PWin32ScopedHandle<PWin32LocalBlock> owner(buffer);
    if (length >= 2 && buffer[length - 2] == L'\r' && buffer[length - 1] == L'\n') length -= 2;
    text = FromWide(buffer, static_cast<long>(length));
    return true;
}

bool FindMessage(DWORD code, GString& text) {
    if (GStringPoolSupport::GetCurrentLanguage() == "enUS" && FindMessage(code, cEnglish, text)) return true;
    return FindMessage(code, cUserDefault, text) || FindMessage(code, cSystemDefault, text);
}

}  // namespace

PWin32SystemException::PWin32SystemException(long errorCode)
    : GException(GExceptionID::cWin32SystemError), mErrorCode(static_cast<std::int32_t>(errorCode)) {}

PWin32SystemException::~PWin32SystemException() = default;

GLngString PWin32SystemException::GetLngDescription() const {
    GString message;
    if (FindMessage(static_cast<DWORD>(mErrorCode), message)) return GLngString(message);
    const DWORD lookupError = ::GetLastError();
    GLngString substitute(GString("Get system error string for error code %1 failed with error code %2"));
    substitute.AddParam(GString(static_cast<long>(mErrorCode))).AddParam(GString(lookupError));
    return substitute;
}

void PWin32SystemException::CheckForErrors(long result) {
    if (result == 0) throw PWin32SystemException(static_cast<long>(::GetLastError()));
}

void PWin32SystemException::CheckHandle(void* handle) {
    CheckForErrors(handle != nullptr && handle != INVALID_HANDLE_VALUE ? 1 : 0);
}
