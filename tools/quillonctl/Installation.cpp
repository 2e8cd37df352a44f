#include "tools/quillonctl/Installation.h"

#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SpoolerHost.h"
#include "tools/quillonctl/Drivers.h"
#include "tools/quillonctl/InstallRecord.h"
#include "tools/quillonctl/LibraryFile.h"
#include "tools/quillonctl/MonitorRegistry.h"
#include "tools/quillonctl/PageRecord.h"
#include "tools/quillonctl/Printers.h"
#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/SpoolerList.h"
#include "tools/quillonctl/Status.h"

namespace {

using Kind = InstallRecord::Kind;

void Say(const std::wstring& text) {
    Console::Write(text + L'\n');
}

void Warn(const std::wstring& text) {
    Console::WriteError(text + L'\n');
}

std::wstring GetDriverList() {
    std::wstring list;
    for (const DriverInfo& driver : Drivers::GetAll()) list += L"\n  " + driver.name;
    return list.empty() ? L" No printer driver is installed." : L" Installed drivers:" + list;
}

}  // namespace

Installation::Installation(const CommandLine& wishes)
    : mWishes(wishes),
      mPrinterName(wishes.printer.empty() ? Product::cPrinterName : wishes.printer),
      mSource(wishes.library.empty() ? LibraryFile::GetDeliveredPath() : wishes.library),
      mTarget(LibraryFile::GetInstalledPath(Product::cLibraryName)),
      mRollback(Warn) {}

void Installation::Run() {
    InstallLibrary();
    RegisterMonitor();
    MakePortKey();
    CheckPort();
    InstallPrinter();
    mRollback.Commit();
    TellReadiness();
}

// Ready is only what was seen to work. Printing a page here would send it to whoever listens.
void Installation::TellReadiness() const {
    if (MonitorRegistry::LacksForwarding()) {
        Say(std::wstring(L"Installed, but nothing can be printed yet.\n") +
            MonitorRegistry::cForwardingAdvice);
        return;
    }
    const std::wstring page = StatusFacts::Gather().GetPageOf(mPrinterName);
    if (page.empty()) {
        Say(L"Installed. Whether what is printed on '" + mPrinterName +
            L"' becomes a job file was not tried;\n'quillonctl testpage' does.");
    } else {
        Say(L"Ready: what is printed on '" + mPrinterName +
            L"' becomes a job file. The last page seen to arrive: " + page);
    }
}

void Installation::InstallLibrary() {
    if (!LibraryFile::Exists(mSource)) throw Failure(L"There is no library " + mSource + L".");
    if (const auto fault = LibraryFile::FindFault(mSource)) {
        throw Failure(mSource + L" cannot be installed. " + *fault);
    }
    if (!LibraryFile::Exists(mTarget)) {
        CopyLibrary();
        Say(L"Copied the library to " + mTarget + L".");
    } else if (LibraryFile::HaveSameContent(mSource, mTarget)) {
        Say(L"The library is in place: " + mTarget + L".");
    } else {
        ReplaceLibrary();
        Say(L"Replaced the library " + mTarget + L".");
    }
}

void Installation::CopyLibrary() {
    LibraryFile::Copy(mSource, mTarget);
    mRollback.AddUndo(L"the copied library", [target = mTarget] {
        LibraryFile::Remove(target);
        InstallRecord::Remove(Kind::cLibrary, target);
    });
    InstallRecord::Add(Kind::cLibrary, mTarget);
    mRollback.AddCompletion(PageRecord::Clear);
}

void Installation::ReplaceLibrary() {
    if (!InstallRecord::Contains(Kind::cLibrary, mTarget)) {
        throw Failure(L"Another " + mTarget +
                      L" is there, which this program did not install. Remove it first.");
    }
    const std::wstring aside = LibraryFile::MoveAside(mTarget);
    mRollback.AddUndo(L"the replaced library",
                      [aside, target = mTarget] { LibraryFile::PutBack(aside, target); });
    LibraryFile::Copy(mSource, mTarget);
    mRollback.AddCompletion(PageRecord::Clear);
    mRollback.AddCompletion([aside] {
        if (!LibraryFile::Discard(aside, 0)) {
            // Should it be let go before the next restart of the machine, uninstall removes it.
            InstallRecord::Add(Kind::cLibrary, aside);
            Say(L"The print spooler goes on with the old library until it is restarted.");
        }
    });
}

void Installation::RegisterMonitor() {
    if (const auto library = MonitorRegistry::GetLibraryName()) {
        Say(std::wstring(L"The port monitor is registered already (") + *library + L").");
        return;
    }
    MonitorRegistry::Register();
    mRollback.AddUndo(L"the registered port monitor", [] {
        MonitorRegistry::Unregister();
        InstallRecord::Remove(Kind::cMonitor, Product::cMonitorName);
    });
    InstallRecord::Add(Kind::cMonitor, Product::cMonitorName);
    mRollback.AddCompletion(PageRecord::Clear);
    Say(std::wstring(L"Registered the port monitor '") + Product::cMonitorName + L"'.");
}

void Installation::MakePortKey() {
    if (!SpoolerHost::IsWine() || MonitorRegistry::HasPortKey()) return;
    MonitorRegistry::AddPortKey();
    mRollback.AddUndo(L"the port's registry key", [] {
        MonitorRegistry::RemovePortKey();
        InstallRecord::Remove(Kind::cPortKey, Product::cPortName);
    });
    InstallRecord::Add(Kind::cPortKey, Product::cPortName);
    Say(std::wstring(L"Made the registry key of the port ") + Product::cPortName);
}

void Installation::CheckPort() const {
    if (MonitorRegistry::IsPortListed()) return;
    throw Failure(std::wstring(L"The print spooler does not list the port ") + Product::cPortName +
                  L" The registered library may be missing or damaged.");
}

void Installation::InstallPrinter() {
    if (const auto printer = Printers::Find(mPrinterName)) {
        if (!printer->IsOnOurPort()) {
            throw Failure(L"A printer '" + mPrinterName +
                          L"' exists on another port. Choose another name with --printer.");
        }
        CheckDriverOf(*printer);
        Say(L"The printer '" + printer->name + L"' is there already (driver '" + printer->driver + L"').");
        return;
    }
    const std::wstring driver = InstallDriver();
    Printers::Add(mPrinterName, driver);
    mRollback.AddUndo(L"the added printer", [name = mPrinterName] {
        Printers::Remove(name);
        InstallRecord::Remove(Kind::cPrinter, name);
    });
    InstallRecord::Add(Kind::cPrinter, mPrinterName, driver);
    Say(L"Added the printer '" + mPrinterName + L"' with the driver '" + driver + L"'.");
}

// A printer that is there keeps its driver, so a wish for another one cannot be met.
void Installation::CheckDriverOf(const PrinterInfo& printer) const {
    bool isAsWished = mWishes.driver.empty() || IsSameName(mWishes.driver, printer.driver);
    if (isAsWished && !mWishes.ppd.empty()) {
        const auto driver = Drivers::Find(printer.driver);
        isAsWished = driver && LibraryFile::HaveSameContent(mWishes.ppd, driver->dataFile);
    }
    if (isAsWished) return;
    throw Failure(L"The printer '" + printer.name + L"' is there already, with the driver '" +
                  printer.driver + L"'. Remove it first, or choose another name with --printer.");
}

std::wstring Installation::InstallDriver() {
    if (!mWishes.ppd.empty()) return InstallDriverForWine();
    if (!mWishes.driver.empty()) return UseNamedDriver();
    // A printer of ours that has gone comes back as it was.
    const std::wstring last = InstallRecord::GetDetail(Kind::cPrinter, mPrinterName);
    if (!last.empty() && (Drivers::Find(last) || TakeDriverFromStore(last))) return last;
    return UseAnyDriver();
}

std::wstring Installation::InstallDriverForWine() {
    if (!SpoolerHost::IsWine()) {
        throw Failure(L"--ppd works under Wine only. Name an installed driver with --driver.");
    }
    const std::wstring name = mWishes.driver.empty() ? Product::cWineDriverName : mWishes.driver;
    if (Drivers::Find(name)) {
        Say(L"The printer driver '" + name + L"' is there already.");
        return name;
    }
    // Wine takes a description that is not there and fails only when something is printed.
    if (!LibraryFile::Exists(mWishes.ppd)) throw Failure(L"There is no file " + mWishes.ppd + L'.');
    const std::wstring description = Drivers::InstallForWine(name, mWishes.ppd);
    mRollback.AddUndo(L"the installed printer driver", [name, description] {
        Drivers::Remove(name);
        LibraryFile::Remove(description);
        InstallRecord::Remove(Kind::cDriver, name);
    });
    InstallRecord::Add(Kind::cDriver, name, description);
    Say(L"Installed the printer driver '" + name + L"'.");
    return name;
}

std::wstring Installation::UseNamedDriver() {
    if (!Drivers::Find(mWishes.driver) && !TakeDriverFromStore(mWishes.driver)) {
        throw Failure(L"There is no printer driver '" + mWishes.driver + L"'." + GetDriverList());
    }
    const auto driver = Drivers::Find(mWishes.driver);
    if (!driver) throw Failure(L"The printer driver '" + mWishes.driver + L"' is not usable here.");
    if (!driver->IsPostScript()) {
        Warn(L"Warning: the driver '" + driver->name + L"' does not look like a PostScript driver.");
    }
    return driver->name;
}

std::wstring Installation::UseAnyDriver() {
    const std::vector<DriverInfo> drivers = Drivers::GetAll();
    if (const DriverInfo* own = FindDriverOfWindows(drivers)) {
        Say(L"Chose the driver '" + own->name + L"', which Windows brings along.");
        return own->name;
    }
    for (const std::wstring& name : GetDriversOfWindows()) {
        if (TakeDriverFromStore(name)) return name;
    }
    if (const DriverInfo* any = FindPostScriptDriver(drivers)) {
        Say(L"Chose the driver '" + any->name + L"', as none that Windows brings along could be had.");
        return any->name;
    }
    throw Failure(L"No PostScript printer driver was found. Name one with --driver" +
                  std::wstring(SpoolerHost::IsWine() ? L", or a printer's description with --ppd." : L".") +
                  GetDriverList());
}

bool Installation::TakeDriverFromStore(const std::wstring& name) {
    std::wstring problem;
    if (!Drivers::InstallFromStore(name, problem)) {
        if (!problem.empty()) Warn(L"The driver store does not give '" + name + L"': " + problem);
        return false;
    }
    mRollback.AddUndo(L"the installed printer driver", [name] {
        Drivers::Remove(name);
        InstallRecord::Remove(Kind::cDriver, name);
    });
    InstallRecord::Add(Kind::cDriver, name);
    Say(L"Installed the printer driver '" + name + L"' from the driver store.");
    return true;
}
