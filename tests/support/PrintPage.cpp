// PrintPage: prints a small letter through GDI and the printer's own driver, as an application would.
//
//     PrintPage.exe <printer> <document name> [<pages>]
//
// Each page has a heading, lines of text with letters outside ASCII, a box and its page number.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/win32/base/PWin32Api.h"

namespace {

/// Coordinates and sizes are in points from here on, from the upper left corner of the paper.
void CountInPoints(HDC device) {
    ::SetMapMode(device, MM_ANISOTROPIC);
    ::SetWindowExtEx(device, 72, 72, nullptr);
    ::SetViewportExtEx(device, ::GetDeviceCaps(device, LOGPIXELSX), ::GetDeviceCaps(device, LOGPIXELSY),
                       nullptr);
}

void Text(HDC device, int top, int size, const std::wstring& text) {
    const HFONT font =
        ::CreateFontW(-size, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                      CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS, L"DejaVu Sans");
    const HGDIOBJ before = ::SelectObject(device, font);
    ::TextOutW(device, 72, top, text.c_str(), static_cast<int>(text.size()));
    ::SelectObject(device, before);
    ::DeleteObject(font);
}

void DrawLetter(HDC device, const std::wstring& document, int number, int pages) {
    CountInPoints(device);
    Text(device, 72, 24, L"Quillon Port Monitor");
    Text(device, 126, 12, L"Document: " + document);
    Text(device, 156, 12, L"Printed by a Windows program through GDI and the PostScript driver.");
    Text(device, 180, 12, L"Grüße aus Köln: Äpfel, Öl, Übermut und Straße.");
    Text(device, 204, 12, L"Total: 1.234,56 €");
    ::Rectangle(device, 72, 240, 523, 340);
    Text(device, 780, 10, L"Page " + std::to_wstring(number) + L" of " + std::to_wstring(pages));
}

bool Print(HDC device, const std::wstring& document, int pages) {
    DOCINFOW info = {};
    info.cbSize = sizeof info;
    info.lpszDocName = document.c_str();
    if (::StartDocW(device, &info) <= 0) return false;
    for (int number = 1; number <= pages; ++number) {
        if (::StartPage(device) <= 0) return false;
        DrawLetter(device, document, number, pages);
        if (::EndPage(device) <= 0) return false;
    }
    return ::EndDoc(device) > 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 3 || argc > 4) {
        std::fputs("usage: PrintPage <printer> <document name> [<pages>]\n", stderr);
        return 2;
    }
    const HDC device = ::CreateDCW(L"WINSPOOL", argv[1], nullptr, nullptr);
    if (device == nullptr) {
        std::fprintf(stderr, "PrintPage: there is no printer %ls\n", argv[1]);
        return 1;
    }
    const bool printed =
        Print(device, argv[2], argc == 4 ? static_cast<int>(std::wcstol(argv[3], nullptr, 10)) : 1);
    ::DeleteDC(device);
    if (!printed)
        std::fprintf(stderr, "PrintPage: the document was not printed (error %lu)\n", ::GetLastError());
    return printed ? 0 : 1;
}
