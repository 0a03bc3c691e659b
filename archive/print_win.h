// Printing of discs: the options with their preview, and the pages on paper.
#pragma once
#include "cdinfo/record.h"
#include "core/platform.h"

#include <cstddef>

// The discs to print, in the order of the list that they come from. Records are asked for one by
// one, since tens of thousands of them would not fit into memory, and on the thread that called
// ShowPrinting alone: each once at the start, later those of which pages are shown or printed.
struct PrintSource {
    size_t count;
    // Fills a zeroed record; 0 when the disc has gone meanwhile.
    int (*Record)(size_t index, CDInfoRecord* record, void* context);
    void* context;
};

// Modal to owner (may be null); returns when the user is done or the owner has gone. Offers a list
// of the discs, pages of one disc, and jewel-case inlays. No discs: does nothing.
void ShowPrinting(HWND owner, const PrintSource& discs);

// The same with other printers than the system's (print_system_win.h).
struct PrintSystem;
void ShowPrintingOn(const PrintSystem& system, HWND owner, const PrintSource& discs);
