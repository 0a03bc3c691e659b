// Printers and their dialogs. See print_system_win.h.
#include "archive/print_system_win.h"

#include <commdlg.h>
#include <winspool.h>

#include <algorithm>
#include <cstdlib>

void FreePrinterSetup(PrinterSetup* setup) {
    if (setup->mode) GlobalFree(setup->mode);
    if (setup->names) GlobalFree(setup->names);
    *setup = {};
}

PrintPaper LocalPaper() {
    char size[8] = "";
    GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_IPAPERSIZE, size, sizeof size);
    const int letter = atoi(size) == DMPAPER_LETTER;
    const int width = letter ? 21590 : 21000, height = letter ? 27940 : 29700;
    constexpr int kUsualReach = 500; // what most printers leave white
    return MakePaper(width, height,
                     {kUsualReach, kUsualReach, width - 2 * kUsualReach, height - 2 * kUsualReach});
}

// ---- the default printer

static int FillDefault(PrinterSetup* setup) {
    if (setup->names) return 1;
    PRINTDLGA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.Flags = PD_RETURNDEFAULT | PD_NOWARNING;
    if (!PrintDlgA(&dialog)) return 0;
    setup->mode = dialog.hDevMode;
    setup->names = dialog.hDevNames;
    return setup->names != nullptr;
}

// An information context of the setup's printer.
static HDC OpenPrinterInfo(const PrinterSetup& setup, std::string* printer) {
    const auto* names = static_cast<const DEVNAMES*>(GlobalLock(setup.names));
    if (!names) return nullptr;
    const auto* texts = reinterpret_cast<const char*>(names);
    const auto* mode = static_cast<const DEVMODEA*>(setup.mode ? GlobalLock(setup.mode) : nullptr);
    *printer = texts + names->wDeviceOffset;
    const HDC dc = CreateICA(texts + names->wDriverOffset, printer->c_str(), nullptr, mode);
    if (mode) GlobalUnlock(setup.mode);
    GlobalUnlock(setup.names);
    return dc;
}

static int ReadPaper(PrinterSetup* setup, PrintPaper* paper, std::string* printer) {
    if (!FillDefault(setup)) return 0;
    const HDC dc = OpenPrinterInfo(*setup, printer);
    if (!dc) return 0;
    DeviceScale scale;
    ReadDevicePaper(dc, paper, &scale);
    DeleteDC(dc);
    return 1;
}

// ---- dialogs

// A dialog that says 0 was cancelled unless the system tells of a fault.
static PrintAnswer AnswerOf(BOOL chosen) {
    if (chosen) return kPrintChosen;
    return CommDlgExtendedError() ? kPrintNoPrinter : kPrintCancelled;
}

static PrintAnswer ChoosePaper(HWND owner, PrinterSetup* setup) {
    if (!FillDefault(setup)) return kPrintNoPrinter;
    PAGESETUPDLGA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.hDevMode = setup->mode;
    dialog.hDevNames = setup->names;
    dialog.Flags = PSD_DISABLEMARGINS | PSD_NOWARNING | PSD_INHUNDREDTHSOFMILLIMETERS;
    const PrintAnswer answer = AnswerOf(PageSetupDlgA(&dialog));
    setup->mode = dialog.hDevMode;
    setup->names = dialog.hDevNames;
    return answer;
}

static PrintAnswer ChoosePrinter(HWND owner, PrinterSetup* setup, size_t pages, PrintOrder* order) {
    if (!FillDefault(setup)) return kPrintNoPrinter;
    constexpr size_t kMostPages = 0xFFFF; // of the dialog
    const auto last = static_cast<WORD>(std::min(pages, kMostPages));
    PRINTDLGA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.hDevMode = setup->mode;
    dialog.hDevNames = setup->names;
    dialog.Flags = PD_RETURNDC | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE | PD_NOWARNING |
                   PD_HIDEPRINTTOFILE | (last > 1 ? 0 : PD_NOPAGENUMS);
    dialog.nMinPage = dialog.nFromPage = 1;
    dialog.nMaxPage = dialog.nToPage = std::max<WORD>(1, last);
    const PrintAnswer answer = AnswerOf(PrintDlgA(&dialog));
    setup->mode = dialog.hDevMode;
    setup->names = dialog.hDevNames;
    if (answer != kPrintChosen) return answer;
    order->dc = dialog.hDC;
    const bool range = dialog.Flags & PD_PAGENUMS;
    order->first = range ? dialog.nFromPage : 1;
    order->last = range ? dialog.nToPage : std::max<size_t>(1, pages);
    return order->dc ? kPrintChosen : kPrintNoPrinter;
}

// ---- the job

static int StartDocument(HDC dc, const char* name) {
    DOCINFOA info = {};
    info.cbSize = sizeof info;
    info.lpszDocName = name;
    return StartDocA(dc, &info) > 0;
}
static int StartSheet(HDC dc) {
    return StartPage(dc) > 0;
}
static int EndSheet(HDC dc) {
    return EndPage(dc) > 0;
}
static int EndDocument(HDC dc) {
    return EndDoc(dc) > 0;
}
static void Abort(HDC dc) {
    AbortDoc(dc);
}
static void FreeDevice(HDC dc) {
    DeleteDC(dc);
}

const PrintSystem& SystemPrinting() {
    static constexpr PrintSystem kSystem = {
        ReadPaper,  ChoosePaper, ChoosePrinter, ReadDevicePaper, StartDocument,
        StartSheet, EndSheet,    EndDocument,   Abort,           FreeDevice,
    };
    return kSystem;
}
