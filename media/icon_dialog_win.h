// Lets the user choose an icon out of a file. The shell has such a dialog, but not everywhere:
// where it is missing it opens nothing and says so to nobody.
#pragma once
#include "core/platform.h"

// Both are what is chosen so far, and what was chosen when it gives 1. `caption` is a text's id.
int ChooseIcon(HWND owner, UINT caption, char (&file)[MAX_PATH], int* index);
