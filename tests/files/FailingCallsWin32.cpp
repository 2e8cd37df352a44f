// The program's table of imports leads to these in the place of the system's calls.
#include "platform/win32/base/PWin32Api.h"
#include "tests/files/FailingCalls.h"

extern "C" {
extern void* __imp_CopyFileW;
extern void* __imp_DeleteFileW;
extern void* __imp_MoveFileExW;
}

namespace {

/// Puts a function in the place of an imported one as long as the program runs.
template <class Function>
Function Replace(void*& import, Function function) {
    const auto before = reinterpret_cast<Function>(import);
    DWORD protection = 0;
    ::VirtualProtect(&import, sizeof import, PAGE_READWRITE, &protection);
    import = reinterpret_cast<void*>(function);
    return before;
}

using Kind = FailingCalls::Kind;

bool Fails(Kind kind) {
    const FailingCalls::Failure failure = FailingCalls::Next(kind);
    if (failure == FailingCalls::Failure::cNone) return false;
    ::SetLastError(failure == FailingCalls::Failure::cDevice ? ERROR_IO_DEVICE : ERROR_NOT_SAME_DEVICE);
    return true;
}

BOOL WINAPI Copy(const wchar_t* from, const wchar_t* to, BOOL mustBeNew);
BOOL WINAPI Delete(const wchar_t* path);
BOOL WINAPI Move(const wchar_t* from, const wchar_t* to, DWORD flags);

const auto sCopy = Replace(__imp_CopyFileW, &Copy);
const auto sDelete = Replace(__imp_DeleteFileW, &Delete);
const auto sMove = Replace(__imp_MoveFileExW, &Move);

BOOL WINAPI Copy(const wchar_t* from, const wchar_t* to, BOOL mustBeNew) {
    // What has been copied by then stays in the target.
    const BOOL done = sCopy(from, to, mustBeNew);
    return Fails(Kind::cOther) ? FALSE : done;
}

BOOL WINAPI Delete(const wchar_t* path) {
    return Fails(Kind::cRemove) ? FALSE : sDelete(path);
}

BOOL WINAPI Move(const wchar_t* from, const wchar_t* to, DWORD flags) {
    return Fails(Kind::cMove) ? FALSE : sMove(from, to, flags);
}

}  // namespace
