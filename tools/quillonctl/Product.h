#pragma once

/// The names under which the system knows the product's pieces. The library answers to the port's
/// name exactly, trailing colon included.
struct Product {
    static constexpr const wchar_t* cMonitorName = L"Quillon Port Monitor";
    static constexpr const wchar_t* cPortName = L"QuillonPDFPort:";
    static constexpr const wchar_t* cLibraryName = L"QuillonPortMonitor64.dll";
    static constexpr const wchar_t* cPrinterName = L"Quillon PDF";
    static constexpr const wchar_t* cWineDriverName = L"Quillon PostScript";
    /// The spooler's name of the only environment that the library can run in.
    static constexpr const wchar_t* cEnvironment = L"Windows x64";
};
