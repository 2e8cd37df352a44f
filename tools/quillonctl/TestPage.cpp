#include "tools/quillonctl/TestPage.h"

#include <vector>

#include "platform/win32/base/PWin32Api.h"
#include "tools/machine/Failure.h"
#include "tools/quillonctl/MonitorRegistry.h"
#include "tools/quillonctl/Printers.h"
#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/SpoolerList.h"

namespace {

/// A page of a printer, measured in its own dots, with lengths given in points (1/72 inch).
class PrinterCanvas {
public:
    explicit PrinterCanvas(const std::wstring& printer) : mDC(Open(printer)) {}
    PrinterCanvas(const PrinterCanvas&) = delete;
    PrinterCanvas& operator=(const PrinterCanvas&) = delete;
    ~PrinterCanvas() {
        if (mInDocument) ::AbortDoc(mDC);
        ::DeleteDC(mDC);
    }

    /// Returns the job's number.
    int BeginDocument(const wchar_t* title) {
        DOCINFOW document{};
        document.cbSize = sizeof(document);
        document.lpszDocName = title;
        const int job = ::StartDocW(mDC, &document);
        if (job <= 0) throw SystemFailure(L"Starting the test page");
        mInDocument = true;
        if (::StartPage(mDC) <= 0) throw SystemFailure(L"Starting the test page");
        return job;
    }

    void EndDocument() {
        if (::EndPage(mDC) <= 0) throw SystemFailure(L"Printing the test page");
        // From here on the spooler owns the job, also when it could not be printed.
        mInDocument = false;
        if (::EndDoc(mDC) <= 0) throw SystemFailure(L"Printing the test page");
    }

    int GetDots(int points) const { return ::MulDiv(points, mDotsPerInch, 72); }
    int GetWidth() const { return mWidth; }

    void DrawFrame(int margin, int thickness) {
        const HBRUSH black = static_cast<HBRUSH>(::GetStockObject(BLACK_BRUSH));
        const int outer = GetDots(margin);
        const int line = GetDots(thickness);
        const RECT sides[] = {
            {outer, outer, mWidth - outer, outer + line},
            {outer, mHeight - outer - line, mWidth - outer, mHeight - outer},
            {outer, outer, outer + line, mHeight - outer},
            {mWidth - outer - line, outer, mWidth - outer, mHeight - outer},
        };
        for (const RECT& side : sides) ::FillRect(mDC, &side, black);
    }

    void DrawLine(int left, int top, int points, const std::wstring& text) {
        const HFONT font = ::CreateFontW(-GetDots(points), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                         DEFAULT_CHARSET, OUT_TT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                         VARIABLE_PITCH | FF_SWISS, L"Arial");
        const HGDIOBJ before = ::SelectObject(mDC, font);
        ::SetBkMode(mDC, TRANSPARENT);
        ::TextOutW(mDC, GetDots(left), GetDots(top), text.c_str(), static_cast<int>(text.size()));
        ::SelectObject(mDC, before);
        ::DeleteObject(font);
    }

    void DrawGrayScale(int left, int top, int height) {
        constexpr int cSteps = 11;
        const int step = (mWidth - 2 * GetDots(left)) / cSteps;
        for (int i = 0; i < cSteps; ++i) {
            const int level = 255 * i / (cSteps - 1);
            const int x = GetDots(left) + i * step;
            const RECT field{x, GetDots(top), x + step, GetDots(top + height)};
            const HBRUSH brush = ::CreateSolidBrush(RGB(level, level, level));
            ::FillRect(mDC, &field, brush);
            ::DeleteObject(brush);
        }
    }

private:
    static HDC Open(const std::wstring& printer) {
        const HDC canvas = ::CreateDCW(L"WINSPOOL", printer.c_str(), nullptr, nullptr);
        if (canvas == nullptr) throw SystemFailure(L"Opening the printer '" + printer + L"'");
        return canvas;
    }

    const HDC mDC;
    const int mDotsPerInch = ::GetDeviceCaps(mDC, LOGPIXELSY);
    const int mWidth = ::GetDeviceCaps(mDC, HORZRES);
    const int mHeight = ::GetDeviceCaps(mDC, VERTRES);
    bool mInDocument = false;
};

PrinterInfo ChoosePrinter(const std::wstring& name) {
    if (!name.empty()) {
        auto printer = Printers::Find(name);
        if (!printer) throw Failure(L"There is no printer '" + name + L"'.");
        if (printer->IsOnOurPort()) return *printer;
        throw Failure(L"The printer '" + name + L"' is not on the port " + Product::cPortName);
    }
    const std::vector<PrinterInfo> printers = Printers::GetOnOurPort();
    if (printers.empty()) {
        throw Failure(std::wstring(L"No printer is on the port ") + Product::cPortName +
                      L" Add one with quillonctl install.");
    }
    for (const PrinterInfo& printer : printers) {
        if (IsSameName(printer.name, Product::cPrinterName)) return printer;
    }
    return printers.front();
}

std::wstring GetNow() {
    wchar_t date[80] = L"";
    wchar_t time[80] = L"";
    ::GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, date, std::size(date));
    ::GetTimeFormatW(LOCALE_USER_DEFAULT, 0, nullptr, nullptr, time, std::size(time));
    return std::wstring(date) + L' ' + time;
}

// No two pages of this machine have the same, so that one cannot be taken for another.
std::wstring MakeTitle() {
    return L"Quillon test page " + std::to_wstring(::GetCurrentProcessId()) + L'-' +
           std::to_wstring(::GetTickCount64());
}

void Draw(PrinterCanvas& canvas, const PrinterInfo& printer, const std::wstring& title) {
    constexpr int cLeft = 54;
    canvas.DrawFrame(24, 2);
    canvas.DrawLine(cLeft, 60, 28, L"Quillon Port Monitor");
    canvas.DrawLine(cLeft, 100, 14, L"This test page went through the print spooler into a job file.");
    canvas.DrawLine(cLeft, 140, 11, L"Printer: " + printer.name);
    canvas.DrawLine(cLeft, 158, 11, L"Driver: " + printer.driver);
    canvas.DrawLine(cLeft, 176, 11, std::wstring(L"Port: ") + Product::cPortName);
    canvas.DrawLine(cLeft, 194, 11, L"Printed: " + GetNow());
    canvas.DrawLine(cLeft, 212, 11, L"Title: " + title);
    canvas.DrawLine(cLeft, 230, 11, L"Characters: \u00C4\u00D6\u00DC \u00E4\u00F6\u00FC \u00DF \u20AC");
    canvas.DrawGrayScale(cLeft, 268, 40);
}

}  // namespace

TestPage TestPage::Print(const std::wstring& printer) {
    const PrinterInfo target = ChoosePrinter(printer);
    if (MonitorRegistry::LacksForwarding()) throw Failure(MonitorRegistry::cForwardingAdvice);
    TestPage page;
    page.printer = target.name;
    page.title = MakeTitle();
    PrinterCanvas canvas(target.name);
    page.job = static_cast<unsigned long>(canvas.BeginDocument(page.title.c_str()));
    Draw(canvas, target, page.title);
    canvas.EndDocument();
    return page;
}
