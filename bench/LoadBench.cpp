// How long the spooler waits for our library when it loads it, beside a small one of the system.
//
//     LoadBench.exe <path of QuillonPortMonitor64.dll>
#include <cstdio>
#include <vector>

#include "bench/Comparison.h"
#include "platform/win32/base/PWin32Api.h"

#include <psapi.h>

namespace {

constexpr wchar_t cSmallLibrary[] = L"avrt.dll";

/// False when it cannot be loaded or does not leave, which would make the figures worthless.
bool LoadAndFree(const wchar_t* library) {
    const HMODULE module = ::LoadLibraryW(library);
    return module != nullptr && ::FreeLibrary(module) && ::GetModuleHandleW(library) == nullptr;
}

/// What of it is finding and mapping the file: its imports are not looked for, and nothing in it runs.
bool MapAndFree(const wchar_t* library) {
    const HMODULE module = ::LoadLibraryExW(library, nullptr, DONT_RESOLVE_DLL_REFERENCES);
    return module != nullptr && ::FreeLibrary(module) && ::GetModuleHandleW(library) == nullptr;
}

/// Loads what the library brings along, so that it stays when the library goes.
bool KeepImports(const wchar_t* library) {
    const HMODULE module = ::LoadLibraryW(library);
    std::vector<HMODULE> modules(1024);
    DWORD size = 0;
    const auto room = static_cast<DWORD>(modules.size() * sizeof modules[0]);
    if (!::EnumProcessModules(::GetCurrentProcess(), modules.data(), room, &size)) return false;
    modules.resize(size / sizeof modules[0]);
    for (const HMODULE other : modules) {
        wchar_t path[MAX_PATH];
        ::GetModuleFileNameW(other, path, MAX_PATH);
        if (other != module) ::LoadLibraryW(path);
    }
    return ::FreeLibrary(module);
}

void Compare(const char* what, const wchar_t* library, bool& good) {
    Comparison::Run({.what = what, .unit = "us"}, [&] { good = LoadAndFree(library) && good; },
                    {{"a small library", {0, 0}, [&] { good = LoadAndFree(cSmallLibrary) && good; }},
                     {"mapping it", {0, 0}, [&] { good = MapAndFree(library) && good; }}});
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const wchar_t* const library = argc == 2 ? argv[1] : L"QuillonPortMonitor64.dll";
    bool good = true;
    Compare("load and free, with all it needs", library, good);
    good = KeepImports(library) && good;
    // As in a spooler, where others use the system's libraries, too.
    Compare("load and free, alone", library, good);
    if (!good) std::fputs("LoadBench: a library was not loaded, or stayed\n", stderr);
    return good ? 0 : 1;
}
