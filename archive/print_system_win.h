// The few things that printing asks of the system, in one table, so that a test can stand in for a
// printer, or let it fail.
#pragma once
#include "archive/print_draw_win.h"

#include <string>

// The printer and paper chosen, as the system's dialogs hand them around; empty: the default one.
struct PrinterSetup {
    HGLOBAL mode = nullptr, names = nullptr;
};
void FreePrinterSetup(PrinterSetup* setup);

// What the user ordered in the dialog.
struct PrintOrder {
    HDC dc;             // of the printer; goes to who got the order
    size_t first, last; // pages from 1
};
enum PrintAnswer { kPrintCancelled, kPrintChosen, kPrintNoPrinter };

struct PrintSystem {
    // Paper of the setup's printer, or of the default one, which the setup then holds. 0: none.
    int (*ReadPaper)(PrinterSetup* setup, PrintPaper* paper, std::string* printer);
    PrintAnswer (*ChoosePaper)(HWND owner, PrinterSetup* setup);
    // pages: how many there are; 0 when a range makes no sense.
    PrintAnswer (*ChoosePrinter)(HWND owner, PrinterSetup* setup, size_t pages, PrintOrder* order);
    void (*ReadDevice)(HDC dc, PrintPaper* paper, DeviceScale* scale);
    // On the job's thread. Results are 1 or 0; GetLastError tells why.
    int (*StartDocument)(HDC dc, const char* name);
    int (*StartSheet)(HDC dc);
    int (*EndSheet)(HDC dc);
    int (*EndDocument)(HDC dc);
    void (*Abort)(HDC dc);
    void (*FreeDevice)(HDC dc);
};
const PrintSystem& SystemPrinting();

// A4, or Letter where people use that.
PrintPaper LocalPaper();
