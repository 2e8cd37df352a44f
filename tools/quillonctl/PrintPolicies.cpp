#include "tools/quillonctl/PrintPolicies.h"

#include "tools/machine/MachineKey.h"

namespace {

constexpr const char* cProtectedPrint = "SOFTWARE\\Policies\\Microsoft\\Windows NT\\Printers\\WPP";
constexpr const char* cPrinters = "SOFTWARE\\Policies\\Microsoft\\Windows NT\\Printers";

constexpr PrintPolicy cPolicies[] = {
    {cProtectedPrint, "WindowsProtectedPrintGroupPolicyState",
     L"A policy has switched Windows protected print mode on: only printers without drivers and port "
     L"monitors of their own work.",
     L"Set \"Configure Windows protected print\" to disabled (Computer Configuration, Administrative "
     L"Templates, Printers)."},
    {cProtectedPrint, "WindowsProtectedPrintMode",
     L"Windows protected print mode is on: only printers without drivers and port monitors of their own "
     L"work.",
     L"Switch it off: Settings, Bluetooth & devices, Printers & scanners, Windows protected print mode. Then "
     L"install again."},
    {cPrinters, "EnableDeviceControl",
     L"A policy allows only printers of the company's network and approved USB printers.",
     L"Set \"Enable Device Control Printing Restrictions\" to disabled (Computer Configuration, "
     L"Administrative Templates, Printers)."},
};

}  // namespace

std::vector<PrintPolicy> PrintPolicies::GetInForce() {
    std::vector<PrintPolicy> found;
    for (const PrintPolicy& policy : cPolicies) {
        long number = 0;
        if (MachineKey::Open(policy.key).QueryInt32(policy.value, number) && number == 1)
            found.push_back(policy);
    }
    return found;
}
