// PrintPage: prints a small letter through GDI and the printer's own driver, as an application would.
//
//     PrintPage.exe <printer> <document name> [<pages>]
//
// Each page has a heading, lines of text with letters outside ASCII, a ruled box and its page number.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/win32/base/PWin32Api.h"

namespace {

class Page {
public:
    explicit Page(HDC device) : mDevice(device), mDotsPerInch(::GetDeviceCaps(device, LOGPIXELSY)) {}

    /// `left` and `top` in points from the edge of the paper.
    void Text(int left, int top, int points, const std::wstring& text) const {
        const HFONT font = ::CreateFontW(-Dots(points), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                         DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                                         DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS, L"DejaVu Sans");
        const HGDIOBJ before = ::SelectObject(mDevice, font);
        ::TextOutW(mDevice, Dots(left), Dots(top), text.c_str(), static_cast<int>(text.size()));
        ::SelectObject(mDevice, before);
        ::DeleteObject(font);
    }
    void Line(int fromX, int fromY, int toX, int toY) const {
        const HPEN pen = ::CreatePen(PS_SOLID, Dots(1), RGB(0, 0, 0));
        const HGDIOBJ before = ::SelectObject(mDevice, pen);
        ::MoveToEx(mDevice, Dots(fromX), Dots(fromY), nullptr);
        ::LineTo(mDevice, Dots(toX), Dots(toY));
        ::SelectObject(mDevice, before);
        ::DeleteObject(pen);
    }
    void Box(int left, int top, int right, int bottom) const {
        Line(left, top, right, top);
        Line(right, top, right, bottom);
        Line(right, bottom, left, bottom);
        Line(left, bottom, left, top);
    }

private:
    int Dots(int points) const { return ::MulDiv(points, mDotsPerInch, 72); }

    HDC mDevice;
    int mDotsPerInch;
};

void DrawLetter(const Page& page, const std::wstring& document, int number, int pages) {
    page.Text(72, 72, 24, L"Quillon Port Monitor");
    page.Line(72, 108, 523, 108);
    page.Text(72, 126, 12, L"Document: " + document);
    page.Text(72, 156, 12, L"Printed by a Windows program through GDI and the PostScript driver.");
    page.Text(72, 180, 12, L"Grüße aus Köln: Äpfel, Öl, Übermut und Straße.");
    page.Text(72, 204, 12, L"Total: 1.234,56 €");
    page.Box(72, 240, 523, 340);
    page.Text(90, 280, 14, L"The quick brown fox jumps over the lazy dog.");
    page.Text(72, 780, 10, L"Page " + std::to_wstring(number) + L" of " + std::to_wstring(pages));
}

bool Print(HDC device, const std::wstring& document, int pages) {
    DOCINFOW info = {};
    info.cbSize = sizeof info;
    info.lpszDocName = document.c_str();
    if (::StartDocW(device, &info) <= 0) return false;
    for (int number = 1; number <= pages; ++number) {
        if (::StartPage(device) <= 0) return false;
        DrawLetter(Page(device), document, number, pages);
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
