// The database manager window: commands, timers, the component. Everything runs on the window's own
// thread.
#include "archive/manager_win.h"

#include "archive/clipboard_win.h"
#include "archive/manager_state_win.h"
#include "archive/store_queue_win.h"
#include "archive/text_key_win.h"
#include "cdinfo/store.h"
#include "core/commands.h"
#include "core/component_win.h"
#include "ui/button_win.h"
#include "ui/components.h"
#include "ui/indicator_win.h"
#include "ui/window_thread_win.h"

static constexpr UINT kSearchPauseMs = 120; // after the last letter

static ManagerWindow s_manager;

ManagerWindow* OpenManager() {
    return s_manager.window ? &s_manager : nullptr;
}

// ---- commands

static void Search(ManagerWindow* manager) {
    char text[kCommentSize];
    KillTimer(manager->window, kSearchTimer);
    GetWindowTextA(ControlOf(*manager, kManagerSearch), text, sizeof text);
    if (manager->words == text) return;
    manager->words = text;
    ArrangeManager(manager);
}

static void GoToSearch(const ManagerWindow& manager) {
    const HWND search = ControlOf(manager, kManagerSearch);
    SetFocus(search);
    SendMessageA(search, EM_SETSEL, 0, -1);
}

// What goes on, else what narrows the list.
static void Stop(ManagerWindow* manager) {
    if (manager->transfer)
        CancelTransfer(manager->transfer);
    else
        SetWindowTextA(ControlOf(*manager, kManagerSearch), "");
}

static void NextSort(ManagerWindow* manager) {
    const int next = (manager->settings.key + 1) % ViewKeys(manager->settings.view);
    SortManager(manager, static_cast<SortKey>(next), manager->settings.ascending);
}

static void OpenFocusedCell(ManagerWindow* manager) {
    const LRESULT row =
        SendMessageA(ListOf(*manager), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED);
    OpenManagerCell(manager, static_cast<long>(row), -1);
}

// Those that a user gives, by whatever means.
static int OnUserCommand(ManagerWindow* manager, int id) {
    switch (id) {
    case kManagerPower: PostMessageA(manager->window, WM_CLOSE, 0, 0); return 1;
    case kManagerView:
    case kManagerToggle: ShowManagerView(manager, NextView(manager->settings.view)); return 1;
    case kManagerSort: NextSort(manager); return 1;
    case kManagerExport: ExportToFile(manager); return 1;
    case kManagerImport: ImportFromFile(manager); return 1;
    case kManagerCopy: CopySelected(manager); return 1;
    case kManagerPaste: PasteDiscs(manager); return 1;
    case kManagerDelete: DeleteSelected(manager); return 1;
    case kManagerEdit: EditSelected(manager); return 1;
    case kManagerSelect:
        if (manager->settings.view != kTrackView) SelectAllOrNone(manager);
        return 1;
    case kManagerSelectEach: SelectManagerRows(manager, 1); return 1;
    case kManagerPrint: PrintSelected(manager); return 1;
    case kManagerFind: GoToSearch(*manager); return 1;
    case kManagerRefresh: ReadDatabase(manager); return 1;
    case kManagerStop: Stop(manager); return 1;
    case kManagerCellOpen: OpenFocusedCell(manager); return 1;
    case kManagerDirection:
        SortManager(manager, manager->settings.key, !manager->settings.ascending);
        return 1;
    default: break;
    }
    if (id >= kManagerSortFirst && id - kManagerSortFirst <= int{kByTrackNumber}) {
        SortManager(manager, static_cast<SortKey>(id - kManagerSortFirst),
                    manager->settings.ascending);
        return 1;
    }
    if (id < kManagerViewFirst || id - kManagerViewFirst > int{kArtistView}) return 0;
    ShowManagerView(manager, static_cast<CatalogView>(id - kManagerViewFirst));
    return 1;
}

static void OnSelection(ManagerWindow* manager) {
    manager->selectionPosted = 0;
    if (manager->status) {
        manager->status = 0;
        ShowManagerCount(manager);
    }
    ShowManagerSummary(manager);
}

static int OnNotice(ManagerWindow* manager, int id, LPARAM lParam) {
    switch (id) {
    case kManagerSelection: OnSelection(manager); return 1;
    case kManagerRead: OnManagerRead(manager); return 1;
    case kManagerChange: OnManagerChange(manager, static_cast<uint32_t>(lParam)); return 1;
    case kManagerTransfer: OnManagerTransfer(manager); return 1;
    case kDatabaseChanged: RefreshDisc(manager, static_cast<uint32_t>(lParam)); return 1;
    default: return 0;
    }
}

static int OnCommand(ManagerWindow* manager, WPARAM wParam, LPARAM lParam) {
    const int id = LOWORD(wParam), code = HIWORD(wParam);
    if (id == kManagerSearch) {
        if (code == EN_CHANGE) SetTimer(manager->window, kSearchTimer, kSearchPauseMs, nullptr);
        return 1;
    }
    if (id == kManagerSummary || id == kManagerCellEdit) return 1;
    if (code != kButtonClicked && code != kIndicatorDoubleClicked) return 0;
    return OnNotice(manager, id, lParam) || OnUserCommand(manager, id);
}

static void OnTimer(ManagerWindow* manager, UINT_PTR timer) {
    switch (timer) {
    case kFillTimer:
    case kRetryTimer: OnManagerReadTimer(manager, timer); break;
    case kSearchTimer: Search(manager); break;
    case kClickTimer: OnManagerClickTimer(manager); break;
    default: break;
    }
}

// ---- the window as a component

static int OnCreateControls(HWND window) {
    s_manager = {};
    s_manager.window = window;
    s_manager.settings = ReadManagerSettings();
    s_manager.catalog = CreateCatalog(PlatformTextKey, PlatformLowerCase());
    if (!s_manager.catalog || !CreateManagerControls(&s_manager)) return 0;
    TakeOverKeys(&s_manager);
    AddClipboardFormatListener(window);
    EnableManagerButtons(s_manager);
    ShowManagerCaptions(&s_manager);
    ShowManagerSummary(&s_manager);
    AddStoreListener(window, 0); // of its own batches it knows
    ReadDatabase(&s_manager);
    return 1;
}

static void OnLayout(HWND, int width, int height) {
    LayOutManagerWindow(&s_manager, width, height);
}

// What is being typed is kept; what is on its way into the database goes on without the window.
static void OnDestroy(HWND window) {
    ManagerWindow* manager = &s_manager;
    RemoveStoreListener(window);
    RemoveClipboardFormatListener(window);
    if (manager->catalog) {
        CloseManagerCell(manager, 1);
        NoteManagerColumns(manager);
        const Box& list = manager->layout.boxes[ManagerControlIndex(kManagerList)];
        if (manager->layout.boxes[ManagerControlIndex(kManagerDivider)].width)
            manager->settings.listHeight = list.height;
    }
    StopReading(manager);
    FreeTransfer(manager->transfer);
    AbandonChanges(window);
    manager->window = nullptr; // what children still send on their way out concerns nobody
    manager->transfer = nullptr;
    FreeCatalog(manager->catalog);
    manager->catalog = nullptr;
    for (CachedFont* font :
         {&manager->labelFont, &manager->stripFont, &manager->listFont, &manager->searchFont})
        FreeFont(font);
}

static void OnSave() {
    WriteManagerSettings(s_manager.settings);
}

static void Forget() {
    RemoveStoreListener(s_manager.window);
    AbandonChanges(s_manager.window);
    s_manager = {};
}

static LRESULT ManagerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

static ComponentWindow s_component = {.title = "CDInfoUI",
                                      .windowId = kDatabaseWindowId,
                                      .procedure = GuardedProc<ManagerProc>,
                                      .OnCreateControls = OnCreateControls,
                                      .OnLayout = OnLayout,
                                      .OnDestroy = OnDestroy,
                                      .OnSave = OnSave,
                                      .Forget = Forget};

// Fields are black, with letters as the list's.
static LRESULT FieldColors(HDC dc) {
    SetBkColor(dc, 0);
    SetTextColor(dc, Colors.IndtrDrkClr);
    return reinterpret_cast<LRESULT>(GetStockObject(BLACK_BRUSH));
}

static int IsDeleting(const ManagerWindow& manager) {
    return !manager.transfer && IsManagerBusy(manager);
}

static LRESULT ManagerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    ManagerWindow* manager = &s_manager;
    if (manager->window == window && manager->catalog) switch (message) {
        case WM_COMMAND:
            if (OnCommand(manager, wParam, lParam)) return 0;
            break;
        case WM_TIMER: OnTimer(manager, wParam); return 0;
        case WM_NOTIFY:
            if (reinterpret_cast<NMHDR*>(lParam)->idFrom != kManagerList) break;
            return OnManagerNotify(manager, reinterpret_cast<NMHDR*>(lParam));
        case WM_VSCROLL: // of the divider
            if (LOWORD(wParam) == SB_THUMBTRACK)
                MoveManagerDivider(manager, static_cast<short>(HIWORD(wParam)));
            return 0;
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORSTATIC: return FieldColors(reinterpret_cast<HDC>(wParam));
        case WM_CLIPBOARDUPDATE: EnableManagerButtons(*manager); return 0;
        case WM_CONTEXTMENU:
            ShowManagerMenu(manager, reinterpret_cast<HWND>(wParam), lParam);
            return 0;
        case WM_SETCURSOR:
            if (!IsDeleting(*manager)) break;
            SetCursor(LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT)));
            return TRUE;
        case WM_ACTIVATE: {
            const LRESULT result = PassOnMessage(&s_component, window, message, wParam, lParam);
            if (LOWORD(wParam) != WA_INACTIVE && OpenManager()) FocusManager(*manager);
            return result;
        }
        case WM_LBUTTONDOWN: // the background: the window itself takes the keys
            manager->focus = window;
            SetFocus(window);
            break;
        case WM_KEYDOWN:
            if (wParam != VK_TAB) break;
            SetFocus(ListOf(*manager));
            return 0;
        case WM_PAINT: PaintManager(*manager); return 0;
        default: break;
        }
    return PassOnMessage(&s_component, window, message, wParam, lParam);
}

ComponentThread* DatabaseThread() {
    return ComponentThreadOf(&s_component);
}
