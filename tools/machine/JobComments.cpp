#include "tools/machine/JobComments.h"

#include <memory>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/files/GFile.h"
#include "framework/streams/GFileInStream.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"
#include "platform/win32/files/PWin32FileImp.h"

GPostScriptComments ReadJobComments(PWin32ScopedHandle<PWin32FileHandle> file, const std::wstring& path) {
    const GPathName name = GPathName::FromNative(NameFromWide(path));
    const GSharedObject<GFile> opened(new GFile(std::make_unique<PWin32FileImp>(name, std::move(file))));
    return GPostScriptComments::Read(GFileInStream(opened));
}

// A server behind the path, should there be one after all, learns who asks and cannot act in his name.
std::optional<GPostScriptComments> TryReadJobComments(const std::wstring& path) {
    constexpr DWORD cSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    constexpr DWORD cFlags = FILE_FLAG_OPEN_REPARSE_POINT | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION;
    PWin32ScopedHandle<PWin32FileHandle> file(
        ::CreateFileW(path.c_str(), GENERIC_READ, cSharing, nullptr, OPEN_EXISTING, cFlags, nullptr));
    if (!file || ::GetFileType(file.Get()) != FILE_TYPE_DISK) return std::nullopt;
    try {
        return ReadJobComments(std::move(file), path);
    } catch (const GException&) {
        return std::nullopt;
    }
}
