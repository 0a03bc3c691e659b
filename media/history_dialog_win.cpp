#include "media/dialogs_win.h"
int ShowHistory(HWND, std::string*) {
    return 0;
}
