// Layouts in the registry, and their submenu. See layouts_win.h; applying one stands with the
// console (console_layouts_win.cpp).
#include "ui/layouts_win.h"

#include "core/commands.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/framework_win.h"
#include "ui/menu_win.h"

namespace {
struct EntryName {
    char key[64], value[16];
};
} // namespace

static int NameOf(int layout, int index, EntryName* name) {
    if (layout < 0 || layout >= kLayoutCount || index < 0) return 0;
    FormatText(name->key, sizeof name->key, "%s\\Layouts\\Layout%d", kSettingsRoot, layout);
    FormatText(name->value, sizeof name->value, "Window%d", index);
    return 1;
}

int ReadLayoutEntry(int layout, int index, LayoutEntry* entry) {
    EntryName name;
    *entry = {};
    return NameOf(layout, index, &name) &&
           ReadRegValue(kUserRoot, name.key, name.value, kRegBinary, entry, sizeof *entry);
}

int WriteLayoutEntry(int layout, int index, int x, int y, int width, int height, uint32_t open) {
    EntryName name;
    const LayoutEntry entry = {x, y, width, height, open};
    return NameOf(layout, index, &name) &&
           WriteRegValue(kUserRoot, name.key, name.value, kRegBinary, &entry, sizeof entry);
}

int LayoutEntryExists(int layout, int index) {
    EntryName name;
    return NameOf(layout, index, &name) && RegValueExists(kUserRoot, name.key, name.value);
}

void SeedLayouts(int force) {
    for (int layout = 0; layout < kLayoutCount; ++layout)
        for (int place = 0; place < kLayoutWindows; ++place) {
            const int index = kLayoutWindowIds[place] - 1;
            const LayoutEntry e = BuiltInLayoutEntry(layout, place);
            if (force || !LayoutEntryExists(layout, index))
                WriteLayoutEntry(layout, index, e.X, e.Y, e.Width, e.Height, e.Open);
        }
}

static BOOL CALLBACK NoteOpenWindow(HWND window, LPARAM mask) {
    const int id = static_cast<int>(WindowIdOf(window));
    if (id >= 1 && id <= 32) *reinterpret_cast<uint32_t*>(mask) |= WindowBit(id);
    return TRUE;
}

// The windows themselves are asked, for the console's own record is its thread's alone.
static uint32_t OpenWindows() {
    uint32_t mask = WindowBit(kConsoleWindowId);
    EnumWindows(NoteOpenWindow, reinterpret_cast<LPARAM>(&mask));
    return mask;
}

int StoreLayout(int layout) {
    const uint32_t open = OpenWindows();
    int good = 1;
    for (const int id : kLayoutWindowIds) {
        int x = 0, y = 0, width = 0, height = 0;
        good &= GetSavedPlacement(id, &x, &y, &width, &height) &&
                WriteLayoutEntry(layout, id - 1, x, y, width, height, (open & WindowBit(id)) != 0);
    }
    return good;
}

int SelectedLayout() {
    return LayoutOfSetting(ReadWindowDword(kLayoutsWindowId, "Setting", 0));
}

void AppendLayoutsMenu(HMENU menu) {
    const HMENU layouts = CreatePopupMenu();
    char format[kStringMax], text[kStringMax];
    LoadText(IDS_LAYOUTS_ENTRY, format);
    for (int i = 0; layouts && i < kLayoutCount; ++i) {
        FormatText(text, sizeof text, format, i + 1);
        AppendMenuText(layouts, kLayoutFirst + i, text);
    }
    AppendSubmenu(menu, layouts, IDS_LAYOUTS_MENU);
}
