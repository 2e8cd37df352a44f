#include "tools/quillonctl/Drivers.h"

#include <algorithm>

#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/SpoolerList.h"

#include <winspool.h>

namespace {

std::wstring GetFileName(const std::wstring& path) {
    return path.substr(path.find_last_of(L"\\/") + 1);
}

bool IsPostScriptRenderer(const std::wstring& fileName) {
    return IsSameName(fileName, L"pscript5.dll") || IsSameName(fileName, L"wineps.drv");
}

std::wstring GetFullPath(const std::wstring& path) {
    wchar_t fullPath[1024];
    const DWORD length = ::GetFullPathNameW(path.c_str(), std::size(fullPath), fullPath, nullptr);
    if (length == 0 || length >= std::size(fullPath)) throw SystemFailure(L"Finding the file " + path);
    return fullPath;
}

}  // namespace

bool DriverInfo::IsPostScript() const {
    return IsPostScriptRenderer(GetFileName(renderer)) ||
           std::ranges::any_of(GetDriversOfWindows(),
                               [this](const auto& row) { return IsSameName(row, name); });
}

std::vector<DriverInfo> Drivers::GetAll() {
    std::wstring environment = Product::cEnvironment;
    const SpoolerList<DRIVER_INFO_3W> records(
        L"printer drivers", [&](BYTE* buffer, DWORD size, DWORD* needed, DWORD* count) {
            return ::EnumPrinterDriversW(nullptr, environment.data(), 3, buffer, size, needed, count);
        });
    std::vector<DriverInfo> drivers;
    for (const DRIVER_INFO_3W& record : records) {
        drivers.push_back(
            {TextOrEmpty(record.pName), TextOrEmpty(record.pDriverPath), TextOrEmpty(record.pDataFile)});
    }
    return drivers;
}

std::optional<DriverInfo> Drivers::Find(const std::wstring& name) {
    for (DriverInfo& driver : GetAll()) {
        if (IsSameName(driver.name, name)) return std::move(driver);
    }
    return std::nullopt;
}

bool Drivers::InstallFromStore(const std::wstring& name, std::wstring& problem) {
    problem.clear();
    using InstallFunction =
        HRESULT(WINAPI*)(LPCWSTR server, LPCWSTR inf, LPCWSTR driver, LPCWSTR environment, DWORD flags);
    const HMODULE spooler = ::GetModuleHandleW(L"winspool.drv");
    if (spooler == nullptr) return false;
    const auto install = reinterpret_cast<InstallFunction>(
        reinterpret_cast<void*>(::GetProcAddress(spooler, "InstallPrinterDriverFromPackageW")));
    // Without a description file of ours the store's own is taken.
    if (install == nullptr) return false;
    const HRESULT result = install(nullptr, nullptr, name.c_str(), Product::cEnvironment, 0);
    if (SUCCEEDED(result)) return true;
    problem = DescribeSystemError(static_cast<unsigned long>(result));
    return false;
}

std::wstring Drivers::InstallForWine(const std::wstring& name, const std::wstring& ppd) {
    std::wstring driverName = name;
    std::wstring environment = Product::cEnvironment;
    std::wstring renderer = L"wineps.drv";
    std::wstring dataFile = GetFullPath(ppd);
    std::wstring dataType = L"RAW";
    DRIVER_INFO_3W record{};
    record.cVersion = 3;
    record.pName = driverName.data();
    record.pEnvironment = environment.data();
    record.pDriverPath = renderer.data();
    record.pDataFile = dataFile.data();
    record.pConfigFile = renderer.data();
    record.pDefaultDataType = dataType.data();
    if (!::AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&record),
                               APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY)) {
        throw SystemFailure(L"Installing the printer driver '" + name + L"' from " + dataFile);
    }
    const auto installed = Find(name);
    return installed ? installed->dataFile : std::wstring();
}

void Drivers::Remove(const std::wstring& name) {
    std::wstring driverName = name;
    std::wstring environment = Product::cEnvironment;
    if (::DeletePrinterDriverExW(nullptr, environment.data(), driverName.data(), DPD_DELETE_UNUSED_FILES,
                                 0)) {
        return;
    }
    // Wine does not know the flag and refuses the call because of it.
    if (::GetLastError() == ERROR_INVALID_PARAMETER &&
        ::DeletePrinterDriverW(nullptr, environment.data(), driverName.data())) {
        return;
    }
    throw SystemFailure(L"Removing the printer driver '" + name + L"'");
}

const std::vector<std::wstring>& GetDriversOfWindows() {
    static const std::vector<std::wstring> sNames = {
        L"MS Publisher Imagesetter",
        L"MS Publisher Color Printer",
        L"Microsoft PS Class Driver",
    };
    return sNames;
}

const DriverInfo* FindDriverOfWindows(const std::vector<DriverInfo>& drivers) {
    for (const std::wstring& name : GetDriversOfWindows()) {
        for (const DriverInfo& driver : drivers) {
            if (IsSameName(driver.name, name)) return &driver;
        }
    }
    return nullptr;
}

const DriverInfo* FindPostScriptDriver(const std::vector<DriverInfo>& drivers) {
    const auto found = std::ranges::find_if(drivers, &DriverInfo::IsPostScript);
    return found == drivers.end() ? nullptr : &*found;
}
