// The controls of the database manager window: how they are made, placed, lettered and coloured.
// Fonts are made when size or look change.
#include "archive/clipboard_win.h"
#include "archive/manager_state_win.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/button_win.h"
#include "ui/divider_win.h"
#include "ui/framework_win.h"
#include "ui/indicator_win.h"
#include "ui/paint_win.h"
#include "ui/tooltips_win.h"
#include "ui/window_thread_win.h"

#include <cstring>

static constexpr int kGroupAir = 3; // pixels between controls and their group's edge
static constexpr int kPanelAir = 2; // the panel is that much larger than what lies on it
static constexpr int kLabelAir = 6; // edges and air beside a button's label

static int IsIndicatorId(int id) {
    return id >= kManagerName && id <= kManagerProgress;
}
static int IsButtonId(int id) {
    return id == kManagerPower || (id > kManagerProgress && id <= kManagerToggle);
}

// ---- making

static HWND CreateEdit(HWND window, int id, DWORD style, DWORD edge) {
    const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(window, GWLP_HINSTANCE));
    return CreateWindowExA(edge, "EDIT", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | style, 0, 0,
                           10, 10, window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                           instance, nullptr);
}

static HWND CreateControlOf(ManagerWindow* manager, int id) {
    const HWND window = manager->window;
    const UINT label = IDS_DATABASE_LABELS + static_cast<UINT>(id - kManagerPower);
    if (IsIndicatorId(id))
        return CreateTNVIndicator(label, WS_VISIBLE, 0, 0, 10, 10, window, id, nullptr);
    if (IsButtonId(id))
        return CreateTNVButtonFromString(label, WS_VISIBLE, 0, 0, 10, 10, window, id, nullptr);
    switch (id) {
    case kManagerDivider: return CreateTNVDivider(WS_VISIBLE, 0, 0, 10, 10, window, id, nullptr);
    case kManagerSearch: return CreateEdit(window, id, ES_AUTOHSCROLL, WS_EX_CLIENTEDGE);
    case kManagerSummary:
        return CreateEdit(window, id,
                          ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL | WS_VSCROLL,
                          WS_EX_CLIENTEDGE);
    default: return nullptr;
    }
}

int CreateManagerControls(ManagerWindow* manager) {
    const HWND window = manager->window;
    manager->tooltips = CreateToolTips(window);
    for (int i = 0; i < kManagerControls; ++i) {
        const int id = kManagerControlIds[i];
        const UINT tip = IDS_DATABASE_TIPS + static_cast<UINT>(id - kManagerPower);
        if (id == kManagerList) continue; // made with its columns
        const HWND control = manager->controls[i] = CreateControlOf(manager, id);
        if (!control) return 0;
        if (IsIndicatorId(id)) AddIndicatorToolTip(manager->tooltips, window, control, tip);
        if (IsButtonId(id)) AddToolTipFromString(manager->tooltips, window, control, tip);
    }
    AddToolTipFromString(manager->tooltips, window, ControlOf(*manager, kManagerSearch),
                         IDS_DATABASE_SEARCH_TIP);
    return CreateManagerList(manager);
}

// ---- letters

// What a control's letters must have room for: its label, or the longest that usually stands there.
static void WidestText(int id, char (&text)[kStringMax]) {
    switch (id) {
    case kManagerView: LoadText(IDS_DATABASE_VIEWS + kArtistView, text); break;
    case kManagerSort:
        LoadText(IDS_DATABASE_SORTS + kByComment, text);
        AppendText(text, sizeof text, " (D)");
        break;
    case kManagerProgress: CopyText(text, "88888 Entries"); break;
    default: LoadText(IDS_DATABASE_LABELS + static_cast<UINT>(id - kManagerPower), text);
    }
}

static int LettersFit(const ManagerWindow& manager, int from, int count, int air, int height) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT font = CreateLabelFont(FontFaceName, height, kLabelWeight);
    const HGDIOBJ before = SelectObject(dc, font);
    int fits = 1;
    for (int i = from; i < from + count && fits; ++i) {
        char text[kStringMax];
        SIZE size = {};
        WidestText(kManagerControlIds[i], text);
        GetTextExtentPoint32A(dc, text, static_cast<int>(strlen(text)), &size);
        const int room = manager.layout.boxes[i].width;
        if (room && size.cx > room - air) fits = 0;
    }
    SelectObject(dc, before);
    DeleteObject(font);
    DeleteDC(dc);
    return fits;
}

static void GiveLabelFont(ManagerWindow* manager, CachedFont* font, int from, int count, int air) {
    int height = manager->layout.letterHeight;
    while (height > kManagerMinLetter && !LettersFit(*manager, from, count, air, height))
        --height;
    GiveFont(font, FontFaceName, height, kLabelWeight, manager->controls + from, count);
}

static void GiveFonts(ManagerWindow* manager) {
    const HWND readable[] = {ListOf(*manager), ControlOf(*manager, kManagerSummary),
                             manager->cellEdit};
    const HWND search = ControlOf(*manager, kManagerSearch);
    GiveLabelFont(manager, &manager->labelFont, kManagerFirstButton, kManagerButtons, kLabelAir);
    GiveLabelFont(manager, &manager->stripFont, kManagerFirstIndicator, kManagerIndicators, 0);
    GiveFont(&manager->listFont, FontFaceName, ManagerLetterHeight(UIOptions.DoubleFontSize) + 1,
             FW_NORMAL, readable, 3);
    GiveFont(&manager->searchFont, FontFaceName, manager->layout.letterHeight, FW_NORMAL, &search,
             1);
}

// ---- colours and layout

// As dark as the players' displays.
static COLORREF PanelColor(const ManagerWindow& manager) {
    const COLORREF c = WindowBkColor(manager.window);
    return RGB(GetRValue(c) * 3 / 10, GetGValue(c) * 3 / 10, GetBValue(c) * 3 / 10);
}

static void ApplyColors(const ManagerWindow& manager) {
    for (int i = 0; i < kManagerControls; ++i) {
        const int id = kManagerControlIds[i];
        if (IsButtonId(id)) SetButtonOn(manager.controls[i], 0);
        if (!IsIndicatorId(id)) continue;
        SetIndicatorColor(manager.controls[i],
                          id == kManagerName ? Colors.IndtrLtClr : Colors.IndtrDrkClr);
        SetIndicatorBack(manager.controls[i], PanelColor(manager));
    }
    SetDividerColor(ControlOf(manager, kManagerDivider), Colors.BtnFaceClr);
    SendMessageA(ListOf(manager), LVM_SETBKCOLOR, 0, 0);
    SendMessageA(ListOf(manager), LVM_SETTEXTBKCOLOR, 0, 0);
    SendMessageA(ListOf(manager), LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(Colors.IndtrDrkClr));
}

static void PlaceAll(ManagerWindow* manager) {
    ControlPlace places[kManagerControls];
    for (int i = 0; i < kManagerControls; ++i)
        places[i] = {kManagerControlIds[i], manager->layout.boxes[i]};
    PlaceControls(manager->window, places, kManagerControls);
    for (int i = 0; i < kManagerIndicators; ++i)
        PlaceIndicatorToolTip(manager->tooltips, manager->window, manager->controls[i]);
    PlaceManagerCell(manager);
}

// 0 would stand for the rule.
static ManagerWish WishFor(int listHeight) {
    return {UIOptions.DoubleFontSize != 0, listHeight < 1 ? 1 : listHeight};
}

void LayOutManagerWindow(ManagerWindow* manager, int width, int height) {
    int* wanted = &manager->settings.listHeight;
    const int before = manager->layout.panesHeight;
    manager->layout = LayOutManager(width, height, {UIOptions.DoubleFontSize != 0, 0});
    // What the window grows by is the list's. The sum may leave the panes for a while, below 0
    // even, so that a window that was made small for a moment gets its old division back.
    if (*wanted && before) *wanted += manager->layout.panesHeight - before;
    if (*wanted) manager->layout = LayOutManager(width, height, WishFor(*wanted));
    CloseManagerCell(manager, 1);
    PlaceAll(manager);
    FitManagerColumns(manager, width);
    GiveFonts(manager);
    ApplyColors(*manager);
    InvalidateRect(manager->window, nullptr, TRUE);
}

void MoveManagerDivider(ManagerWindow* manager, int dy) {
    RECT client;
    if (!GetClientRect(manager->window, &client) || !dy) return;
    const Box list = manager->layout.boxes[ManagerControlIndex(kManagerList)];
    manager->layout = LayOutManager(client.right, client.bottom, WishFor(list.height + dy));
    manager->settings.listHeight = manager->layout.boxes[ManagerControlIndex(kManagerList)].height;
    PlaceAll(manager);
}

static RECT RectOf(const Box& box, int air) {
    RECT rect = {box.left, box.top, box.left + box.width, box.top + box.height};
    InflateRect(&rect, air, air);
    return rect;
}

void PaintManager(const ManagerWindow& manager) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(manager.window, &paint);
    if (!dc) return;
    if (manager.layout.panel.width)
        FillArea(dc, RectOf(manager.layout.panel, kPanelAir), PanelColor(manager));
    if (UIOptions.Use3dLook)
        for (const Box& group : manager.layout.groups) {
            RECT edge = RectOf(group, kGroupAir);
            if (group.width) DrawEdge(dc, &edge, BDR_SUNKENOUTER, BF_RECT);
        }
    EndPaint(manager.window, &paint);
}

// ---- what is shown

static UINT SortText(SortKey key) {
    return key == kByTrackNumber ? IDS_DATABASE_SORT_NUMBER : IDS_DATABASE_SORTS + key;
}

void ShowManagerCaptions(ManagerWindow* manager) {
    char text[kStringMax], direction[kStringMax];
    LoadText(IDS_DATABASE_VIEWS + manager->settings.view, text);
    SetWindowTextA(ControlOf(*manager, kManagerView), text);
    LoadText(SortText(manager->settings.key), text);
    LoadText(manager->settings.ascending ? IDS_DATABASE_ASCENDING : IDS_DATABASE_DESCENDING,
             direction);
    AppendText(text, sizeof text, direction);
    SetWindowTextA(ControlOf(*manager, kManagerSort), text);
    ShowManagerCount(manager);
}

void ShowManagerCount(ManagerWindow* manager) {
    char format[kStringMax], text[kStringMax];
    if (manager->status) {
        LoadText(manager->status, text);
    } else {
        LoadText(manager->settings.view == kCdView ? IDS_DATABASE_CDS : IDS_DATABASE_ENTRIES,
                 format);
        FormatText(text, sizeof text, format, static_cast<int>(CatalogRowCount(manager->catalog)));
    }
    SetWindowTextA(ControlOf(*manager, kManagerProgress), text);
}

void ShowManagerProgress(ManagerWindow* manager, size_t done, size_t total) {
    SetIndicatorProgress(ControlOf(*manager, kManagerProgress), total != 0, 0,
                         static_cast<int>(total), static_cast<int>(done));
}

void EnableManagerButtons(const ManagerWindow& manager) {
    const int whole = manager.settings.view != kTrackView; // rows stand for whole discs
    for (const int id : {kManagerExport, kManagerImport, kManagerCopy, kManagerDelete, kManagerEdit,
                         kManagerSelect})
        EnableWindow(ControlOf(manager, id), whole);
    EnableWindow(ControlOf(manager, kManagerPaste), whole && ClipboardHasDiscs());
}
