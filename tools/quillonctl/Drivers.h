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

    /// Takes a driver that Windows carries along but has not installed yet out of its driver store.
    /// False when it has none of that name, or no store.
    static bool InstallFromStore(const std::wstring& name);
    /// Makes a driver of Wine's PostScript renderer and a description file. Returns the full path of
    /// the spooler's copy of the description.
    static std::wstring InstallForWine(const std::wstring& name, const std::wstring& ppd);
    static void Remove(const std::wstring& name);
};

/// The best of the PostScript drivers: one that Windows brings along before one of some printer's
/// maker, which may add what only that printer understands. Null when none makes PostScript.
const DriverInfo* ChoosePostScriptDriver(const std::vector<DriverInfo>& drivers);

/// The drivers that Windows brings along, best first.
const std::vector<std::wstring>& GetPreferredDrivers();
