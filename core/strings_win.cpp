// See strings_win.h.
#include "core/strings_win.h"

int LoadText(UINT id, char* text, int size) {
    if (size <= 0) return 0;
    text[0] = 0;
    return LoadStringA(GetModuleHandleA(nullptr), id, text, size);
}
