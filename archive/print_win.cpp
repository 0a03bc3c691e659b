// The printing dialog. See print_win.h.
#include "archive/print_win.h"

void ShowPrinting(HWND owner, const PrintSource& discs) {
    (void)owner;
    (void)discs;
}
