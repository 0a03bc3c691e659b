// Printing of discs: the options with their preview, and the pages on paper.
#pragma once
#include "cdinfo/record.h"
#include "core/platform.h"

#include <vector>

// Modal to owner. `discs` are those of the list in its order (selected ones, or all); the dialog
// offers a list of them, a page of one disc, or a jewel-case inlay of one. Returns when the user is
// done.
void ShowPrinting(HWND owner, const std::vector<CDInfoRecord>& discs);
