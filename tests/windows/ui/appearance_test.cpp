// Bitmaps in force: what is stored and what of it counts, which files are taken, and the pixels
// that windows and their controls show.
#include "core/commands.h"
#include "core/settings.h"
#include "kit.h"
#include "resources/ids.h"
#include "ui/appearance_win.h"
#include "ui/button_win.h"
#include "ui/framework_win.h"
#include "ui/indicator_win.h"
#include "ui/picture_reader_win.h"
#include "ui/trackbar_win.h"

#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

constexpr const char* kFile = "C:\\marked.bmp";
constexpr uint32_t kFirstId = 71, kSecondId = 72;
constexpr COLORREF kPlain = 0x404040;
constexpr int kWidth = 7, kHeight = 5; // of the bitmap whose every pixel tells where it is

// Cut after `bytes` where they are fewer.
static void WriteMarked(size_t bytes = SIZE_MAX) {
    const BITMAPINFOHEADER info = {sizeof info, kWidth, -kHeight, 1, 32, 0, 0, 0, 0, 0, 0};
    const BITMAPFILEHEADER header = {0x4D42, 0, 0, 0, 54};
    std::string file(reinterpret_cast<const char*>(&header), sizeof header);
    file.append(reinterpret_cast<const char*>(&info), sizeof info);
    for (char i = 0; i < kWidth * kHeight; ++i)
        file += {100, static_cast<char>(i / kWidth), static_cast<char>(i % kWidth), 0};
    std::ofstream(kFile, std::ios::binary) << file.substr(0, bytes);
}

static BitmapSettings Marked(uint32_t align = kAlignObject, uint32_t stretch = 0,
                             const char* file = kFile) {
    BitmapSettings settings = {1, 0, stretch, align, {}};
    strcpy(settings.FileName, file);
    return settings;
}

// Which pixel of the marked bitmap a client pixel shows, as column * 10 + row.
static int Shown(HWND window, int x, int y) {
    UpdateWindow(window);
    const HDC dc = GetDC(window);
    const COLORREF color = GetPixel(dc, x, y);
    ReleaseDC(window, dc);
    return GetBValue(color) == 100 ? GetRValue(color) * 10 + GetGValue(color) : -1;
}

static int Mark(int x, int y) { // both above -70
    return (x + 70) % kWidth * 10 + (y + 70) % kHeight;
}

namespace {
// Two framework windows without an owner, side by side, the second one lower.
struct Appearance : testing::Test {
    void SetUp() override {
        DeleteRegTree(kUserRoot, kSettingsRoot);
        LoadAppearance();
        UIOptions = {};
        PictureFiles.waitMs = INFINITE; // a busy machine changes nothing
        WriteMarked();
        ParkPointer();
        first = Window(kFirstId, 303, 301);
        second = Window(kSecondId, 522, 347);
        Pump();
    }
    void TearDown() override {
        DestroyWindow(first);
        DestroyWindow(second);
        Pump();
        UseBackground({});
        UseButtonFace({});
        PictureFiles = usual;
        DeleteFileA(kFile);
        DeleteRegTree(kUserRoot, kSettingsRoot);
    }
    static HWND Window(uint32_t id, int x, int y) {
        SetSavedPlacement(id, x, y, 200, 150);
        const HWND window = CreateUIWindow(GetModuleHandleA(nullptr), id, "TrialUI", 0, nullptr);
        SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        SetWindowBkColor(window, kPlain);
        return window;
    }
    // In force and seen, as the console does it.
    void Use(const BitmapSettings& settings) {
        UseBackground(settings);
        for (const HWND window : {first, second})
            RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
        Pump();
    }
    const PictureReader usual = PictureFiles;
    HWND first, second;
};

// Stands for a network path that answers when `open` is set.
struct {
    HANDLE open = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    volatile LONG begun = 0, ended = 0;
} s_gate;
} // namespace

TEST_F(Appearance, SettingsWithoutForceFillOnlyWhatIsMissing) {
    WriteRegDword(kUserRoot, kSettingsRoot, "BkgrndBmpAlign", kRegDword, 2);
    WriteRegString(kUserRoot, kSettingsRoot, "BtnFaceFileName", "mine");
    const BitmapSettings wanted = {1, 1, 1, 3, "C:\\other.bmp"};
    BitmapSettings read;
    EXPECT_TRUE(SaveBackgroundSettings(wanted, 0));
    EXPECT_TRUE(SaveButtonFaceSettings(wanted, 0));
    ReadBackgroundSettings(&read);
    EXPECT_EQ(read.Align, 2u);
    EXPECT_STREQ(read.FileName, wanted.FileName);
    ReadButtonFaceSettings(&read);
    EXPECT_STREQ(read.FileName, "mine");
    EXPECT_TRUE(SaveButtonFaceSettings(wanted, 1));
    ReadButtonFaceSettings(&read);
    EXPECT_EQ(memcmp(&read, &wanted, sizeof read), 0);
}

TEST_F(Appearance, WindowsShowThePictureByAlignmentAlsoLeftOfTheScreen) {
    const struct {
        uint32_t align;
        POINT first, second; // where on the picture their upper left corners are
    } cases[] = {{kAlignObject, {0, 0}, {0, 0}},
                 {kAlignParent, {0, 0}, {0, 0}},
                 {kAlignGroup, {0, 0}, {522 - 303, 347 - 301}},
                 {kAlignScreen, {303, 301}, {522, 347}}};
    for (const auto& c : cases) {
        Use(Marked(c.align));
        for (const POINT at : {POINT{2, 2}, POINT{60, 41}, POINT{180, 130}}) {
            EXPECT_EQ(Shown(first, at.x, at.y), Mark(c.first.x + at.x, c.first.y + at.y))
                << c.align;
            EXPECT_EQ(Shown(second, at.x, at.y), Mark(c.second.x + at.x, c.second.y + at.y))
                << c.align;
        }
    }
    Use(Marked(kAlignScreen));
    SetWindowPos(first, nullptr, -45, -38, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    EXPECT_EQ(Shown(first, 60, 50), Mark(-45 + 60, -38 + 50)) << "it follows the move";
    Use(Marked(kAlignGroup));
    SetWindowPos(first, nullptr, -35, -30, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    Pump();
    EXPECT_EQ(Shown(first, 60, 50), Mark(60, 50));
    EXPECT_EQ(Shown(second, 60, 50), Mark(522 + 35 + 60, 347 + 30 + 50)) << "so does the group";
    DestroyWindow(first);
    Pump();
    EXPECT_EQ(Shown(second, 60, 50), Mark(60, 50)) << "what is left of the group";
    UseBackground({});
    InvalidateRect(second, nullptr, TRUE);
    EXPECT_EQ(CountPixels(second, {60, 50, 62, 51}, kPlain), 2);
}

TEST_F(Appearance, ControlsShowWhatTheyShould) {
    const HWND lamp = CreateTNVIndicator(0, WS_VISIBLE, 13, 17, 40, 20, first, 700, nullptr);
    const HWND bar = CreateTNVTrackBar(WS_VISIBLE, 65, 19, 90, 40, first, 701, nullptr);
    const HWND button = CreateTNVButton("", WS_VISIBLE, 24, 83, 50, 30, first, 702, nullptr);
    Use(Marked(kAlignScreen));
    EXPECT_EQ(Shown(lamp, 3, 4), Mark(303 + 13 + 3, 301 + 17 + 4)) << "as the window beneath";
    EXPECT_EQ(Shown(bar, 40, 5), Mark(303 + 65 + 40, 301 + 19 + 5));
    EXPECT_EQ(CountPixels(button, {10, 10, 12, 11}, 0x808080), 2) << "no bitmap for faces";
    UseButtonFace(Marked(kAlignParent));
    Use({});
    EXPECT_EQ(Shown(button, 10, 10), Mark(24 + 10, 83 + 10));
    EXPECT_EQ(CountPixels(lamp, {3, 4, 5, 5}, kPlain), 2);
    EXPECT_EQ(CountPixels(bar, {40, 5, 42, 6}, 0), 2);
    Use(Marked(kAlignScreen, 1));
    const RECT client = ClientRect(second);
    for (int i = 0; i < kWidth * kHeight; ++i)
        EXPECT_EQ(Shown(second, client.right * (2 * (i % kWidth) + 1) / (2 * kWidth),
                        client.bottom * (2 * (i / kWidth) + 1) / (2 * kHeight)),
                  i % kWidth * 10 + i / kWidth);
    EXPECT_EQ(Shown(second, 1, 70), -1) << "the edge stands before it";
    const int under = Shown(lamp, 20, 10);
    ShowWindow(lamp, SW_HIDE);
    EXPECT_EQ(Shown(first, 33, 27), under) << "the window's stretch, not one of its own";
    EXPECT_EQ(Shown(bar, 85, 2), 60) << "a bar's own stretch";
}

TEST_F(Appearance, ALargerPictureIsReducedAndTheCopyGoesWithIt) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBITMAP shown = CreateBitmap(3, 1, 1, 32, nullptr);
    const HGDIOBJ before = SelectObject(dc, shown);
    for (const int mine : {1, 1, 0, 1}) {
        UseBackground(mine ? Marked(0, 1) : BitmapSettings{1, 1, 1, 0, {}});
        EXPECT_EQ(DrawBackground(dc, {0, 0, 3, 1}, first), 1);
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(GetPixel(dc, x, 0) == RGB(2 * x + 1, 2, 100), mine != 0) << x;
    }
    SelectObject(dc, before);
    DeleteObject(shown);
    DeleteDC(dc);
}

static LONG WidthOf(HBITMAP bitmap) {
    BITMAP info = {};
    GetObjectA(bitmap, sizeof info, &info);
    EXPECT_TRUE(!info.bmWidth || info.bmBits) << "a section";
    return info.bmWidth;
}

static void CloseGate() {
    ResetEvent(s_gate.open);
    s_gate.begun = 0;
    s_gate.ended = 0;
}

static Picture* ReadBehindGate(const char* path) {
    InterlockedIncrement(&s_gate.begun);
    WaitForSingleObject(s_gate.open, 5000); // who waits for it fails, and does not hang
    Picture* picture = LoadPictureFile(path);
    InterlockedIncrement(&s_gate.ended);
    return picture;
}

TEST_F(Appearance, AFileThatHangsHoldsNobodyAndItsPictureComesWhenItIsRead) {
    const BitmapSettings builtIn = {1, 1, 0, 0, {}};
    Recorder console;
    CloseGate();
    NoteOpenWindow(console.window, 0);
    PictureFiles = {ReadBehindGate, 20};
    Use(Marked());
    ASSERT_GT(WidthOf(GetBackgroundBitmap(Marked())), kWidth) << "the built-in one";
    UseButtonFace(Marked());
    EXPECT_EQ(Shown(first, 60, 50), -1);
    EXPECT_EQ(CountPixels(first, {60, 50, 61, 51}, kPlain), 0);
    UseButtonFace(builtIn);    // the file is not wanted here any more,
    Use(Marked(kAlignScreen)); // and is still wanted there
    EXPECT_TRUE(SaveBackgroundSettings(Marked(kAlignScreen), 1));
    EXPECT_TRUE(console.Commands(kColorsChanged).empty());
    SetEvent(s_gate.open);
    EXPECT_TRUE(PumpUntil([&] { return !console.Commands(kColorsChanged).empty(); }));
    EXPECT_EQ(s_gate.begun, 1) << "one thread for one path";
    EXPECT_EQ(WidthOf(GetBackgroundBitmap(Marked())), kWidth);
    InvalidateRect(first, nullptr, TRUE);
    EXPECT_EQ(Shown(first, 60, 50), Mark(303 + 60, 301 + 50));
    EXPECT_GT(WidthOf(GetButtonFaceBitmap(builtIn)), kWidth);
    // Path after path that hangs.
    CloseGate();
    for (char file[] = "C:\\hangs.a"; file[9] <= 'z'; ++file[9])
        UseBackground(Marked(0, 0, file));
    SetEvent(s_gate.open);
    EXPECT_TRUE(PumpUntil([&] { return s_gate.ended == kMostReadings; }));
    EXPECT_EQ(s_gate.begun, kMostReadings);
    EXPECT_TRUE(PumpUntil([&] {
        SaveBackgroundSettings(Marked(), 1);
        return WidthOf(GetBackgroundBitmap(Marked())) == kWidth;
    })) << "when they are back, others are read again";
    NoteClosedWindow(console.window);
}

// The built-in one, by its size, or the file's.
TEST_F(Appearance, AFileThatFailsGivesTheBuiltInBitmap) {
    const auto widthOf = [](const BitmapSettings& settings) {
        EXPECT_TRUE(SaveBackgroundSettings(settings, 1));
        return WidthOf(GetBackgroundBitmap(settings));
    };
    const LONG builtIn = widthOf({1, 1, 0, 0, {}});
    EXPECT_GT(builtIn, kWidth);
    EXPECT_EQ(widthOf(Marked()), kWidth);
    for (const char* file :
         {"", "C:\\", "C:\\nothing.bmp", "NUL", "C:\\?.bmp", "C:\\windows\\win.ini"})
        EXPECT_EQ(widthOf(Marked(0, 0, file)), builtIn) << file;
    WriteMarked(100);
    EXPECT_EQ(widthOf(Marked()), builtIn) << "loaded anew by saving";
}

// Threads paint while bitmaps come and go beneath them.
TEST_F(Appearance, BitmapsAreReplacedUnderThePaintingThreads) {
    volatile LONG stop = 0, wrong = 0, painted = 0;
    const auto paint = [&] {
        const HDC screen = GetDC(nullptr);
        for (; !stop; InterlockedIncrement(&painted))
            if (!DrawBackground(screen, {0, 0, 64, 64}, first)) InterlockedIncrement(&wrong);
        ReleaseDC(nullptr, screen);
    };
    UseBackground(Marked());
    std::thread one(paint), two(paint);
    for (int i = 0; i < 300; ++i)
        UseBackground(i % 2 ? Marked() : BitmapSettings{1, 1, 0, 0, {}});
    EXPECT_TRUE(PumpUntil([&] { return painted > 200; }));
    stop = 1;
    one.join();
    two.join();
    EXPECT_EQ(wrong, 0);
}
