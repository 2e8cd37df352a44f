#include "examples/PrinterProcessorWin/JobFile.h"

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"

namespace {

constexpr DWORD cWaitMilliseconds = 5000;
constexpr DWORD cRetryMilliseconds = 20;

std::optional<unsigned long long> GetSizeOfOpenFile(HANDLE file) {
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(file, &size)) return std::nullopt;
    return static_cast<unsigned long long>(size.QuadPart);
}

}  // namespace

std::optional<unsigned long long> WaitForJobFile(const GString& nativePath) {
    for (DWORD waited = 0;; waited += cRetryMilliseconds) {
        // Without write sharing this fails as long as the monitor has the file open.
        const HANDLE file = ::CreateFileW(AsWide(nativePath), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            const auto size = GetSizeOfOpenFile(file);
            ::CloseHandle(file);
            return size;
        }
        if (::GetLastError() != ERROR_SHARING_VIOLATION || waited >= cWaitMilliseconds) return std::nullopt;
        ::Sleep(cRetryMilliseconds);
    }
}
