#pragma once

#include <string>

#include "tools/quillonctl/CommandLine.h"
#include "tools/quillonctl/Printers.h"
#include "tools/quillonctl/Rollback.h"

/// Installation: the steps of `install`.
///
/// Each step looks first, so that a second run changes nothing, and records what it added. When a
/// step throws, the ones before it are undone.
class Installation {
public:
    explicit Installation(const CommandLine& wishes);

    /// Throws a Failure when it could not be done; the machine is then as before, except for what a
    /// printed warning names.
    void Run();

private:
    void InstallLibrary();
    void ReplaceLibrary();
    void CopyLibrary();
    void RegisterMonitor();
    void MakePortKey();
    void CheckPort() const;
    void TellReadiness() const;
    void InstallPrinter();
    void CheckDriverOf(const PrinterInfo& printer) const;
    std::wstring InstallDriver();
    std::wstring InstallDriverForWine();
    std::wstring UseNamedDriver();
    std::wstring UseAnyDriver();
    bool TakeDriverFromStore(const std::wstring& name);

    CommandLine mWishes;
    std::wstring mPrinterName;
    std::wstring mSource;  // full path of the library to install
    std::wstring mTarget;  // full path of its place in the system folder
    Rollback mRollback;
};
