// The console's context menu, its icon in the notification area and that icon's menu. Menus are
// built each time from the options and the component table.
#include "ui/console_state_win.h"

#include "core/strings_win.h"
#include "resources/ids.h"
#include "ui/framework_win.h"
#include "ui/layouts_win.h"
#include "ui/menu_win.h"

static void AddEngineItems(HMENU menu, int row) {
    const ComponentEntry& entry = Row(row);
    AppendMenuEntry(menu, entry.traits.command, RowIsOn(row) ? entry.disengage : entry.engage);
    if (entry.Configure) AppendMenuEntry(menu, entry.configureCommand, entry.configureText);
    AppendMenuSeparator(menu);
}

// The submenu of the component whose button was clicked.
static void AddProperties(HMENU menu, POINT screen) {
    for (int row = 0; row < RowCount(); ++row) {
        const ComponentEntry& entry = Row(row);
        RECT button = {};
        if (!entry.FillProperties || !GetWindowRect(s_console.controls[row], &button)) continue;
        const HMENU properties = PtInRect(&button, screen) ? CreatePopupMenu() : nullptr;
        if (!properties) continue;
        entry.FillProperties(properties);
        AppendSubmenu(menu, properties, entry.propertiesText);
        AppendMenuSeparator(menu);
    }
}

void ShowContextMenu(POINT screen) {
    HMENU menu = CreatePopupMenu();
    if (!menu) return;
    POINT client = screen;
    ScreenToClient(s_console.window, &client);
    const int lamp = LampAt(client);
    if (lamp >= 0) AddEngineItems(menu, lamp);
    AddProperties(menu, screen);
    AppendMenuEntry(menu, kConsoleAlwaysOnTop, IDS_MENU_ALWAYS_ON_TOP, s_console.AlwaysOnTop);
    AppendMenuEntry(menu, kConsoleTaskbarIcon, IDS_MENU_TASKBAR_ICON, s_console.TaskBarIcon);
    AppendMenuEntry(menu, kConsole3dLook, IDS_MENU_3D_LOOK, UIOptions.Use3dLook);
    AppendMenuEntry(menu, kConsoleLockMovement, IDS_MENU_LOCK_MOVEMENT, UIOptions.LockMovement);
    AppendMenuEntry(menu, kConsoleLockWindows, IDS_MENU_LOCK_WINDOWS, UIOptions.LockWindows);
    AppendMenuEntry(menu, kConsoleLargeFont, IDS_MENU_LARGE_FONT, UIOptions.DoubleFontSize);
    AppendMenuEntry(menu, kConsolePreventSaver, IDS_MENU_PREVENT_SAVER, UIOptions.PreventSS);
    AppendMenuSeparator(menu);
    AppendMenuEntry(menu, kConsoleColors, IDS_MENU_COLORS);
    AppendMenuEntry(menu, kConsoleFont, IDS_MENU_FONT);
    AppendMenuEntry(menu, kConsoleHotkeys, IDS_MENU_HOTKEYS);
    AppendMenuSeparator(menu);
    AppendLayoutsMenu(menu);
    ShowMenu(menu, s_console.window, screen, TPM_CENTERALIGN | TPM_VCENTERALIGN);
}

static HMENU RowsMenu(int engines) {
    HMENU menu = CreatePopupMenu();
    for (int row = 0; menu && row < RowCount(); ++row)
        if (Row(row).menu && (Row(row).traits.kind == kEngineComponent) == engines)
            AppendMenuEntry(menu, Row(row).traits.command, Row(row).menu, RowIsOn(row));
    return menu;
}

void ShowIconMenu() {
    HMENU menu = CreatePopupMenu();
    if (!menu) return;
    AppendMenuEntry(menu, kConsoleTaskbarOnly, IDS_MENU_TASKBAR_ONLY,
                    !IsWindowVisible(s_console.window));
    AppendMenuSeparator(menu);
    AppendLayoutsMenu(menu);
    AppendMenuSeparator(menu);
    AppendSubmenu(menu, RowsMenu(1), IDS_MENU_ENGINES);
    AppendMenuSeparator(menu);
    AppendSubmenu(menu, RowsMenu(0), IDS_MENU_COMPONENTS);
    AppendMenuSeparator(menu);
    AppendMenuEntry(menu, kConsoleHelp, IDS_MENU_HELP);
    ShowMenuAtCursor(menu, s_console.window);
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
