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

/// A name as the calls below take it. `text` outlives it.
struct Name {
    explicit Name(const std::wstring& text) {
        ::RtlInitUnicodeString(&units, text.c_str());
        InitializeObjectAttributes(&attributes, &units, OBJ_CASE_INSENSITIVE | cOpenIfExists, nullptr,
                                   nullptr);
    }

    UNICODE_STRING units = {};
    OBJECT_ATTRIBUTES attributes = {};
};

bool MakeDirectory(const std::wstring& path) {
    Name name(path);
    HANDLE kept = nullptr;
    return ::NtCreateDirectoryObject(&kept, cDirectoryAllAccess, &name.attributes) >= 0;
}

bool MakeLink(const std::wstring& path, const std::wstring& target) {
    Name name(path), where(target);
    HANDLE kept = nullptr;
    return ::NtCreateSymbolicLinkObject(&kept, cSymbolicLinkAllAccess, &name.attributes, &where.units) >= 0;
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
    while (std::getchar() != EOF) continue;
    return 0;
}
