// The custom controls: what they tell their parent, and what is seen of them.
#include "core/commands.h"
#include "kit.h"
#include "ui/button_win.h"
#include "ui/divider_win.h"
#include "ui/trackbar_win.h"

#include <gtest/gtest.h>

using Codes = std::vector<int>;
constexpr COLORREF kFace = 0x336699, kText = 0x0000FF, kHot = 0x00FF00;

static HWND MakeButton(const Recorder& recorder, DWORD style = 0, const char* text = "WWW") {
    HWND button =
        CreateTNVButton(text, WS_VISIBLE | style, 10, 10, 80, 30, recorder.window, 704, nullptr);
    SetButtonColors(button, kText, kFace, kHot);
    return button;
}

// A press inside, a way, and the release at its end.
static void Press(HWND button, const std::vector<POINT>& way) {
    SendMessageA(button, WM_MOUSEMOVE, 0, At(4, 4));
    SendMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    for (POINT p : way)
        SendMessageA(button, WM_MOUSEMOVE, MK_LBUTTON, At(p.x, p.y));
    const POINT end = way.empty() ? POINT{5, 5} : way.back();
    SendMessageA(button, WM_LBUTTONUP, 0, At(end.x, end.y));
}

// ---- button

TEST(Button, ReleaseInsideIsAClickAndOutsideIsNone) {
    Recorder parent;
    HWND button = MakeButton(parent);
    const struct {
        std::vector<POINT> way;
        size_t clicks;
        Codes told; // with SetButtonNotify; the lost capture tells of a release too
    } rows[] = {{{}, 1, {2, 3, 0}},
                {{{-3, 5}, {-4, 5}}, 0, {2, 3, 3}},
                {{{5, 31}, {6, 6}}, 1, {2, 3, 2, 3, 0}},
                {{{6, 6}, {200, 6}}, 0, {2, 3, 3}}};
    for (const int notify : {0, 1})
        for (const auto& row : rows) {
            SetButtonNotify(button, notify);
            parent.notes.clear();
            Press(button, row.way);
            EXPECT_EQ(GetCapture() == button, row.clicks == 1)
                << "kept while the pointer is inside";
            EXPECT_EQ(parent.CodesOf(button).size(), notify ? row.told.size() - row.clicks : 0)
                << "a click is posted, the others are sent";
            Pump();
            EXPECT_EQ(parent.CodesOf(button),
                      notify ? row.told : Codes(row.clicks, kButtonClicked));
        }
    EXPECT_EQ(LOWORD(parent.notes.back().wParam), 704);
}

TEST(Button, LostCaptureEndsThePress) {
    Recorder parent;
    HWND button = MakeButton(parent);
    SetButtonNotify(button, 1);
    SendMessageA(button, WM_MOUSEMOVE, 0, At(4, 4));
    SendMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    ReleaseCapture();
    EXPECT_EQ(parent.CodesOf(button), (Codes{kButtonPressed, kButtonReleased}));
    SendMessageA(button, WM_LBUTTONUP, 0, At(5, 5)); // the release of a press that began elsewhere
    Pump();
    EXPECT_EQ(parent.CodesOf(button).size(), 2u) << "no click";
    EXPECT_EQ(PixelOf(button, 0, 0), GetSysColor(COLOR_3DLIGHT)) << "raised again";
}

TEST(Button, ParentMayDestroyItInsideANotification) {
    for (int code : {kButtonPressed, kButtonReleased}) {
        Recorder parent;
        HWND button = MakeButton(parent);
        SetButtonNotify(button, 1);
        parent.onNote = [&](const Note& note) {
            if (HIWORD(note.wParam) == code) DestroyWindow(button);
        };
        Press(button, {});
        Pump();
        EXPECT_FALSE(IsWindow(button));
        for (int told : parent.CodesOf(button))
            EXPECT_NE(told, kButtonClicked) << "a button that is gone is not clicked";
    }
}

TEST(Button, PushlikeStaysInUntilClickedAgain) {
    Recorder parent;
    HWND toggle = MakeButton(parent, BS_PUSHLIKE);
    for (int checked : {1, 0}) {
        Press(toggle, {});
        EXPECT_EQ(SendMessageA(toggle, BM_GETCHECK, 0, 0), checked);
        EXPECT_EQ(PixelOf(toggle, 0, 0), GetSysColor(checked ? COLOR_3DSHADOW : COLOR_3DLIGHT));
    }
}

// ---- track bar

static HWND MakeBar(const Recorder& recorder, DWORD style) {
    const int tall = style & kTrackBarVertical;
    HWND bar = CreateTNVTrackBar(WS_VISIBLE | style, 10, 10, tall ? 20 : 108, tall ? 108 : 20,
                                 recorder.window, 737, nullptr);
    SetTrackBarRange(bar, 0, 100, 1);
    SetTrackBarColors(bar, 0x112233, 0x445566);
    return bar;
}

// Positions and codes of the notifications, pumped out of the queue.
static std::vector<std::pair<int, int>> Scrolls(Recorder* recorder, UINT message, HWND bar) {
    Pump();
    std::vector<std::pair<int, int>> found;
    for (const Note& note : recorder->notes)
        if (note.message == message && note.lParam == reinterpret_cast<LPARAM>(bar))
            found.push_back({HIWORD(note.wParam), LOWORD(note.wParam)});
    recorder->notes.clear();
    return found;
}
using Moves = std::vector<std::pair<int, int>>;

TEST(TrackBarWindow, DragFollowsThePointerAndEndsOnce) {
    for (DWORD style : {0ul, kTrackBarVertical}) {
        Recorder parent;
        HWND bar = MakeBar(parent, style);
        const UINT message = style ? WM_VSCROLL : WM_HSCROLL;
        auto at = [&](int along) { return style ? At(8, along) : At(along, 8); };
        SetTrackBarPos(bar, 50);
        EXPECT_EQ(Scrolls(&parent, message, bar), Moves{}) << "set from outside: no notice";
        SendMessageA(bar, WM_LBUTTONDOWN, MK_LBUTTON, at(53)); // the thumb is 51 to 56
        EXPECT_EQ(CountPixels(bar, ClientRect(bar), 0x112233), 0) << "white while dragged";
        SendMessageA(bar, WM_MOUSEMOVE, MK_LBUTTON, at(63));
        SetTrackBarPos(bar, 5); // ignored
        for (int along : {63, 900, -20})
            SendMessageA(bar, WM_MOUSEMOVE, MK_LBUTTON, at(along));
        SendMessageA(bar, WM_LBUTTONUP, 0, at(-20));
        EXPECT_EQ(GetFocus(), bar);
        EXPECT_EQ(Scrolls(&parent, message, bar), (Moves{{60, 5}, {100, 5}, {0, 5}, {0, 8}}));
        SendMessageA(bar, WM_LBUTTONDOWN, MK_LBUTTON, at(3));
        ReleaseCapture(); // ends the drag, once
        SendMessageA(bar, WM_MOUSEMOVE, 0, at(60));
        EXPECT_EQ(Scrolls(&parent, message, bar), (Moves{{0, 8}}));
        EXPECT_GT(CountPixels(bar, ClientRect(bar), 0x112233), 0);
    }
}

TEST(TrackBarWindow, ClickBesideTheThumbIsAPageAndTheWheelTwoSteps) {
    for (DWORD style : {0ul, kTrackBarVertical})
        for (const auto& [along, up, page, wheel] : {std::tuple{90, 1, 62, 60}, {10, 0, 38, 40}}) {
            Recorder parent;
            HWND bar = MakeBar(parent, style);
            SetTrackBarPos(bar, 50);
            SendMessageA(bar, WM_LBUTTONDOWN, MK_LBUTTON, style ? At(8, along) : At(along, 8));
            Pump();
            SendMessageA(bar, WM_COMMAND, kWheelStep, up);
            EXPECT_EQ(Scrolls(&parent, style ? WM_VSCROLL : WM_HSCROLL, bar),
                      (Moves{{page, SB_ENDSCROLL}, {wheel, SB_ENDSCROLL}}));
        }
}

// ---- divider

TEST(Divider, ReportsHowFarItIsDragged) {
    Recorder parent;
    HWND divider = CreateTNVDivider(WS_VISIBLE, 0, 100, 200, 6, parent.window, 720, nullptr);
    std::vector<int> moves;
    parent.onNote = [&](const Note& note) {
        EXPECT_EQ(LOWORD(note.wParam), SB_THUMBTRACK);
        moves.push_back(static_cast<short>(HIWORD(note.wParam)));
        // As the move of the divider causes: not to be reported again.
        SendMessageA(divider, WM_MOUSEMOVE, MK_LBUTTON, At(5, 40));
    };
    SendMessageA(divider, WM_MOUSEMOVE, MK_LBUTTON, At(5, 9)); // not grabbed
    SendMessageA(divider, WM_LBUTTONDOWN, MK_LBUTTON, At(5, 2));
    SendMessageA(divider, WM_MOUSEMOVE, MK_LBUTTON, At(5, 12));
    SendMessageA(divider, WM_MOUSEMOVE, MK_LBUTTON, At(5, -30));
    SendMessageA(divider, WM_LBUTTONUP, 0, At(5, -30));
    EXPECT_EQ(GetCapture(), nullptr);
    SendMessageA(divider, WM_LBUTTONDOWN, MK_LBUTTON, At(5, 2));
    ReleaseCapture(); // ends the drag
    SendMessageA(divider, WM_MOUSEMOVE, MK_LBUTTON, At(5, 12));
    EXPECT_EQ(moves, (std::vector<int>{10, -32}));
}
