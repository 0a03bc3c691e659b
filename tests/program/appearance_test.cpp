// Colours, bitmaps and the label font, chosen in their dialogs and seen on the windows.
#include "resources/ids.h"
#include "tests/program/harness.h"
#include "tests/support/screen_win.h"

#include <cwchar>
#include <set>

constexpr const char* kMedia = "MediaUI";
constexpr const char* kColors = "Colors and Background";
constexpr int kWindowBackground = 4, kRedEdit = 706; // place of a swatch; the chooser's first edit

namespace {
class AppearanceTest : public ProgramTest {
protected:
    void StartWithMedia() {
        SwitchOn("MediaPlayerOn");
        Start();
        ASSERT_TRUE(WaitUntil([] { return FindComponent(kMedia) != nullptr; }));
    }
    static HWND OpenDialog(UINT command, const char* caption) {
        Command(FindConsole(), command);
        const HWND dialog = WaitForDialog(caption);
        SetWindowPos(dialog, nullptr, 640, 600, 0, 0, SWP_NOSIZE | SWP_NOZORDER); // off the windows
        return dialog;
    }
    static void Answer(HWND dialog, int button) {
        Command(dialog, static_cast<UINT>(button));
        EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
    }
    static void ChooseBackground(HWND dialog, COLORREF color) {
        Command(dialog, IDC_COLORS_SWATCH + kWindowBackground);
        const HWND chooser = WaitForDialog("Color");
        for (int i = 0; i < 3; ++i)
            SetDlgItemInt(chooser, kRedEdit + i, color >> (8 * i) & 0xFF, FALSE);
        Answer(chooser, IDOK);
    }
    // In places just inside their edges.
    static bool BothShow(COLORREF color, bool shown = true) {
        return WaitUntil([=] {
            return (ScreenPixelOf(FindConsole(), 4, 4) == color) == shown &&
                   (ScreenPixelOf(FindComponent(kMedia), 2, 30) == color) == shown;
        });
    }
    static uint32_t Stored() { return ReadWindowDword(1, "CmpntBkClr", 0); }
};
} // namespace

TEST_F(AppearanceTest, WhatIsChosenIsSeenAtOnceStoredByOkAndBroughtBackByAnythingElse) {
    WriteWindowDword(1, "CmpntBkClr", 0x204060);
    StartWithMedia();
    EXPECT_TRUE(BothShow(0x204060));
    HWND dialog = OpenDialog(kConsoleColors, kColors);
    ChooseBackground(dialog, 0x905030);
    EXPECT_TRUE(BothShow(0x905030));
    Ask(Child(dialog, IDC_BACKGROUND_USE), BM_CLICK, 0, 0);
    EXPECT_TRUE(BothShow(0x905030, false));
    Answer(dialog, IDCANCEL);
    EXPECT_TRUE(BothShow(0x204060));
    EXPECT_EQ(Stored(), 0x204060u);
    dialog = OpenDialog(kConsoleColors, kColors);
    ChooseBackground(dialog, 0x905030);
    Ask(Child(dialog, IDC_FACE_USE), BM_CLICK, 0, 0);
    Answer(dialog, IDOK);
    EXPECT_TRUE(BothShow(0x905030));
    EXPECT_EQ(Stored(), 0x905030u);
    EXPECT_EQ(ReadRegDword(kUserRoot, kSettingsRoot, "UseBackgroundBitmap"), 0u);
    EXPECT_EQ(ReadRegDword(kUserRoot, kSettingsRoot, "UseButtonFaceBitmap"), 1u);
    EXPECT_EQ(ReadRegDword(kUserRoot, kSettingsRoot, "UseDefaultBtnFaceBmp"), 1u);
    // The end of the program in the middle of it is no OK.
    Command(OpenDialog(kConsoleColors, kColors), IDC_COLORS_DEFAULTS);
    EXPECT_TRUE(BothShow(0x404040));
    EXPECT_EQ(Close(), 0);
    EXPECT_EQ(Stored(), 0x905030u);
}

// Dark pixels of a button's rows: what its letters look like, in numbers.
static std::vector<int> LettersOf(HWND button) {
    const RECT place = PlaceOf(button);
    std::vector<int> dark(place.bottom - place.top);
    for (int y = place.top + 3; y < place.bottom - 3; ++y)
        for (int x = place.left + 3; x < place.right - 3; ++x)
            dark[y - place.top] += GetGValue(ScreenPixel(x, y)) < 0x40;
    return dark;
}

TEST_F(AppearanceTest, FontsAreListedOnceAndTheChosenOneLettersTheWindows) {
    StartWithMedia();
    const HWND button = Child(FindComponent(kMedia), kMediaPlay);
    const HWND dialog = OpenDialog(kConsoleFont, "Font"), list = Child(dialog, IDC_FONT_LIST);
    std::set<std::wstring> names;
    WPARAM chosen = 0;
    for (LRESULT row = SendMessageW(list, LB_GETCOUNT, 0, 0); row-- > 0;) {
        wchar_t name[64] = L""; // another process' list answers in this form only
        SendMessageW(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(name));
        EXPECT_TRUE(name[0] != '@' && names.insert(CharLowerW(name)).second) << name;
        EXPECT_EQ(row == SendMessageW(list, LB_GETCURSEL, 0, 0), !wcscmp(name, L"arial")) << name;
        if (!wcscmp(name, L"courier new")) chosen = row;
    }
    std::vector<int> before;
    EXPECT_TRUE(WaitUntil([&] {
        before = LettersOf(button);
        return std::set<int>(before.begin(), before.end()).size() > 2;
    }));
    SendMessageW(list, LB_SETCURSEL, chosen, 0);
    Answer(dialog, IDOK);
    EXPECT_TRUE(WaitUntil([&] { return LettersOf(button) != before; }));
    char face[64] = "";
    ReadRegString(kUserRoot, kSettingsRoot, "FontFaceName", face, sizeof face);
    EXPECT_STREQ(face, "Courier New");
}
