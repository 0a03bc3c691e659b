// Import and export as the user meets them: the file dialogs with their extra choices, and the job
// that runs on a thread of its own while the manager's window goes on answering.
#pragma once
#include "archive/exchange.h"
#include "core/platform.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct TransferChoice {
    ExchangeForm form = kCdpForm;
    std::string path;     // file, or folder for forms of one file a disc
    char separator = ','; // delimited form
};
// The dialogs "Import CD Information" and "Export CD Information". 1 when the user chose. The
// owner may be gone when they return.
int ChooseImport(HWND owner, TransferChoice* choice);
int ChooseExport(HWND owner, TransferChoice* choice);

// One job at a time for each owner. It posts WM_COMMAND `notice` (lParam 0) to the owner, at most
// some 20 times a second and once at its end: look at ReadTransfer then. Messages about a file's
// faults appear over the owner while it goes on working.
struct TransferState {
    size_t done = 0, total = 0; // total 0: not known
    int ended = 0, good = 0;
    int isImport = 0; // the database was changed unless it failed or was cancelled
    size_t discs = 0; // of an import: taken over
};
struct Transfer;
// Null when no thread could be had.
Transfer* StartImport(HWND owner, UINT notice, const TransferChoice& choice);
// Stores the discs of a block (clipboard.h), as an import does.
Transfer* StartPaste(HWND owner, UINT notice, std::vector<uint8_t>&& block);
// Writes the discs of a block. An empty block writes an empty file.
Transfer* StartExport(HWND owner, UINT notice, const TransferChoice& choice,
                      std::vector<uint8_t>&& block);
TransferState ReadTransfer(Transfer* transfer);
void CancelTransfer(Transfer* transfer); // it ends soon afterwards
// Cancels and waits for the end, a second and a half at most: a job that is just putting its change
// in place then ends without an owner. For the owner's thread. Null does nothing.
void FreeTransfer(Transfer* transfer);

// At the program's end: waits until no job is left, at most that long. 1 when none is.
int FinishTransfers(DWORD waitMs);
