// Colours, bitmaps and the label font, chosen in their dialogs and seen on the windows.
#include "resources/ids.h"
#include "tests/program/harness.h"
#include "tests/support/bitmap_file.h"
#include "tests/support/screen_win.h"

#include <algorithm>
#include <cwchar>
#include <set>
#include <vector>

constexpr const char* kPlayer = "CDPlayerUI";
constexpr const char* kSection = "Software\\Tonvista\\UIWindow1";
constexpr const char* kColors = "Colors and Background";
constexpr COLORREF kMine = 0x204060, kDefault = 0x404040;
constexpr int kRedEdit = 706; // of the system's chooser; green and blue follow

namespace {
class AppearanceTest : public ProgramTest {
protected:
    void StartWithPlayer() {
        SwitchOn("CDEngineOn");
        SwitchOn(kPlayer);
        Start();
        ASSERT_TRUE(WaitUntil([] { return FindComponent(kPlayer) != nullptr; }));
    }
    static uint32_t Stored(const char* name) { return ReadRegDword(kUserRoot, kSection, name); }
    static uint32_t Root(const char* name) { return ReadRegDword(kUserRoot, kSettingsRoot, name); }
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
    // Beside everything that the windows draw, just inside their edges.
    static bool BothShow(COLORREF color) {
        return WaitUntil([=] {
            return ScreenPixelOf(FindConsole(), 4, 4) == color &&
                   ScreenPixelOf(FindComponent(kPlayer), 2, 30) == color;
        });
    }
};
} // namespace

static void ChooseInSwatch(HWND dialog, int place, COLORREF color) {
    Command(dialog, static_cast<UINT>(IDC_COLORS_SWATCH + place));
    const HWND chooser = WaitForDialog("Color");
    ASSERT_TRUE(chooser);
    for (int i = 0; i < 3; ++i)
        SetDlgItemInt(chooser, kRedEdit + i, color >> (8 * i) & 0xFF, FALSE);
    Command(chooser, IDOK);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(chooser); }));
}

TEST_F(AppearanceTest, ColoursAreSeenAtOnceStoredByOkAndBroughtBackByAnythingElse) {
    constexpr int kWindowBackground = 4;
    WriteWindowDword(1, "CmpntBkClr", kMine);
    StartWithPlayer();
    EXPECT_TRUE(BothShow(kMine));
    HWND dialog = OpenDialog(kConsoleColors, kColors);
    ASSERT_TRUE(dialog);
    ChooseInSwatch(dialog, kWindowBackground, 0x905030);
    EXPECT_TRUE(BothShow(0x905030));
    Command(dialog, IDC_COLORS_DEFAULTS);
    EXPECT_TRUE(BothShow(kDefault));
    EXPECT_EQ(Stored("CmpntBkClr"), kMine);
    Answer(dialog, IDCANCEL);
    EXPECT_TRUE(BothShow(kMine));
    ASSERT_TRUE(dialog = OpenDialog(kConsoleColors, kColors));
    ChooseInSwatch(dialog, kWindowBackground, 0x905030);
    Answer(dialog, IDOK);
    EXPECT_TRUE(BothShow(0x905030));
    EXPECT_EQ(Stored("CmpntBkClr"), 0x905030u);
    EXPECT_EQ(Root("UseBackgroundBitmap"), 0u);
    // The end of the program in the middle of it is no OK.
    ASSERT_TRUE(dialog = OpenDialog(kConsoleColors, kColors));
    Command(dialog, IDC_COLORS_DEFAULTS);
    EXPECT_TRUE(BothShow(kDefault));
    EXPECT_EQ(Close(), 0);
    EXPECT_EQ(Stored("CmpntBkClr"), 0x905030u);
}

TEST_F(AppearanceTest, BitmapsAreChosenInTheDialogAndLast) {
    StartWithPlayer();
    ASSERT_TRUE(BothShow(kDefault));
    const RECT button = PlaceOf(Child(FindConsole(), kConsoleCdPlayer));
    const auto face = [&] { return ScreenPixel(button.left + 4, button.top + 4); };
    const auto isPlain = [] { return BothShow(kDefault); };
    const auto hasBitmap = [] {
        return WaitUntil([] {
            return ScreenPixelOf(FindConsole(), 4, 4) != kDefault &&
                   ScreenPixelOf(FindComponent(kPlayer), 2, 30) != kDefault;
        });
    };
    for (const int answer : {IDCANCEL, IDOK}) {
        const HWND dialog = OpenDialog(kConsoleColors, kColors);
        ASSERT_TRUE(dialog);
        for (const int id : {IDC_BACKGROUND_USE, IDC_FACE_USE})
            Ask(Child(dialog, id), BM_CLICK, 0, 0);
        EXPECT_TRUE(hasBitmap());
        SendMessageA(Child(dialog, IDC_FACE_ALIGN), CB_SETCURSEL, 2, 0);
        Command(dialog, MAKEWPARAM(IDC_FACE_ALIGN, CBN_SELCHANGE));
        EXPECT_EQ(Root("UseBackgroundBitmap"), 0u);
        Answer(dialog, answer);
        EXPECT_TRUE(answer == IDOK ? hasBitmap() : isPlain());
    }
    EXPECT_TRUE(WaitUntil([&] { return face() != 0x808080; }));
    EXPECT_EQ(Root("UseDefaultBkgrndBmp"), 1u);
    EXPECT_EQ(Root("BtnFaceAlign"), 2u);
    EXPECT_EQ(Close(), 0);
    Start();
    EXPECT_TRUE(hasBitmap());
}

TEST_F(AppearanceTest, NeighboursShowOneContinuousPicture) {
    ASSERT_TRUE(WriteMarkedBitmap("C:\\marked.bmp"));
    WriteRegString(kUserRoot, kSettingsRoot, "BkgrndBmpFileName", "C:\\marked.bmp");
    WriteRegDword(kUserRoot, kSettingsRoot, "UseBackgroundBitmap", kRegDword, 1);
    WriteRegDword(kUserRoot, kSettingsRoot, "BkgrndBmpAlign", kRegDword, 3);
    StartWithPlayer();
    const auto follows = [](HWND window, int x, int y) {
        const RECT place = PlaceOf(window);
        const COLORREF expected =
            MarkedColor((place.left + x) % kMarkedWidth, (place.top + y) % kMarkedHeight);
        return WaitUntil([&] { return ScreenPixelOf(window, x, y) == expected; });
    };
    const HWND console = FindConsole(), player = FindComponent(kPlayer);
    for (const int step : {0, 13, 29}) {
        SetWindowPos(player, nullptr, 400 + step, 500 + 2 * step, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        EXPECT_TRUE(follows(player, 2, 30) && follows(player, 3, 41)) << step;
        EXPECT_TRUE(follows(console, 4, 4) && follows(console, 3, 60)) << step;
    }
    DeleteFileA("C:\\marked.bmp");
}

// Dark pixels of each row: what letters look like, in numbers.
static std::vector<int> LettersOf(HWND button) {
    const RECT place = PlaceOf(button);
    std::vector<int> dark;
    for (int y = place.top + 3; y < place.bottom - 3; ++y) {
        dark.push_back(0);
        for (int x = place.left + 3; x < place.right - 3; ++x)
            dark.back() += GetGValue(ScreenPixel(x, y)) < 0x40;
    }
    return dark;
}

TEST_F(AppearanceTest, FontsAreListedOnceAndTheChosenOneLettersAllWindows) {
    SwitchOn("MediaPlayerOn");
    Start();
    ASSERT_TRUE(WaitUntil([] { return FindComponent("MediaUI") != nullptr; }));
    const HWND lettered[] = {Child(FindConsole(), kConsoleClose),
                             Child(FindComponent("MediaUI"), kMediaPlay)};
    HWND dialog = OpenDialog(kConsoleFont, "Font");
    ASSERT_TRUE(dialog);
    HWND list = Child(dialog, IDC_FONT_LIST);
    const LRESULT count = SendMessageA(list, LB_GETCOUNT, 0, 0);
    std::set<std::wstring> names;
    for (LRESULT row = 0; row < count; ++row) {
        wchar_t name[64] = L""; // another process' list answers in this form only
        SendMessageW(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(name));
        EXPECT_NE(name[0], '@');
        EXPECT_TRUE(names.insert(CharLowerW(name)).second) << name;
        EXPECT_EQ(row == SendMessageW(list, LB_GETCURSEL, 0, 0), !wcscmp(name, L"arial")) << name;
    }
    EXPECT_GT(count, 3);
    const auto choose = [&](const wchar_t* face) {
        const LRESULT row = SendMessageW(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                         reinterpret_cast<LPARAM>(face));
        EXPECT_GE(row, 0);
        SendMessageA(list, LB_SETCURSEL, row, 0);
    };
    choose(L"Courier New");
    Answer(dialog, IDCANCEL);
    std::vector<int> before[2];
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(WaitUntil([&] {
            before[i] = LettersOf(lettered[i]);
            return std::count(before[i].begin(), before[i].end(), 0) < std::ssize(before[i]);
        }));
    EXPECT_FALSE(RegValueExists(kUserRoot, kSettingsRoot, "FontFaceName"));
    ASSERT_TRUE(dialog = OpenDialog(kConsoleFont, "Font"));
    list = Child(dialog, IDC_FONT_LIST);
    choose(L"Courier New");
    Answer(dialog, IDOK);
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(WaitUntil([&] { return LettersOf(lettered[i]) != before[i]; })) << i;
    char face[64] = "";
    EXPECT_TRUE(ReadRegString(kUserRoot, kSettingsRoot, "FontFaceName", face, sizeof face));
    EXPECT_STREQ(face, "Courier New");
}
