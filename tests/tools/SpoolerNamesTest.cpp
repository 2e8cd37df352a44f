#include "tests/Testing.h"
#include "tools/quillonctl/Drivers.h"
#include "tools/quillonctl/Printers.h"

namespace {

using Names = std::vector<std::wstring>;

TEST(Printers, SplitsTheListOfAPooledPrintersPorts) {
    EXPECT_EQ(SplitPortList(L""), Names());
    EXPECT_EQ(SplitPortList(L" LPT1: , C:\\a b.txt ,QuillonPDFPort:"),
              (Names{L"LPT1:", L"C:\\a b.txt", L"QuillonPDFPort:"}));
    EXPECT_EQ(SplitPortList(L",LPT1:,, ,"), Names{L"LPT1:"});
}

TEST(Printers, KnowsOurPortInWhateverCaseAndPlace) {
    const auto isOurs = [](const Names& ports) { return PrinterInfo{L"P", ports, L"D"}.IsOnOurPort(); };
    for (const Names& ports : {Names{L"QUILLONPDFPORT:"}, Names{L"LPT1:", L"QuillonPDFPort:"}})
        EXPECT_TRUE(isOurs(ports)) << testing::PrintToString(ports);
    EXPECT_FALSE(isOurs({L"QuillonPDFPort", L"QuillonPDFPort:2", L"LPT1:"}));
    EXPECT_FALSE(isOurs({}));
}

TEST(Drivers, TellsThoseOfWindowsFromOthersThatMakePostScript) {
    const DriverInfo classDriver{L"Microsoft PS Class Driver", L"C:\\d\\mxdwdrv.dll", L""};
    const DriverInfo imagesetter{L"MS Publisher Imagesetter", L"C:\\d\\PSCRIPT5.DLL", L""};
    const DriverInfo maker{L"Laser 9 PS", L"C:\\d\\pscript5.dll", L""};
    const DriverInfo wine{L"Test PS", L"C:\\d\\wineps.drv", L""};
    const DriverInfo fax{L"Fax", L"C:\\d\\fxsdrv.dll", L""};
    const DriverInfo lookalike{L"PS for all", L"C:\\pscript5.dll\\unidrv.dll", L""};
    const std::tuple<const char*, std::vector<DriverInfo>, DriverInfo, DriverInfo> rows[] = {
        {"no driver", {}, {}, {}},
        {"none that makes PostScript", {fax, lookalike}, {}, {}},
        {"a maker's", {fax, maker}, {}, maker},
        {"the first of two", {fax, wine, maker}, {}, wine},
        {"the imagesetter first", {classDriver, maker, imagesetter}, imagesetter, classDriver},
        {"the class driver, known by its name", {maker, classDriver}, classDriver, maker},
    };
    for (const auto& [what, drivers, ofWindows, any] : rows) {
        const auto nameOf = [](const DriverInfo* driver) { return driver == nullptr ? L"" : driver->name; };
        EXPECT_EQ(nameOf(FindDriverOfWindows(drivers)), ofWindows.name) << what;
        EXPECT_EQ(nameOf(FindPostScriptDriver(drivers)), any.name) << what;
    }
}

}  // namespace
