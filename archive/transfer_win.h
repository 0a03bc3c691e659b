// Import and export as the user meets them: the file dialogs with their extra choices, and the job
// that runs on a thread of its own while the manager's window goes on answering.
#pragma once
#include "archive/exchange.h"
#include "core/platform.h"

#include <cstdint>
#include <string>
#include <vector>

struct TransferChoice {
    ExchangeForm form;
    std::string path; // file, or folder for forms of one file a disc
    char separator;   // delimited form
};
// The dialogs "Import CD Information" and "Export CD Information". 1 when the user chose.
int ChooseImport(HWND owner, TransferChoice* choice);
int ChooseExport(HWND owner, TransferChoice* choice);

// One job at a time for each owner. Messages posted to the owner as WM_COMMAND:
//   notice (given below), lParam 0: look at TransferState
struct TransferState {
    size_t done, total; // total 0: not known
    int ended, good;
    int isImport;
    size_t discs; // of an import: taken over
};
struct Transfer;
Transfer* StartImport(HWND owner, UINT notice, const TransferChoice& choice);
Transfer* StartExport(HWND owner, UINT notice, const TransferChoice& choice,
                      std::vector<CDInfoRecord>&& discs);
TransferState ReadTransfer(Transfer* transfer);
void CancelTransfer(Transfer* transfer); // it ends soon afterwards
void FreeTransfer(Transfer* transfer);   // cancels and waits for its end
