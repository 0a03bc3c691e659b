// The database manager from the inside: what its files share. Everything belongs to the window's
// own thread; what other threads do for it (reading, storing, transfers) is handed over by posted
// notices.
#pragma once
#include "archive/catalog.h"
#include "archive/manager_layout.h"
#include "archive/manager_settings.h"
#include "archive/transfer_win.h"
#include "core/platform.h"
#include "ui/look_win.h"

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

// Commands without a control: entries of the menu, and notices to itself.
enum ManagerCommand {
    kManagerFind = 719,
    kManagerRefresh = 720,
    kManagerStop = 721,
    kManagerCellOpen = 722, // the text of the focused row
    kManagerDirection = 723,
    kManagerSelection = 724,  // notice: other rows are selected
    kManagerRead = 725,       // notice: a reading has ended
    kManagerChange = 726,     // notice of store_queue_win.h
    kManagerTransfer = 727,   // notice of transfer_win.h
    kManagerCellEdit = 728,   // the edit control over a cell
    kManagerSelectEach = 729, // all rows, whatever is selected
    kManagerSortFirst = 730,  // + SortKey
    kManagerViewFirst = 740   // + CatalogView
};

enum ManagerTimer : UINT_PTR { kFillTimer = 1, kRetryTimer, kSearchTimer, kClickTimer };

struct ReadJob; // manager_read_win.cpp

// A cell that is being edited, and what has been typed into its row so far.
struct CellSession {
    int open = 0;
    RowKey key;
    int column = kTitleColumn;
    CDInfoRecord before, after;
};

// A change that is on its way into the database.
struct PendingChange {
    uint32_t id = 0;
    size_t deletes = 0;                   // discs that it deletes
    std::unique_ptr<CDInfoRecord> before; // what the row held, where a record is stored
};

struct ManagerWindow {
    HWND window = nullptr;
    HWND tooltips = nullptr;
    HWND controls[kManagerControls] = {};
    HWND cellEdit = nullptr;
    HWND focus = nullptr; // the child that had it last, or the window itself
    ManagerSettings settings = {};
    ManagerLayout layout = {};
    CachedFont labelFont = {}, stripFont = {}, listFont = {}, searchFont = {};

    Catalog* catalog = nullptr;
    std::string words;              // of the search field
    int quiet = 0;                  // the list is being changed by us
    int selectionPosted = 0;        // a notice is on its way
    std::vector<RowKey> outOfSight; // selected rows that the search hides
    UINT status = 0;                // string that stands in place of the count; 0: the count
    int tracksShown = 0;            // the list has the track view's columns
    int columnRule = 0;             // width of a column by rule: a fifth of the window's

    std::shared_ptr<ReadJob> reading; // a thread is at it
    std::shared_ptr<ReadJob> filling; // read, and being taken over
    size_t filled = 0, arrangeAt = 0;
    int readAgain = 0;                    // everything is to be read once more
    std::unordered_set<uint32_t> wanted;  // discs that changed: to be read
    std::unordered_set<uint32_t> touched; // newer than what is being read or taken over
    int retries = 0;

    std::vector<PendingChange> changes;
    Transfer* transfer = nullptr;
    std::unique_ptr<CellSession> cell;
    int clickOpensCell = 0; // the mouse went down on the one selected row
    RowKey clicked;         // a cell that opens unless the click is one of two
    int clickedColumn = 0;
    WNDPROC listProcedure = nullptr, editProcedure = nullptr;
};

inline HWND ControlOf(const ManagerWindow& manager, int id) {
    return manager.controls[ManagerControlIndex(id)];
}
inline HWND ListOf(const ManagerWindow& manager) {
    return ControlOf(manager, kManagerList);
}
// The one there is, for the procedures of its children; null while it is not open.
ManagerWindow* OpenManager();

// ---- manager_controls_win.cpp: making, placing, lettering, colouring
int CreateManagerControls(ManagerWindow* manager);
void LayOutManagerWindow(ManagerWindow* manager, int width, int height);
void MoveManagerDivider(ManagerWindow* manager, int dy);
void PaintManager(const ManagerWindow& manager);
void ShowManagerCaptions(ManagerWindow* manager);
void ShowManagerCount(ManagerWindow* manager); // or the status, or that something is going on
// In place of the count; total 0 goes back to it.
void ShowManagerProgress(ManagerWindow* manager, size_t done, size_t total);
void EnableManagerButtons(const ManagerWindow& manager);

// ---- manager_settings_win.cpp
ManagerSettings ReadManagerSettings();
void WriteManagerSettings(const ManagerSettings& settings);

// ---- manager_list_win.cpp: columns, rows, selection
int CreateManagerList(ManagerWindow* manager);
// Sorts and narrows anew; selection and focus stay with their rows.
void ArrangeManager(ManagerWindow* manager);
void ShowManagerView(ManagerWindow* manager, CatalogView view);
void SortManager(ManagerWindow* manager, SortKey key, int ascending);
void FitManagerColumns(ManagerWindow* manager, int clientWidth);
void NoteManagerColumns(ManagerWindow* manager); // order and widths, into the settings
std::vector<RowKey> SelectedRows(const ManagerWindow& manager);
// The discs of the selected rows, each once, in the list's order; all shown where none is selected.
std::vector<uint32_t> SelectedDiscs(const ManagerWindow& manager);
std::vector<uint32_t> SelectedOrAllDiscs(const ManagerWindow& manager);
int SelectedCount(const ManagerWindow& manager);
void SelectManagerRow(ManagerWindow* manager, RowKey key); // alone, focused and in sight
void SelectManagerRows(ManagerWindow* manager, int all);   // all or none
void SelectAllOrNone(ManagerWindow* manager);
void DeselectDiscs(ManagerWindow* manager, const std::vector<uint32_t>& discs);
// As ArrangeManager; the row that follows gets the focus where it was lost.
void ArrangeAfterDeletion(ManagerWindow* manager);
void ShowManagerSummary(ManagerWindow* manager);
LRESULT OnManagerNotify(ManagerWindow* manager, NMHDR* header);

// ---- manager_read_win.cpp: the database, into memory
void ReadDatabase(ManagerWindow* manager); // all of it; what is gone leaves the list
void RefreshDisc(ManagerWindow* manager, uint32_t identity);
void NoteTouched(ManagerWindow* manager, uint32_t identity); // just changed by ourselves
void OnManagerRead(ManagerWindow* manager);
void OnManagerReadTimer(ManagerWindow* manager, UINT_PTR timer);
void StopReading(ManagerWindow* manager);

// ---- manager_actions_win.cpp. Those that ask something run a message loop: the window may be
// gone when they return.
void EditSelected(ManagerWindow* manager);
void DeleteSelected(ManagerWindow* manager);
void CopySelected(ManagerWindow* manager);
void PasteDiscs(ManagerWindow* manager);
void ImportFromFile(ManagerWindow* manager);
void ExportToFile(ManagerWindow* manager);
void PrintSelected(ManagerWindow* manager);
// An edited record: into the list at once and on its way into the database.
void StoreEdited(ManagerWindow* manager, const CDInfoRecord& before, const CDInfoRecord& after);
void OnManagerChange(ManagerWindow* manager, uint32_t id);
void OnManagerTransfer(ManagerWindow* manager);
int IsManagerBusy(const ManagerWindow& manager); // rows are being deleted, discs carried

// ---- manager_cell_win.cpp: editing in place
int CreateCellEdit(ManagerWindow* manager);
void OpenManagerCell(ManagerWindow* manager, long row, int column); // column -1: the title's
void CloseManagerCell(ManagerWindow* manager, int keep);
void PlaceManagerCell(ManagerWindow* manager); // where its row is by now
void NoteManagerClick(ManagerWindow* manager, const NMITEMACTIVATE& click); // of a single one
void OnManagerClickTimer(ManagerWindow* manager);

// ---- manager_keys_win.cpp: what the children do with keys
void TakeOverKeys(ManagerWindow* manager);       // of list, search field and summary
void FocusManager(const ManagerWindow& manager); // gives it back to the child that had it

// ---- manager_menu_win.cpp
void ShowManagerMenu(ManagerWindow* manager, HWND from, LPARAM place);
