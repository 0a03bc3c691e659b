// The console's controls: made from the component table, placed by console_layout, coloured by the
// components' states.
#include "ui/console_state_win.h"

#include "core/shared_block.h"
#include "core/strings_win.h"
#include "resources/ids.h"
#include "ui/button_win.h"
#include "ui/framework_win.h"
#include "ui/indicator_win.h"
#include "ui/paint_win.h"
#include "ui/tooltips_win.h"
#include "ui/trackbar_win.h"

#include <algorithm>
#include <initializer_list>

constexpr UINT kBrandId = 790;
constexpr UINT kVolumeId = 791;
constexpr int kMinVolume = 1, kMaxVolume = 99; // for changes asked for by other processes

// The display strip is darker than the panel round it, as the players' displays are.
static COLORREF StripColor() {
    const COLORREF c = Colors.CmpntBkClr;
    return RGB(GetRValue(c) * 3 / 10, GetGValue(c) * 3 / 10, GetBValue(c) * 3 / 10);
}

static int IsLamp(int row) {
    return Row(row).traits.kind == kEngineComponent;
}

static HWND MakeControl(int row) {
    const ComponentEntry& entry = Row(row);
    const HINSTANCE instance = s_console.start.instance;
    HWND control = nullptr;
    if (IsLamp(row)) {
        control = CreateTNVIndicator(entry.label, WS_VISIBLE, 0, 0, 0, 0, s_console.window,
                                     entry.traits.command, instance);
        AddIndicatorToolTip(s_console.tooltips, s_console.window, control, entry.tip);
    } else {
        control = CreateTNVButtonFromString(entry.label, WS_VISIBLE, 0, 0, 0, 0, s_console.window,
                                            entry.traits.command, instance);
        AddToolTipFromString(s_console.tooltips, s_console.window, control, entry.tip);
    }
    return control;
}

static HWND MakeSystemButton(UINT label, UINT tip, UINT id) {
    HWND button = CreateTNVButtonFromString(label, WS_VISIBLE, 0, 0, 0, 0, s_console.window, id,
                                            s_console.start.instance);
    AddToolTipFromString(s_console.tooltips, s_console.window, button, tip);
    return button;
}

int CreateConsoleControls() {
    const HINSTANCE instance = s_console.start.instance;
    s_console.tooltips = CreateToolTips(s_console.window);
    s_console.brand = CreateTNVIndicator(IDS_CONSOLE_BRAND, WS_VISIBLE, 0, 0, 0, 0,
                                         s_console.window, kBrandId, instance);
    int made = 1;
    for (int row = 0; row < RowCount(); ++row) {
        s_console.controls[row] = MakeControl(row);
        made = made && s_console.controls[row];
    }
    s_console.minimize =
        MakeSystemButton(IDS_CONSOLE_MINIMIZE, IDS_CONSOLE_MINIMIZE_TIP, kConsoleMinimizeAll);
    s_console.close = MakeSystemButton(IDS_CONSOLE_CLOSE, IDS_CONSOLE_CLOSE_TIP, kConsoleClose);
    s_console.volume = CreateTNVTrackBar(kTrackBarVertical | WS_VISIBLE, 0, 0, 0, 0,
                                         s_console.window, kVolumeId, instance);
    SetTrackBarRange(s_console.volume, 0, kLevelMax, 0);
    AddToolTipFromString(s_console.tooltips, s_console.window, s_console.volume,
                         IDS_CONSOLE_VOLUME_TIP);
    ShowConsoleColors();
    return made && s_console.minimize && s_console.close && s_console.volume;
}

// ---- states

// Seen at once, also where the next thing is a long wait.
void SetRowLook(int row, int on) {
    s_console.lit[row] = on;
    if (IsLamp(row)) {
        SetIndicatorColor(s_console.controls[row], on ? Colors.IndtrDrkClr : Colors.IndtrLtClr);
        InvalidateRect(s_console.window, nullptr, FALSE); // its round lamp
        UpdateWindow(s_console.window);
    } else {
        SetButtonOn(s_console.controls[row], on);
        UpdateWindow(s_console.controls[row]);
    }
}

void ShowRowState(int row) {
    SetRowLook(row, RowIsOn(row));
}

void ShowConsoleColors() {
    SetIndicatorColor(s_console.brand, Colors.BtnActClr);
    SetIndicatorBack(s_console.brand, StripColor());
    for (int row = 0; row < RowCount(); ++row) {
        if (IsLamp(row)) SetIndicatorBack(s_console.controls[row], StripColor());
        ShowRowState(row);
    }
    SetButtonOn(s_console.minimize, 0);
    SetButtonOn(s_console.close, 0);
    RefreshVolumeBar();
}

static int VolumeIsUsable() {
    int engineRuns = 0;
    for (int row = 0; row < RowCount(); ++row)
        if (Row(row).thread->runningBit == kRunningMixer) engineRuns = RowIsOn(row);
    return s_console.start.table->volume && engineRuns;
}

void RefreshVolumeBar() {
    if (s_console.shuttingDown || !s_console.volume) return;
    const int usable = VolumeIsUsable();
    EnableWindow(s_console.volume, usable);
    SetTrackBarColors(s_console.volume, usable ? Colors.BtnLtClr : Colors.CmpntBkClr,
                      Colors.CmpntBkClr);
    const int percent = usable ? s_console.start.table->volume->GetMasterVolume() : 0;
    // A bar that the wheel has moved further already, with the notice of it on its way, stays.
    const int before = s_console.level.pos;
    if (FollowLevel(&s_console.level, percent) != before)
        SetTrackBarPos(s_console.volume, s_console.level.pos);
}

// A release is reported also where nothing was moved: it sets nothing, but shows what there is.
void OnVolumeScroll(int position) {
    if (!VolumeIsUsable()) return;
    const VolumeControl* volume = s_console.start.table->volume;
    const int percent = AskByLevel(&s_console.level, position);
    if (percent == kLevelNone) {
        RefreshVolumeBar();
        return;
    }
    const int before = volume->SetMasterVolume(percent);
    SettleLevel(&s_console.level, before, volume->GetMasterVolume());
}

void ChangeVolume(int delta) {
    if (!VolumeIsUsable()) return;
    RefreshVolumeBar();
    const int64_t wanted = int64_t{kLevelMax} - s_console.level.pos + delta;
    OnVolumeScroll(kLevelMax -
                   static_cast<int>(std::clamp<int64_t>(wanted, kMinVolume, kMaxVolume)));
    SetTrackBarPos(s_console.volume, s_console.level.pos);
}

void JoinMixer() {
    if (VolumeIsUsable()) s_console.start.table->volume->RegisterWindow(s_console.window);
    RefreshVolumeBar();
}

int LampAt(POINT point) {
    int lamp = 0;
    for (int row = 0; row < RowCount(); ++row) {
        if (!IsLamp(row)) continue;
        const Box& dot = s_console.layout.lampDots[lamp];
        const Box& label = s_console.layout.lamps[lamp++];
        const int left = dot.width ? dot.left : label.left;
        if (point.x >= left && point.x < label.left + label.width && point.y >= label.top &&
            point.y < label.top + label.height)
            return row;
    }
    return -1;
}

// ---- layout

static int WantedFontHeight() {
    return LabelFontHeight(s_console.layout.reference.width, s_console.layout.reference.height,
                           UIOptions.DoubleFontSize);
}

// Fonts are made to measure labels by; the last one is kept, as labels are asked size by size.
struct Measure {
    HDC dc;
    HFONT font;
    int height;
};

static void DropFont(Measure* m) {
    SelectObject(m->dc, GetStockObject(SYSTEM_FONT));
    if (m->font) DeleteObject(m->font);
    m->font = nullptr;
}

static int MeasureLabel(const char* text, int fontHeight, void* context) {
    auto* m = static_cast<Measure*>(context);
    if (!m->font || m->height != fontHeight) {
        DropFont(m);
        m->font = CreateLabelFont(FontFaceName, fontHeight, kLabelWeight);
        m->height = fontHeight;
        SelectObject(m->dc, m->font);
    }
    SIZE size = {};
    GetTextExtentPoint32A(m->dc, text, lstrlenA(text), &size);
    return size.cx;
}

// The controls with a label, their room, and both of their texts.
struct LabelledControls {
    HWND windows[kMaxComponents + 3];
    ConsoleLabel labels[kMaxComponents + 3];
    char texts[kMaxComponents + 3][2][kStringMax];
    int count;
};

static void AddLabelled(LabelledControls* all, HWND window, const Box& box, UINT text,
                        UINT shortText) {
    if (!box.width || !box.height) return;
    const int i = all->count++;
    LoadText(text, all->texts[i][0]);
    LoadText(shortText ? shortText : text, all->texts[i][1]);
    all->windows[i] = window;
    all->labels[i] = {all->texts[i][0], all->texts[i][1], box.width, box.height, 0};
}

// Name and lamps stand close, now that their texts are chosen.
static void FitStrip(const LabelledControls& all, int height, Measure* measure) {
    int widths[kMaxComponents] = {}, lamps = 0, brand = 0;
    for (int i = 0; i < all.count; ++i) {
        if (!IsIndicator(all.windows[i])) continue;
        const int width = MeasureLabel(all.texts[i][all.labels[i].useShort], height, measure);
        if (all.windows[i] == s_console.brand)
            brand = width;
        else
            widths[lamps++] = width;
    }
    TightenStrip(&s_console.layout, brand, widths, lamps);
}

static void FitLabels() {
    const ConsoleLayout& layout = s_console.layout;
    static LabelledControls all; // too large for the stack of a window procedure
    all.count = 0;
    int lamp = 0, button = 0;
    for (int row = 0; row < RowCount(); ++row)
        AddLabelled(&all, s_console.controls[row],
                    IsLamp(row) ? layout.lamps[lamp++] : layout.buttons[button++], Row(row).label,
                    Row(row).shortLabel);
    AddLabelled(&all, s_console.brand, layout.brand, IDS_CONSOLE_BRAND, 0);
    AddLabelled(&all, s_console.minimize, layout.minimize, IDS_CONSOLE_MINIMIZE,
                IDS_CONSOLE_MINIMIZE_SHORT);
    AddLabelled(&all, s_console.close, layout.close, IDS_CONSOLE_CLOSE, 0);
    Measure measure = {CreateCompatibleDC(nullptr), nullptr, 0};
    const int height =
        FitConsoleLabels(all.labels, all.count, WantedFontHeight(), MeasureLabel, &measure);
    FitStrip(all, height, &measure);
    DropFont(&measure);
    DeleteDC(measure.dc);
    for (int i = 0; i < all.count; ++i) {
        const char* text = all.texts[i][all.labels[i].useShort];
        char present[kStringMax];
        GetWindowTextA(all.windows[i], present, kStringMax);
        if (lstrcmpA(present, text)) SetWindowTextA(all.windows[i], text);
    }
    GiveFont(&s_console.font, FontFaceName, height, kLabelWeight, all.windows, all.count);
}

static void PlaceControl(HDWP* places, HWND control, const Box& box) {
    const int shown = box.width > 0 && box.height > 0;
    if (*places)
        *places = DeferWindowPos(
            *places, control, nullptr, box.left, box.top, box.width, box.height,
            SWP_NOZORDER | SWP_NOACTIVATE | (shown ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
}

void LayOutControls() {
    RECT client;
    GetClientRect(s_console.window, &client);
    if (IsIconic(s_console.window) || !s_console.close) return;
    int lamps = 0;
    for (int row = 0; row < RowCount(); ++row)
        lamps += IsLamp(row);
    const int buttons = RowCount() - lamps;
    s_console.layout = LayOutConsole(client.right, client.bottom, buttons, lamps, 0);
    // The font follows from the buttons, and the strip should have room for it.
    s_console.layout =
        LayOutConsole(client.right, client.bottom, buttons, lamps, WantedFontHeight());
    const ConsoleLayout& layout = s_console.layout;
    FitLabels();
    HDWP places = BeginDeferWindowPos(RowCount() + 4);
    int lamp = 0, button = 0;
    for (int row = 0; row < RowCount(); ++row)
        PlaceControl(&places, s_console.controls[row],
                     IsLamp(row) ? layout.lamps[lamp++] : layout.buttons[button++]);
    PlaceControl(&places, s_console.brand, layout.brand);
    PlaceControl(&places, s_console.minimize, layout.minimize);
    PlaceControl(&places, s_console.close, layout.close);
    PlaceControl(&places, s_console.volume, layout.volume);
    if (places) EndDeferWindowPos(places);
    for (int row = 0; row < RowCount(); ++row)
        if (IsLamp(row))
            PlaceIndicatorToolTip(s_console.tooltips, s_console.window, s_console.controls[row]);
    InvalidateRect(s_console.window, nullptr, TRUE);
}

// ---- painting what lies beside the controls: the groups' edges and the round lamps

// Part of the way from a colour's channel to black or white, in eighths.
static COLORREF Shade(COLORREF color, int eighths) {
    const auto mix = [&](int c) {
        return eighths < 0 ? c + c * eighths / 8 : c + (255 - c) * eighths / 8;
    };
    return RGB(mix(GetRValue(color)), mix(GetGValue(color)), mix(GetBValue(color)));
}

// A sunken edge in shades of the panel's own colour: the system's edge colours glare on a dark one.
static void SunkenEdge(HDC dc, const Box& box, COLORREF color) {
    if (box.width < 2 || box.height < 2) return;
    const int right = box.left + box.width - 1, bottom = box.top + box.height - 1;
    SetDCPenColor(dc, Shade(color, -5));
    MoveToEx(dc, box.left, bottom, nullptr);
    LineTo(dc, box.left, box.top);
    LineTo(dc, right, box.top);
    SetDCPenColor(dc, Shade(color, 2));
    LineTo(dc, right, bottom);
    LineTo(dc, box.left, bottom);
}

static void RoundLamp(HDC dc, const Box& box, COLORREF color) {
    if (box.width <= 0) return;
    SetDCBrushColor(dc, color);
    SetDCPenColor(dc, GetSysColor(COLOR_3DDKSHADOW));
    Ellipse(dc, box.left, box.top, box.left + box.width, box.top + box.height);
}

void PaintConsole(HDC dc) {
    const ConsoleLayout& layout = s_console.layout;
    const int saved = SaveDC(dc);
    SelectObject(dc, GetStockObject(DC_BRUSH));
    SelectObject(dc, GetStockObject(DC_PEN));
    const RECT strip = {layout.strip.left, layout.strip.top, layout.strip.left + layout.strip.width,
                        layout.strip.top + layout.strip.height};
    FillArea(dc, strip, StripColor());
    if (UIOptions.Use3dLook)
        for (const Box& box : {layout.strip, layout.group, layout.systemGroup})
            SunkenEdge(dc, box, Colors.CmpntBkClr);
    int lamp = 0;
    for (int row = 0; row < RowCount(); ++row)
        if (IsLamp(row))
            RoundLamp(dc, layout.lampDots[lamp++],
                      s_console.lit[row] ? Colors.IndtrDrkClr : Colors.IndtrLtClr);
    RestoreDC(dc, saved);
}
