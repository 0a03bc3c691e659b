// See transfer_win.h.
#include "archive/transfer_win.h"

struct Transfer {
    TransferState state;
};

int ChooseImport(HWND, TransferChoice*) {
    return 0;
}
int ChooseExport(HWND, TransferChoice*) {
    return 0;
}
Transfer* StartImport(HWND, UINT, const TransferChoice&) {
    return nullptr;
}
Transfer* StartPaste(HWND, UINT, std::vector<uint8_t>&&) {
    return nullptr;
}
Transfer* StartExport(HWND, UINT, const TransferChoice&, std::vector<uint8_t>&&) {
    return nullptr;
}
TransferState ReadTransfer(Transfer*) {
    return {};
}
void CancelTransfer(Transfer*) {}
void FreeTransfer(Transfer*) {}
int FinishTransfers(DWORD) {
    return 1;
}
