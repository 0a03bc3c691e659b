// Switching components on and off, restoring them at start-up and stopping them at the end. Starts
// and stops run on the console's thread alone, so they never overlap.
#include "ui/console_state_win.h"
#include "ui/framework_win.h"

#include "core/settings.h"
#include "core/shared_block.h"
#include "core/strings_win.h"
#include "resources/ids.h"

constexpr DWORD kBeforeToggleMs = 50; // lets the click's repainting be seen
constexpr DWORD kAfterEngineMs = 100; // the Waves engine's first buffers

// ---- rows

int RowCount() {
    return s_console.start.table->count;
}
const ComponentEntry& Row(int row) {
    return s_console.start.table->entries[row];
}

int RowByCommand(int command) {
    for (int row = 0; row < RowCount(); ++row)
        if (Row(row).traits.command == command) return row;
    return -1;
}

int RowByWindowId(int windowId) {
    for (int row = 0; row < RowCount(); ++row)
        if (windowId && Row(row).traits.windowId == windowId) return row;
    return -1;
}

int RowIsOn(int row) {
    return ComponentIsOn(Row(row).thread);
}

HWND OpenWindowOfRow(int row) {
    return Row(row).traits.kind == kWindowComponent && RowIsOn(row) ? Row(row).thread->Window
                                                                    : nullptr;
}

void OpenSlotWindows(HWND windows[kWindowSlots]) {
    for (int slot = 0; slot < kWindowSlots; ++slot)
        windows[slot] = nullptr;
    for (int row = 0; row < RowCount(); ++row) {
        const int slot = WindowSlot(Row(row).traits.windowId);
        if (slot >= 0) windows[slot] = OpenWindowOfRow(row);
    }
}

int PostEngineCommand(int engineCommand, UINT command, LPARAM argument) {
    const int row = RowByCommand(engineCommand);
    if (row < 0 || !RowIsOn(row) || !Row(row).PostCommand) return 0;
    return Row(row).PostCommand(command, argument);
}

static void SaveOnValue(int row, int on) {
    if (Row(row).traits.onValue) WriteWindowDword(kConsoleWindowId, Row(row).traits.onValue, on);
}

// Rows' traits side by side, as the orders want them.
static int CopyTraits(ComponentTraits traits[kMaxComponents]) {
    const int count = RowCount() < kMaxComponents ? RowCount() : kMaxComponents;
    for (int row = 0; row < count; ++row)
        traits[row] = Row(row).traits;
    return count;
}

// ---- stopping

static void StopOne(int row, int save) {
    if (!Row(row).thread->Thread) return;
    StopComponentThread(Row(row).thread);
    const int slot = WindowSlot(Row(row).traits.windowId);
    if (slot >= 0) s_console.hiddenByMinimize[slot] = 0;
    if (s_console.shuttingDown) return;
    ShowRowState(row);
    if (save) SaveOnValue(row, RowIsOn(row));
}

static void StopDependants(int engineRow) {
    ComponentTraits traits[kMaxComponents];
    int order[kMaxComponents];
    const int count = CopyTraits(traits);
    const int found = DependantOrder(traits, count, traits[engineRow].command, order);
    for (int i = 0; i < found; ++i)
        StopOne(order[i], 1);
}

static void StopRow(int row) {
    const ComponentTraits& traits = Row(row).traits;
    const int engine = traits.kind == kEngineComponent;
    if (engine && traits.dependantsFirst) StopDependants(row);
    StopOne(row, 0);
    if (engine && !traits.dependantsFirst && !RowIsOn(row)) StopDependants(row);
    if (engine) RefreshVolumeBar();
}

void StopAllComponents() {
    ComponentTraits traits[kMaxComponents];
    int order[kMaxComponents];
    const int count = ShutdownOrder(traits, CopyTraits(traits), order);
    for (int i = 0; i < count; ++i)
        StopOne(order[i], 0);
}

// ---- starting

static void SwitchOn(int row);

// 1 when the component's engine runs, or it needs none.
static int EnsureEngine(int row) {
    const int engineRow = RowByCommand(Row(row).traits.engine);
    if (!Row(row).traits.engine) return 1;
    if (engineRow < 0) return 0;
    if (RowIsOn(engineRow)) return 1;
    SwitchOn(engineRow);
    if (Row(engineRow).traits.dependantsFirst) Sleep(kAfterEngineMs);
    return RowIsOn(engineRow);
}

static void ShowStarted(int row) {
    HWND window = OpenWindowOfRow(row);
    if (!window) return;
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window); // activation gives it the focus, on its own thread
    if (s_console.AlwaysOnTop) ApplyAlwaysOnTop(window);
}

// Starts the component, and first the engine that it needs. Writes the on/off value, except where
// the engine could not be had: then nothing was tried.
static void SwitchOn(int row) {
    const int engine = Row(row).traits.kind == kEngineComponent;
    ComponentThread* thread = Row(row).thread;
    if (ComponentThreadEnded(thread)) StopOne(row, 0); // a fault not yet noticed
    SetRowLook(row, 1);
    if (!EnsureEngine(row)) {
        ShowRowState(row);
        return;
    }
    HCURSOR before = engine ? SetCursor(LoadCursorA(nullptr, IDC_WAIT)) : nullptr;
    StartComponentThread(thread, s_console.start.instance, s_console.window);
    if (engine) SetCursor(before);
    ShowStarted(row);
    ShowRowState(row);
    SaveOnValue(row, RowIsOn(row));
    if (engine) JoinMixer();
}

void SwitchRow(int row) {
    if (Row(row).traits.kind != kEngineComponent) Sleep(kBeforeToggleMs);
    if (RowIsOn(row)) {
        StopRow(row);
        SaveOnValue(row, RowIsOn(row));
    } else {
        SwitchOn(row);
    }
}

void ToggleComponent(int row) {
    if (s_console.shuttingDown || s_console.switching) return;
    s_console.switching = 1;
    SwitchRow(row);
    s_console.switching = 0;
}

// ---- ends by themselves: a window's own close button, a fault

void NoticeEnded(int row) {
    ComponentThread* thread = Row(row).thread;
    if (s_console.shuttingDown || s_console.switching || !ComponentThreadEnded(thread)) return;
    const int windowId = Row(row).traits.windowId;
    // Engines and icons have no notice of their own: seen by the timer, they are saved as off too.
    StopOne(row, !windowId || ClosedNoticeSaves(windowId));
    if (Row(row).traits.kind == kEngineComponent) RefreshVolumeBar();
}

void NoticeAllEnded() {
    for (int row = 0; row < RowCount(); ++row)
        NoticeEnded(row);
}

// ---- restoring

static void TurnAllOff() {
    for (int row = 0; row < RowCount(); ++row)
        SaveOnValue(row, 0);
    if (s_console.start.noEngines) return;
    char text[kStringMax], caption[kStringMax];
    LoadText(IDS_LASTOK_TEXT, text);
    LoadText(IDS_LASTOK_CAPTION, caption);
    MessageBoxA(s_console.window, text, caption, MB_OK | MB_ICONEXCLAMATION);
}

static INT_PTR CALLBACK LoadingDialog(HWND dialog, UINT message, WPARAM, LPARAM) {
    if (message != WM_INITDIALOG) return FALSE;
    HWND bar = GetDlgItem(dialog, IDC_LOADING_BAR);
    SendMessageA(bar, PBM_SETRANGE, 0, MAKELPARAM(0, kLoadingSteps));
    SendMessageA(bar, PBM_SETSTEP, 1, 0);
    SendMessageA(bar, PBM_SETPOS, 0, 0);
    return TRUE;
}

static void StepLoading(HWND dialog, int rank) {
    // The last rank has no step of its own: one more would turn the bar over to its start.
    if (!dialog || rank > kLoadingSteps) return;
    SendDlgItemMessageA(dialog, IDC_LOADING_BAR, PBM_STEPIT, 0, 0);
    UpdateWindow(dialog); // no messages are dispatched until all components stand
}

// The media player comes also when a file waits for it.
static int WantsRestore(int row) {
    const ComponentTraits& traits = Row(row).traits;
    if (UIOptions.PPlay && traits.kind != kEngineComponent) return 0;
    if (traits.windowId == kMediaWindowId && s_console.start.openMediaFile) return 1;
    return traits.onValue && ReadWindowDword(kConsoleWindowId, traits.onValue, 0);
}

void RestoreComponents() {
    if (!ReadLastOk() || s_console.start.noEngines) {
        TurnAllOff();
        return;
    }
    ComponentTraits traits[kMaxComponents];
    const int count = CopyTraits(traits);
    HWND dialog = nullptr;
    if (!UIOptions.PPlay) {
        dialog = CreateDialogParamA(s_console.start.instance, MAKEINTRESOURCEA(IDD_LOADING),
                                    s_console.window, LoadingDialog, 0);
        if (dialog) ShowWindow(dialog, SW_SHOW);
        if (dialog) UpdateWindow(dialog);
    }
    s_console.switching = 1;
    WriteLastOk(0); // stays so if a component takes the process down
    for (int rank = 1; rank <= kRestoreRanks; ++rank) {
        const int row = RowOfRestoreRank(traits, count, rank);
        if (row >= 0 && WantsRestore(row) && !RowIsOn(row)) SwitchOn(row);
        StepLoading(dialog, rank);
    }
    if (dialog) DestroyWindow(dialog);
    WriteLastOk(1);
    s_console.switching = 0;
}
