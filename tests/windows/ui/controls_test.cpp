// The custom controls: what they tell their parent, and what is seen of them.
#include "core/commands.h"
#include "kit.h"
#include "ui/button_win.h"
#include "ui/trackbar_win.h"

#include <gtest/gtest.h>

using Codes = std::vector<int>;

static HWND MakeButton(const Recorder& recorder) {
    return CreateTNVButton("WWW", WS_VISIBLE, 10, 10, 80, 30, recorder.window, 704, nullptr);
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
    parent.onNote = [](const Note&) { ReleaseCapture(); };
    Press(button, {});
    Pump();
    EXPECT_EQ(parent.CodesOf(button), (Codes{kButtonPressed, kButtonReleased})) << "no click";
    EXPECT_EQ(CountPixels(button, {0, 0, 1, 1}, GetSysColor(COLOR_3DLIGHT)), 1) << "raised again";
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
    for (const auto& [along, up, page, wheel] : {std::tuple{90, 1, 62, 60}, {10, 0, 38, 40}}) {
        Recorder parent;
        HWND bar = MakeBar(parent, 0);
        SetTrackBarPos(bar, 50);
        SendMessageA(bar, WM_LBUTTONDOWN, MK_LBUTTON, At(along, 8));
        Pump();
        SendMessageA(bar, WM_COMMAND, kWheelStep, up);
        EXPECT_EQ(Scrolls(&parent, WM_HSCROLL, bar),
                  (Moves{{page, SB_ENDSCROLL}, {wheel, SB_ENDSCROLL}}));
    }
}
