// SessionNames: makes the object name spaces of further sessions under Wine and keeps them while it runs.
//
//     SessionNames.exe <session> ...      writes "ready", then waits for its input to end
//
// Wine has the name spaces Session\0 and Session\1 only; the others vanish with the handles held here.
#include <cstdio>
#include <string>

#include "platform/win32/base/PWin32Api.h"

#include <winternl.h>

extern "C" {
NTSTATUS NTAPI NtCreateDirectoryObject(HANDLE*, ULONG, OBJECT_ATTRIBUTES*);
NTSTATUS NTAPI NtCreateSymbolicLinkObject(HANDLE*, ULONG, OBJECT_ATTRIBUTES*, UNICODE_STRING*);
}

namespace {

constexpr ULONG cDirectoryAllAccess = 0xF000F;
constexpr ULONG cSymbolicLinkAllAccess = 0xF0001;
constexpr ULONG cOpenIfExists = 0x80;

UNICODE_STRING AsUnicode(std::wstring& text) {
    const auto bytes = static_cast<USHORT>(text.size() * sizeof(wchar_t));
    return {bytes, bytes, text.data()};
}

OBJECT_ATTRIBUTES Named(UNICODE_STRING& name) {
    OBJECT_ATTRIBUTES attributes = {};
    InitializeObjectAttributes(&attributes, &name, OBJ_CASE_INSENSITIVE | cOpenIfExists, nullptr, nullptr);
    return attributes;
}

bool MakeDirectory(std::wstring path) {
    UNICODE_STRING name = AsUnicode(path);
    OBJECT_ATTRIBUTES attributes = Named(name);
    HANDLE kept = nullptr;
    return ::NtCreateDirectoryObject(&kept, cDirectoryAllAccess, &attributes) >= 0;
}

bool MakeLink(std::wstring path, std::wstring target) {
    UNICODE_STRING name = AsUnicode(path);
    UNICODE_STRING where = AsUnicode(target);
    OBJECT_ATTRIBUTES attributes = Named(name);
    HANDLE kept = nullptr;
    return ::NtCreateSymbolicLinkObject(&kept, cSymbolicLinkAllAccess, &attributes, &where) >= 0;
}

bool MakeNameSpace(const std::wstring& session) {
    const std::wstring names = L"\\Sessions\\" + session + L"\\BaseNamedObjects";
    return MakeDirectory(L"\\Sessions\\" + session) && MakeDirectory(names) &&
           MakeLink(L"\\Sessions\\BNOLINKS\\" + session, names);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    for (int i = 1; i < argc; ++i) {
        if (!MakeNameSpace(argv[i])) {
            std::fprintf(stderr, "SessionNames: session %ls cannot be made\n", argv[i]);
            return 1;
        }
    }
    std::puts("ready");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
