#include "platform/win32/system/PWinExternalProcessImp.h"

#include <algorithm>

#include "framework/system/GExternalProcess.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

DWORD PriorityClass(long priority) {
    switch (priority) {
        case GExternalProcess::cRealTime:
            return REALTIME_PRIORITY_CLASS;
        case GExternalProcess::cHigh:
            return HIGH_PRIORITY_CLASS;
        case GExternalProcess::cAboveNormal:
            return ABOVE_NORMAL_PRIORITY_CLASS;
        case GExternalProcess::cBelowNormal:
            return BELOW_NORMAL_PRIORITY_CLASS;
        case GExternalProcess::cIdle:
            return IDLE_PRIORITY_CLASS;
        default:
            return NORMAL_PRIORITY_CLASS;
    }
}

bool IsBatchFile(const GPathName& program) {
    GString extension = program.GetExtension();
    extension.ToLower();
    return extension == GString("bat");
}

// By its full path: the system would look for a bare name in the current folder, too.
GString CommandInterpreter() {
    wchar_t folder[MAX_PATH];
    const UINT length = ::GetSystemDirectoryW(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return GString();
    return NameFromWide(folder, static_cast<long>(length)) + GString("\\cmd.exe");
}

bool HasZero(const GString& text) {
    return text.FindFirst(static_cast<unsigned short>(0)) >= 0;
}

}  // namespace

GExternalProcessImp* GExternalProcessImp::Create(long processID) {
    return new PWinExternalProcessImp(static_cast<unsigned long>(processID));
}

bool PWinExternalProcessImp::Run(const GPathName& program, const GTable<GString>& arguments, bool showWindow,
                                 bool argumentsPrepared, const GPathName& workingFolder) {
    const GString native = program.GetNativePathString();
    const GString folder = workingFolder.IsEmpty() ? GString() : workingFolder.GetNativePathString();
    const GString line = GExternalProcess::MakeCommandLine(native, arguments, argumentsPrepared);
    if (HasZero(line) || HasZero(folder)) return false;
    if (!IsBatchFile(program)) return Start(AsWide(native), line, showWindow, folder);
    const GString interpreter = CommandInterpreter();
    if (interpreter.IsEmpty()) return false;
    return Start(nullptr, GString("\"") + interpreter + GString("\" /c \"") + line + GString("\""),
                 showWindow, folder);
}

bool PWinExternalProcessImp::Start(const wchar_t* application, const GString& line, bool showWindow,
                                   const GString& folder) {
    STARTUPINFOW startup = {};
    static_assert(sizeof startup == 104);
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = showWindow ? SW_SHOW : SW_HIDE;
    PROCESS_INFORMATION started = {};
    // The call writes into the line.
    GBuffer writable(reinterpret_cast<const unsigned char*>(line.GetUTF16Ptr()), 2 * line.GetLength());
    if (!::CreateProcessW(application, reinterpret_cast<wchar_t*>(writable.GetWritePtr()), nullptr, nullptr,
                          FALSE, CREATE_NEW_CONSOLE, nullptr, folder.IsEmpty() ? nullptr : AsWide(folder),
                          &startup, &started))
        return false;
    mProcess.Reset(started.hProcess);
    mThread.Reset(started.hThread);
    mProcessID = started.dwProcessId;
    mReturnValue = 0;
    mTried = true;
    return true;
}

/// With the right to wait for it, if it may be had.
bool PWinExternalProcessImp::Obtain() {
    if (!mTried) {
        mTried = true;
        mProcess.Reset(::OpenProcess(PROCESS_QUERY_INFORMATION | SYNCHRONIZE, FALSE, mProcessID));
        if (!mProcess) mProcess.Reset(::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, mProcessID));
    }
    return static_cast<bool>(mProcess);
}

bool PWinExternalProcessImp::IsRunning() {
    DWORD code = 0;
    if (!Obtain() || !::GetExitCodeProcess(mProcess.Get(), &code)) return false;
    if (code == STILL_ACTIVE) return true;
    mReturnValue = static_cast<std::int32_t>(code);
    return false;
}

bool PWinExternalProcessImp::WaitForEnd(long milliseconds) {
    DWORD code = 0;
    if (!Obtain()) return false;
    if (::WaitForSingleObject(mProcess.Get(), static_cast<DWORD>(std::max(milliseconds, 0L))) !=
        WAIT_OBJECT_0)
        return false;
    if (!::GetExitCodeProcess(mProcess.Get(), &code)) return false;
    mReturnValue = static_cast<std::int32_t>(code);
    return true;
}

bool PWinExternalProcessImp::SetPriority(long priority) {
    // The handle that is held keeps the ID from being given to another process meanwhile.
    if (!Obtain()) return false;
    const PWin32ScopedHandle<PWin32KernelHandle> process(
        ::OpenProcess(PROCESS_SET_INFORMATION, FALSE, mProcessID));
    return process && ::SetPriorityClass(process.Get(), PriorityClass(priority)) != FALSE;
}

bool PWinExternalProcessImp::TerminateProcess() {
    const PWin32ScopedHandle<PWin32KernelHandle> process(::OpenProcess(PROCESS_TERMINATE, FALSE, mProcessID));
    return process && ::TerminateProcess(process.Get(), 0) != FALSE;
}

void PWinExternalProcessImp::DetachProcess() {
    mThread.Reset(PWin32KernelHandle::None());
    mProcess.Reset(PWin32KernelHandle::None());
    mTried = false;
}
