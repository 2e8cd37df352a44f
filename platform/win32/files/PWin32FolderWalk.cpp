#include "platform/win32/files/PWin32FolderWalk.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

#include "framework/core/errors/GExceptionLocation.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

#include <winternl.h>

namespace {

using Handle = PWin32ScopedHandle<PWin32FileHandle>;
using Opened = PWin32FolderWalk::Opened;

constexpr ACCESS_MASK cLookAccess = FILE_READ_ATTRIBUTES | READ_CONTROL | SYNCHRONIZE;
constexpr ULONG cShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr ULONG cNoLink = FILE_OPEN_REPARSE_POINT | FILE_SYNCHRONOUS_IO_NONALERT;

/// How the system is asked for an object by its name in a folder. There are no calls with a folder and a
/// name in the documented layer above.
struct Request {
    ACCESS_MASK mAccess;
    ULONG mShare;
    ULONG mDisposition;
    ULONG mOptions;
    void* mDescriptor = nullptr;
};

[[noreturn]] void ThrowFailure(long failure, const GString& name) {
    const GExceptionLocation location(name);
    throw PWin32SystemException(failure);
}

Opened OpenIn(const Handle& folder, const GString& name, const Request& request) {
    UNICODE_STRING text = {};
    ::RtlInitUnicodeString(&text, AsWide(name));
    OBJECT_ATTRIBUTES object = {};
    object.Length = sizeof object;
    object.RootDirectory = folder.Get();
    object.ObjectName = &text;
    object.Attributes = OBJ_CASE_INSENSITIVE;
    object.SecurityDescriptor = request.mDescriptor;
    IO_STATUS_BLOCK status = {};
    HANDLE handle = INVALID_HANDLE_VALUE;
    const NTSTATUS result =
        ::NtCreateFile(&handle, request.mAccess, &object, &status, nullptr, FILE_ATTRIBUTE_NORMAL,
                       request.mShare, request.mDisposition, cNoLink | request.mOptions, nullptr, 0);
    Opened opened;
    if (result < 0) {
        opened.mFailure = static_cast<std::int32_t>(::RtlNtStatusToDosError(result));
    } else {
        opened.mHandle.Reset(handle);
        opened.mIsNew = status.Information == FILE_CREATED;
    }
    return opened;
}

Request RequestFor(PWin32FolderWalk::Purpose purpose) {
    switch (purpose) {
        case PWin32FolderWalk::Purpose::cEnter:
            // Access to the content, so that not sharing the right to delete it has an effect.
            return {cLookAccess | FILE_TRAVERSE, FILE_SHARE_READ | FILE_SHARE_WRITE, FILE_OPEN,
                    FILE_OPEN_FOR_BACKUP_INTENT};
        case PWin32FolderWalk::Purpose::cWrite:
            return {cLookAccess | FILE_GENERIC_WRITE, FILE_SHARE_READ, FILE_OPEN_IF, FILE_NON_DIRECTORY_FILE};
        case PWin32FolderWalk::Purpose::cWriteThrough:
            return {cLookAccess | FILE_GENERIC_WRITE, FILE_SHARE_READ, FILE_OPEN_IF,
                    FILE_NON_DIRECTORY_FILE | FILE_WRITE_THROUGH};
        case PWin32FolderWalk::Purpose::cRead:
            return {cLookAccess | FILE_GENERIC_READ, cShareAll, FILE_OPEN, FILE_NON_DIRECTORY_FILE};
        default:
            return {cLookAccess, cShareAll, FILE_OPEN, FILE_OPEN_FOR_BACKUP_INTENT};
    }
}

/// The name that an object was opened by.
GPathName GetOpenedPath(HANDLE object) {
    constexpr DWORD cSize = sizeof(FILE_NAME_INFO) + UNICODE_STRING_MAX_BYTES;
    const auto block = std::make_unique<unsigned char[]>(cSize);
    if (!::GetFileInformationByHandleEx(object, FileNameInfo, block.get(), cSize)) return GPathName();
    const auto& name = *reinterpret_cast<const FILE_NAME_INFO*>(block.get());
    return GPathName::FromNative(
        NameFromWide(name.FileName, static_cast<long>(name.FileNameLength / sizeof(WCHAR))));
}

/// The path on its volume: whoever goes down without following links stays there, and not every volume has a
/// letter.
GPathName GetFinalPath(HANDLE object) {
    std::vector<wchar_t> path(MAX_PATH);
    DWORD length = ::GetFinalPathNameByHandleW(object, path.data(), MAX_PATH, VOLUME_NAME_NONE);
    if (length >= path.size()) {
        path.resize(length);
        length = ::GetFinalPathNameByHandleW(object, path.data(), length, VOLUME_NAME_NONE);
    }
    // Some systems tell no path that is longer than MAX_PATH.
    if (length == 0 || length >= path.size()) return GetOpenedPath(object);
    return GPathName::FromNative(NameFromWide(path.data(), static_cast<long>(length)));
}

GFileFacts::Kind KindOf(HANDLE object, DWORD attributes) {
    if (::GetFileType(object) != FILE_TYPE_DISK) return GFileFacts::Kind::cDevice;
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? GFileFacts::Kind::cFolder : GFileFacts::Kind::cFile;
}

/// What the system takes to rename an object, with room for the name behind it.
std::vector<unsigned char> MakeRenaming(HANDLE folder, const GString& newName) {
    struct Head {
        ULONG mFlags;  // none: what is there is not replaced
        HANDLE mFolder;
        ULONG mNameSize;
        WCHAR mName[1];
    };
    Head head = {};
    head.mFolder = folder;
    head.mNameSize = static_cast<ULONG>(newName.GetLength() * sizeof(WCHAR));
    std::vector<unsigned char> renaming(sizeof head + head.mNameSize);
    std::memcpy(renaming.data(), &head, sizeof head);
    std::memcpy(renaming.data() + offsetof(Head, mName), AsWide(newName), head.mNameSize);
    return renaming;
}

}  // namespace

bool PWin32FolderWalk::Opened::IsMissing() const noexcept {
    return mFailure == ERROR_FILE_NOT_FOUND || mFailure == ERROR_PATH_NOT_FOUND;
}

PWin32FolderWalk::Opened PWin32FolderWalk::OpenStart(const GPathName& path) const {
    Opened start;
    start.mHandle.Reset(::CreateFileW(AsWide(path.GetWin32APIPathString()), cLookAccess | FILE_TRAVERSE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!start) ThrowFailure(static_cast<long>(::GetLastError()), path.GetNativePathString());
    return start;
}

bool PWin32FolderWalk::MakeFolder(const GString& name) const {
    const Request request = {cLookAccess, cShareAll, FILE_CREATE, FILE_DIRECTORY_FILE,
                             mUser.GetFolderDescriptor()};
    const Opened made = OpenIn(mFolders.back(), name, request);
    if (!made && made.mFailure != ERROR_ALREADY_EXISTS) Throw(made, name);
    return made.mIsNew;
}

PWin32FolderWalk::Opened PWin32FolderWalk::Open(const GString& name, Purpose purpose) const {
    return OpenIn(mFolders.back(), name, RequestFor(purpose));
}

void PWin32FolderWalk::Throw(const Opened& nothing, const GString& name) const {
    ThrowFailure(nothing.mFailure, name);
}

PWin32FolderWalk::Renamed PWin32FolderWalk::Rename(const GString& name, const GString& newName) const {
    constexpr FILE_INFORMATION_CLASS cRenameInformation = static_cast<FILE_INFORMATION_CLASS>(10);
    // The right to delete comes with the folder, whatever the object's own rights are.
    const Request request = {DELETE | SYNCHRONIZE, cShareAll, FILE_OPEN, FILE_OPEN_FOR_BACKUP_INTENT};
    const Opened object = OpenIn(mFolders.back(), name, request);
    if (object.IsMissing()) return Renamed::cMissing;
    if (!object) Throw(object, name);
    std::vector<unsigned char> renaming = MakeRenaming(mFolders.back().Get(), newName);
    IO_STATUS_BLOCK status = {};
    const NTSTATUS result = ::NtSetInformationFile(object.mHandle.Get(), &status, renaming.data(),
                                                   static_cast<ULONG>(renaming.size()), cRenameInformation);
    if (result >= 0) return Renamed::cDone;
    const DWORD failure = ::RtlNtStatusToDosError(result);
    if (failure != ERROR_ALREADY_EXISTS) ThrowFailure(static_cast<long>(failure), name);
    return Renamed::cTaken;
}

GFileFacts PWin32FolderWalk::GetFacts(const Opened& object) const {
    GFileFacts facts;
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!object || !::GetFileInformationByHandle(object.mHandle.Get(), &information)) return facts;
    facts.mKind = KindOf(object.mHandle.Get(), information.dwFileAttributes);
    facts.mOwner = mUser.GetOwnerOf(object.mHandle.Get());
    facts.mIsReparsePoint = (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    facts.mLinkCount = static_cast<std::int32_t>(information.nNumberOfLinks);
    facts.mFinalPath = GetFinalPath(object.mHandle.Get());
    return facts;
}

std::unique_ptr<PWin32FileImp> PWin32FolderWalk::TakeFile(Opened&& file, const GPathName& path) {
    return std::make_unique<PWin32FileImp>(path, std::move(file.mHandle));
}
