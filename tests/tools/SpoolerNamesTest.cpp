#include <gmock/gmock.h>

#include <tuple>

#include "tools/quillonctl/Drivers.h"
#include "tools/quillonctl/Printers.h"

namespace {

using Names = std::vector<std::wstring>;

TEST(Printers, SplitsTheListOfAPooledPrintersPorts) {
    const std::tuple<const char*, const wchar_t*, Names> rows[] = {
        {"nothing", L"", {}},
        {"one port", L"LPT1:", {L"LPT1:"}},
        {"two ports", L"LPT1:,QuillonPDFPort:", {L"LPT1:", L"QuillonPDFPort:"}},
        {"blanks around", L" LPT1: , C:\\a b.txt ", {L"LPT1:", L"C:\\a b.txt"}},
        {"empty parts", L",LPT1:,, ,", {L"LPT1:"}},
    };
    for (const auto& [what, list, expected] : rows) EXPECT_EQ(SplitPortList(list), expected) << what;
}

TEST(Printers, KnowsOurPortInWhateverCaseAndPlace) {
    const std::tuple<const char*, Names, bool> rows[] = {
        {"ours", {L"QuillonPDFPort:"}, true},
        {"in upper case", {L"QUILLONPDFPORT:"}, true},
        {"one of a pool", {L"LPT1:", L"QuillonPDFPort:"}, true},
        {"without the colon", {L"QuillonPDFPort"}, false},
        {"a longer name", {L"QuillonPDFPort:2"}, false},
        {"another port", {L"LPT1:"}, false},
        {"no port", {}, false},
    };
    for (const auto& [what, ports, ours] : rows)
        EXPECT_EQ((PrinterInfo{L"P", ports, L"D"}).IsOnOurPort(), ours) << what;
}

TEST(Drivers, TellsThoseOfWindowsFromOthersThatMakePostScript) {
    const DriverInfo classDriver{L"Microsoft PS Class Driver", L"C:\\d\\mxdwdrv.dll", L""};
    const DriverInfo imagesetter{L"MS Publisher Imagesetter", L"C:\\d\\PSCRIPT5.DLL", L""};
    const DriverInfo maker{L"Laser 9 PS", L"C:\\d\\pscript5.dll", L""};
    const DriverInfo wine{L"Test PS", L"C:\\d\\wineps.drv", L""};
    const DriverInfo fax{L"Fax", L"C:\\d\\fxsdrv.dll", L""};
    const DriverInfo lookalike{L"PS for all", L"C:\\pscript5.dll\\unidrv.dll", L""};
    const std::tuple<const char*, std::vector<DriverInfo>, const wchar_t*, const wchar_t*> rows[] = {
        {"no driver", {}, L"", L""},
        {"none that makes PostScript", {fax, lookalike}, L"", L""},
        {"a maker's", {fax, maker}, L"", L"Laser 9 PS"},
        {"the first of two", {fax, wine, maker}, L"", L"Test PS"},
        {"the imagesetter before the class driver",
         {classDriver, maker, imagesetter},
         L"MS Publisher Imagesetter",
         L"Microsoft PS Class Driver"},
        {"the class driver, known by its name",
         {maker, classDriver},
         L"Microsoft PS Class Driver",
         L"Laser 9 PS"},
    };
    const auto nameOf = [](const DriverInfo* driver) { return driver == nullptr ? L"" : driver->name; };
    for (const auto& [what, drivers, ofWindows, any] : rows) {
        EXPECT_EQ(nameOf(FindDriverOfWindows(drivers)), ofWindows) << what;
        EXPECT_EQ(nameOf(FindPostScriptDriver(drivers)), any) << what;
    }
}

}  // namespace
