// A printing job: pages drawn into a printer by a thread of their own, while a small dialog shows
// how far it is and takes its cancellation. The job belongs to nobody: a thread that hangs in a
// driver ends when the driver lets it, whatever has become of the windows.
#pragma once
#include "archive/print_document.h"
#include "archive/print_system_win.h"

#include <string>

struct PrintWork {
    PrintDocument document; // laid out anew for the printer's paper
    CDInfoRecord record;    // the one disc, of the kinds that print one
    size_t discs = 0;       // instead: that many, asked for one by one
    std::string face;
    std::string name; // as the printer's queue shows it
};

enum PrintEnd { kPrintDone, kPrintStopped, kPrintNotStarted, kPrintBroken };
struct PrintResult {
    PrintEnd end;
    size_t pages; // that went to the printer
    DWORD error;  // the system's, of the last two ends
};

// Prints and shows the dialog meanwhile. `ask` fills the record of a disc (work.discs of them), on
// this thread, and gives 0 for one that has gone, whose pages are left out. The order's context is
// freed. When the owner goes, the job is cancelled and the function returns without it.
PrintResult RunPrintJob(HWND owner, const PrintSystem& system, const PrintOrder& order,
                        PrintWork&& work, int (*ask)(size_t index, CDInfoRecord* record, void*),
                        void* context);
