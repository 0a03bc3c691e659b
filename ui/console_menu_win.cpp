// The console's context menu, its icon in the notification area and that icon's menu. Menus are
// built each time from the options and the component table.
#include "ui/console_state_win.h"

#include "core/strings_win.h"
#include "resources/ids.h"
#include "ui/framework_win.h"

static void AddItem(HMENU menu, UINT command, UINT textId, int checked) {
    char text[kStringMax];
    if (!LoadText(textId, text)) return;
    AppendMenuA(menu, MF_STRING | (checked ? MF_CHECKED : 0), command, text);
}

static void AddSeparator(HMENU menu) {
    AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
}

static void AddSubmenu(HMENU menu, HMENU submenu, UINT textId) {
    char text[kStringMax];
    LoadText(textId, text);
    AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(submenu), text);
}

static void AddEngineItems(HMENU menu, int row) {
    const ComponentEntry& entry = Row(row);
    AddItem(menu, entry.traits.command, RowIsOn(row) ? entry.disengage : entry.engage, 0);
    if (entry.Configure) AddItem(menu, entry.configureCommand, entry.configureText, 0);
    AddSeparator(menu);
}

void ShowContextMenu(POINT screen) {
    HMENU menu = CreatePopupMenu();
    if (!menu) return;
    POINT client = screen;
    ScreenToClient(s_console.window, &client);
    const int lamp = LampAt(client);
    if (lamp >= 0) AddEngineItems(menu, lamp);
    AddItem(menu, kConsoleAlwaysOnTop, IDS_MENU_ALWAYS_ON_TOP, s_console.AlwaysOnTop);
    AddItem(menu, kConsoleTaskbarIcon, IDS_MENU_TASKBAR_ICON, s_console.TaskBarIcon);
    AddItem(menu, kConsole3dLook, IDS_MENU_3D_LOOK, UIOptions.Use3dLook);
    AddItem(menu, kConsoleLockMovement, IDS_MENU_LOCK_MOVEMENT, UIOptions.LockMovement);
    AddItem(menu, kConsoleLockWindows, IDS_MENU_LOCK_WINDOWS, UIOptions.LockWindows);
    AddItem(menu, kConsoleLargeFont, IDS_MENU_LARGE_FONT, UIOptions.DoubleFontSize);
    AddItem(menu, kConsolePreventSaver, IDS_MENU_PREVENT_SAVER, UIOptions.PreventSS);
    TrackPopupMenu(menu, TPM_CENTERALIGN | TPM_VCENTERALIGN | TPM_RIGHTBUTTON, screen.x, screen.y,
                   0, s_console.window, nullptr);
    DestroyMenu(menu);
}

static HMENU RowsMenu(int engines) {
    HMENU menu = CreatePopupMenu();
    for (int row = 0; menu && row < RowCount(); ++row)
        if (Row(row).menu && (Row(row).traits.kind == kEngineComponent) == engines)
            AddItem(menu, Row(row).traits.command, Row(row).menu, RowIsOn(row));
    return menu;
}

void ShowIconMenu() {
    HMENU menu = CreatePopupMenu();
    if (!menu) return;
    AddItem(menu, kConsoleTaskbarOnly, IDS_MENU_TASKBAR_ONLY, !IsWindowVisible(s_console.window));
    AddSeparator(menu);
    AddSubmenu(menu, RowsMenu(1), IDS_MENU_ENGINES);
    AddSeparator(menu);
    AddSubmenu(menu, RowsMenu(0), IDS_MENU_COMPONENTS);
    POINT cursor;
    GetCursorPos(&cursor);
    // Without these two a click beside the menu would not close it.
    SetForegroundWindow(s_console.window);
    TrackPopupMenu(menu, TPM_RIGHTBUTTON, cursor.x, cursor.y, 0, s_console.window, nullptr);
    PostMessageA(s_console.window, WM_NULL, 0, 0);
    DestroyMenu(menu); // with its submenus
}

// ---- the icon

void AddNotifyIcon() {
    s_console.icon.window = s_console.window;
    s_console.icon.id = kConsoleIconCallback;
    char tip[kStringMax];
    LoadText(IDS_CONSOLE_ICON_TIP, tip);
    AddTrayIcon(&s_console.icon,
                static_cast<HICON>(LoadImageA(
                    s_console.start.instance, MAKEINTRESOURCEA(IDI_TONVISTA), IMAGE_ICON,
                    GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED)),
                tip);
}

void RemoveNotifyIcon() {
    RemoveTrayIcon(&s_console.icon);
}
