// gs.exe: hands its arguments to the Ghostscript of the machine that Wine runs on, and ends as that does.
//
// Wine starts programs of that machine but does not wait for them, so a shell leaves the exit code in a file.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "framework/system/GExternalProcess.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"

namespace {

using ToHostPath = char*(__cdecl*)(const wchar_t*);

GString ToHost(const std::wstring& path) {
    static const auto sToHost = reinterpret_cast<ToHostPath>(reinterpret_cast<void*>(
        ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    char* const host = sToHost != nullptr ? sToHost(path.c_str()) : nullptr;
    if (host == nullptr) std::exit(100);
    const GString text = GString::FromUTF8(host);
    ::HeapFree(::GetProcessHeap(), 0, host);
    return text;
}

// "-sOutputFile=C:\x.pdf" with the host's path in it.
GString TranslateArgument(const std::wstring& argument) {
    const std::size_t colon = argument.find(L":\\");
    if (colon == argument.npos || colon == 0)
        return FromWide(argument.data(), static_cast<long>(argument.size()));
    return FromWide(argument.data(), static_cast<long>(colon - 1)) + ToHost(argument.substr(colon - 1));
}

int WaitForResult(const std::wstring& path) {
    for (int i = 0; i < 6000; ++i, ::Sleep(20)) {
        std::FILE* const file = ::_wfopen(path.c_str(), L"rb");
        if (file == nullptr) continue;
        int code = 101;
        if (std::fscanf(file, "%d", &code) != 1) code = 102;
        std::fclose(file);
        ::DeleteFileW(path.c_str());
        return code;
    }
    return 103;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    wchar_t folder[MAX_PATH];
    ::GetTempPathW(MAX_PATH, folder);
    const std::wstring result = std::wstring(folder) + L"gs-" + std::to_wstring(::GetCurrentProcessId());
    GTable<GString> arguments = {"-c", "r=$1; shift; gs \"$@\"; echo $? >\"$r.new\"; mv \"$r.new\" \"$r\"",
                                 "gs", ToHost(result)};
    for (int i = 1; i < argc; ++i) arguments.Append(TranslateArgument(argv[i]));
    for (GString& argument : arguments) argument = GExternalProcess::PrepareArgument(argument);
    GExternalProcess shell;
    if (!shell.Run(GPathName::FromNative("Z:\\bin\\sh"), arguments, false, true)) return 104;
    return WaitForResult(result);
}
