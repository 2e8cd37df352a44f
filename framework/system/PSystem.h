#pragma once

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"

/// PSystem: questions about the machine, the operating system and the running module.
///
/// Callable from any thread, except SetHInstance and SetOSCode, which belong to start-up and tests.
class QUILLON_EXPORT PSystem {
public:
    static constexpr long cPlatformWindows = 2;  ///< what GetPlatformCode() says of the product
    static constexpr long cPlatformUNIX = 3;     ///< what it says of the native build

    /// @name Operating system
    /// @{

    /// The code of GOSVersion::GetOSCode, found out once; 0 when the system does not tell its version.
    static long GetOSCode();
    /// Replaces the code, to try the rules that depend on it; cUnknownOSCode finds it out again.
    static void SetOSCode(long code);
    static constexpr long cUnknownOSCode = -1;  ///< for SetOSCode()
    static long GetPlatformCode();              ///< cPlatformWindows or cPlatformUNIX
    static bool IsWindowsServer();              ///< false when the system does not tell
    static bool IsNTOrBetter();                 ///< whether GetOSCode() has a code
    /// True for a 32-bit process on a 64-bit system.
    static bool IsWow64();
    /// @}

    /// @name Machine and user
    /// @{

    /// The computer's DNS host name; false with an empty name when the system does not tell.
    static bool GetNetworkName(GString& name);
    /// The name of the calling thread's user, at most 254 units; false with an empty name when the
    /// system does not tell.
    static bool GetLogonName(GString& name);
    /// The hardware addresses of the network adapters, as bytes; false with an empty table when the
    /// system does not tell.
    static bool GetEtherAddress(GTable<GBuffer>& addresses);
    /// The same as texts of FormatEtherAddress; addresses that do not have six bytes are left out.
    static bool GetEtherAddress(GTable<GString>& addresses);
    /// "00:1a:2b:3c:4d:5eN" (18 characters); the last letter is "M" for the pseudo-address of a dial-up
    /// adapter, which begins with "DEST" and a zero byte. Empty unless `address` has six bytes.
    static GString FormatEtherAddress(const GBuffer& address);
    /// Logical ones, as the system counts them for a process: on Windows 64 at most.
    static long GetNumberOfProcessors();
    /// @}

    /// @name Modules
    /// @{

    /// The handle of the module that holds the framework (an HINSTANCE); null stands for the program.
    static void SetHInstance(void* module);
    static void* GetHInstance();  ///< null before SetHInstance()
    /// The file of the module that was set by SetHInstance, and of the running program.
    /// The file of the module that was set by SetHInstance(), of the program when none was; empty when the
    /// system does not tell.
    static GPathName GetDllPath();
    /// The file of the running program; empty when the system does not tell.
    static GPathName GetApplicationPath();
    /// @}

    ///@{ Waits; less than nothing is nothing.
    static void Sleep(double seconds);
    static void MilliSleep(long milliseconds);
    ///@}

    /// The unit between the components of a native path.
    static unsigned short GetPathSeparator();
    ///@{ The line end of GBufferSupport.
    static bool GetLineEndingNeedsCR();
    static bool GetLineEndingNeedsLF();
    ///@}

    ///@{ Sends a zero-terminated text to the debugger's output. The last error stays as it was. A null
    /// pointer sends nothing.
    static void Trace(const wchar_t* text) noexcept;
    static void Trace(const char* text) noexcept;
    ///@}
};
