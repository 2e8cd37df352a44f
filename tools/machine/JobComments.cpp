#include "tools/machine/JobComments.h"

#include <memory>
#include <utility>

#include "framework/files/GFile.h"
#include "framework/streams/GFileInStream.h"
#include "platform/win32/core/PWin32Wide.h"
#include "platform/win32/files/PWin32FileImp.h"

GPostScriptComments ReadJobComments(PWin32ScopedHandle<PWin32FileHandle> file, const std::wstring& path) {
    const GPathName name = GPathName::FromNative(NameFromWide(path.data(), static_cast<long>(path.size())));
    const GSharedObject<GFile> opened(new GFile(std::make_unique<PWin32FileImp>(name, std::move(file))));
    return GPostScriptComments::Read(GFileInStream(opened));
}
