#pragma once

#include <optional>
#include <string>
#include <vector>

/// A printer driver of this machine.
struct DriverInfo {
    std::wstring name;
    std::wstring renderer;  // full path of the module that makes the pages
    std::wstring dataFile;  // full path of the printer's description

    /// Whether its output is PostScript, as far as name and renderer tell.
    bool IsPostScript() const;
};

/// Drivers: the printer drivers for 64-bit Windows. Whatever the spooler refuses is thrown as a
/// Failure.
class Drivers {
public:
    static std::vector<DriverInfo> GetAll();
    /// Nothing when there is none of that name, whatever its case.
    static std::optional<DriverInfo> Find(const std::wstring& name);

    /// Takes a driver that Windows carries along but has not installed yet out of its driver store. False
    /// when there is no store, or it does not give it; `problem` then says why, or is empty.
    static bool InstallFromStore(const std::wstring& name, std::wstring& problem);
    /// Makes a driver of Wine's PostScript renderer and a description file. Returns the full path of
    /// the spooler's copy of the description.
    static std::wstring InstallForWine(const std::wstring& name, const std::wstring& ppd);
    static void Remove(const std::wstring& name);
};

/// The PostScript drivers that Windows brings along, best first. One of some printer's maker may add what
/// only that printer understands.
const std::vector<std::wstring>& GetDriversOfWindows();
/// The best of those; null when none of them is there.
const DriverInfo* FindDriverOfWindows(const std::vector<DriverInfo>& drivers);
/// The first that makes PostScript, or null.
const DriverInfo* FindPostScriptDriver(const std::vector<DriverInfo>& drivers);
