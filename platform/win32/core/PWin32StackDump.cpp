#include <cstdio>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/PStackDump.h"

#include "platform/win32/base/PWin32Api.h"
// After the Windows header that it is made of.
#include <dbghelp.h>

namespace {

constexpr DWORD cMaxName = 255;

/// The symbol handler belongs to the process; it is asked for once.
struct SymbolHandler {
    bool mAvailable;
    DWORD mError;

    SymbolHandler() : mAvailable(::SymInitialize(::GetCurrentProcess(), nullptr, FALSE) != FALSE) {
        mError = mAvailable ? 0 : ::GetLastError();
        // Names are undecorated here, with a limit of our own.
        if (mAvailable) ::SymSetOptions(::SymGetOptions() & ~static_cast<DWORD>(SYMOPT_UNDNAME));
    }

    static const SymbolHandler& Get() {
        static const SymbolHandler sHandler;
        return sHandler;
    }
};

bool GetModule(DWORD64 address, IMAGEHLP_MODULE64& module) {
    module = {};
    module.SizeOfStruct = sizeof module;
    return ::SymGetModuleInfo64(::GetCurrentProcess(), address, &module) != FALSE;
}

/// A handler that was not shown the process's modules at the start learns of each when a frame lies
/// in it.
DWORD64 CALLBACK GetModuleBase(HANDLE process, DWORD64 address) {
    IMAGEHLP_MODULE64 module;
    if (GetModule(address, module)) return module.BaseOfImage;
    MEMORY_BASIC_INFORMATION memory;
    if (::VirtualQuery(reinterpret_cast<void*>(address), &memory, sizeof memory) == 0) return 0;
    const auto image = static_cast<HMODULE>(memory.AllocationBase);
    char path[MAX_PATH];
    const DWORD length = ::GetModuleFileNameA(image, path, MAX_PATH);
    if (image == nullptr || length == 0 || length == MAX_PATH) return 0;
    const auto base = reinterpret_cast<DWORD64>(image);
    ::SymLoadModule64(process, nullptr, path, nullptr, base, 0);
    return base;
}

using Capture = void(WINAPI*)(CONTEXT*);

void WINAPI CaptureByThread(CONTEXT* context) {
    ::GetThreadContext(::GetCurrentThread(), context);
}

Capture FindCapture() {
    const FARPROC entry = ::GetProcAddress(::GetModuleHandleA("Kernel32.dll"), "RtlCaptureContext");
    return entry != nullptr ? reinterpret_cast<Capture>(reinterpret_cast<void*>(entry)) : CaptureByThread;
}

STACKFRAME64 MakeFirstFrame(const CONTEXT& context) {
    STACKFRAME64 frame = {};
    frame.AddrPC.Offset = context.Rip;
    frame.AddrStack.Offset = context.Rsp;
    frame.AddrFrame.Offset = context.Rbp;
    frame.AddrPC.Mode = frame.AddrStack.Mode = frame.AddrFrame.Mode = AddrModeFlat;
    return frame;
}

long CollectAddresses(DWORD64 (&addresses)[PStackDump::cMaxFrames]) {
    CONTEXT context = {};
    context.ContextFlags = CONTEXT_FULL;
    // In this very frame: what was captured in one that has returned is overwritten by the walk.
    FindCapture()(&context);
    STACKFRAME64 frame = MakeFirstFrame(context);
    long count = 0;
    while (count < PStackDump::cMaxFrames &&
           ::StackWalk64(IMAGE_FILE_MACHINE_AMD64, ::GetCurrentProcess(), ::GetCurrentThread(), &frame,
                         &context, nullptr, ::SymFunctionTableAccess64, GetModuleBase, nullptr) != FALSE &&
           frame.AddrPC.Offset != 0)
        addresses[count++] = frame.AddrPC.Offset;
    return count;
}

void AppendSymbol(GBuffer& text, DWORD64 address) {
    alignas(IMAGEHLP_SYMBOL64) char block[sizeof(IMAGEHLP_SYMBOL64) + cMaxName + 1] = {};
    auto* const symbol = reinterpret_cast<IMAGEHLP_SYMBOL64*>(block);
    symbol->SizeOfStruct = sizeof(IMAGEHLP_SYMBOL64);
    symbol->MaxNameLength = cMaxName;
    DWORD64 displacement = 0;
    if (::SymGetSymFromAddr64(::GetCurrentProcess(), address, &displacement, symbol) == FALSE) {
        text += "Symbol not found";
        return;
    }
    char name[cMaxName + 1] = {};
    const DWORD length = ::UnDecorateSymbolName(symbol->Name, name, sizeof name, UNDNAME_COMPLETE);
    if (length == 0) {
        text += "<unknown symbol>";
        return;
    }
    text += name;
    text += " + ";
    text += GBuffer(static_cast<unsigned long long>(displacement));
    text += " bytes";
}

void AppendFrame(GBuffer& text, DWORD64 address) {
    char number[32];  // eight digits at least; an address of 64 bits shows them all
    std::snprintf(number, sizeof number, "%8.8llX: ", static_cast<unsigned long long>(address));
    text += number;
    IMAGEHLP_MODULE64 module;
    if (GetModule(address, module)) {
        text += module.ModuleName;
        text += "! ";
    } else {
        text += "<unknown module>";
    }
    AppendSymbol(text, address);
    text += "\n";
}

}  // namespace

void PStackDump::AppendTo(GBuffer& text) {
    const SymbolHandler& handler = SymbolHandler::Get();
    if (!handler.mAvailable) {
        text += "Error: IMAGEHLP.DLL was not found; GetLastError() returned ";
        text += GBuffer(static_cast<long>(handler.mError));
        text += "\n";
        return;
    }
    DWORD64 addresses[cMaxFrames];
    const long count = CollectAddresses(addresses);
    for (long i = 0; i < count; ++i) AppendFrame(text, addresses[i]);
}
