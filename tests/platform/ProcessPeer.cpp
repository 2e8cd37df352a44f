// The program that the tests of external processes start. Its first argument says what it does:
//   exit CODE; wait FILE (exits with the number in FILE as soon as it is there, after a minute with 3);
//   argv FILE ARGUMENTS... (writes FILE: each argument as the C run-time library and as the system have taken
//   it apart, in UTF-16, each with its zero)
#include <cwchar>
#include <filesystem>
#include <fstream>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

#include <shellapi.h>

namespace {

int WriteArguments(int argc, wchar_t** argv) {
    std::wstring content;
    int count = 0;
    wchar_t** const taken = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    const PWin32ScopedHandle<PWin32LocalBlock> owned(taken);
    for (int i = 3; i < argc; ++i) content.append(argv[i]).push_back(L'\0');
    content.push_back(L'\1');
    for (int i = 3; i < count; ++i) content.append(taken[i]).push_back(L'\0');
    std::ofstream file(std::filesystem::path(argv[2]), std::ios::binary);
    file.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size() * sizeof(wchar_t)));
    return file.flush() ? 0 : 1;
}

int WaitForCode(const std::filesystem::path& path) {
    unsigned code = 0;
    for (int i = 0; i < 6000; ++i, ::Sleep(10))
        if (std::ifstream(path) >> code) return static_cast<int>(code);
    return 3;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const std::wstring what = argc > 1 ? argv[1] : L"";
    if (what == L"exit") return static_cast<int>(std::wcstol(argv[2], nullptr, 10));
    if (what == L"wait") return WaitForCode(argv[2]);
    return what == L"argv" && argc > 2 ? WriteArguments(argc, argv) : 2;
}
