// The spectrum analyzer on the screen. The engine has let go of its device, so that the shared
// block is the test's and every pixel follows from it.
#include "resources/ids.h"
#include "tests/program/harness.h"
#include "tests/support/measure_win.h"
#include "tests/support/screen_win.h"
#include "waves/analyzer_layout.h"
#include "waves/engine_win.h"

#include <cstring>
#include <memory>

constexpr const char* kTitle = "SpectrumUI";
constexpr const char* kDialog = "Spectrum Analyzer Settings"; // its caption
constexpr uint32_t kSection = 3;
constexpr COLORREF kHigh = 0xFFF000; // the defaults
constexpr float kScale = 100;        // of the columns, at the gain that is the default

namespace {
class AnalyzerTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        WriteWindowDword(kSection, "Width", 460);
        WriteWindowDword(kSection, "Height", 180);
        SwitchOn("WaveInEngineOn");
        SwitchOn("SpectrumIU");
    }
    void StartAnalyzer() {
        Start();
        ASSERT_TRUE(Ask(FindWindowA(kWavesEngineClass, nullptr), WM_COMMAND, kWavesClose, 0));
        window = FindComponent(kTitle);
        ASSERT_TRUE(window);
        peer = std::make_unique<SharedPeer>();
        ASSERT_TRUE(peer->block);
        Publish(2048, 0, 0);
        SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    }
    // The same in all bands; in units of the scale.
    void Publish(uint32_t formatCode, float left, float right) {
        const SoundFormatRecord format = FormatOfCode(formatCode);
        const int bins = FramesPerBuffer(format) / 2;
        std::memcpy(peer->block->SoundFormat, &format, sizeof format);
        peer->block->PowerFullScale = kScale * 16 / 0.2f * static_cast<float>(bins);
        for (int i = 0; i < kBands; ++i) {
            peer->block->BandsLeft[i] = left * kScale;
            peer->block->BandsRight[i] = right * kScale;
        }
    }
    COLORREF Pixel(int x, int y) const { return ScreenPixelOf(window, x, y); }
    AnalyzerLayout Layout(uint32_t sides, uint32_t split) const {
        RECT client;
        GetClientRect(window, &client);
        AnalyzerSettings settings = DefaultAnalyzerSettings(32);
        settings.LeftAndRight = sides;
        settings.Split = split;
        return LayOutAnalyzer(client.right, client.bottom, settings);
    }
    // The feet of a column's segments from the bottom: '0' to '9' in that colour of the ramp, '#'
    // in the highest, ' ' dark, '?' anything else.
    std::string Column(const Box& column) const {
        uint32_t ramp[kAnalyzerSegments];
        AnalyzerRamp(0xA00000, kHigh, ramp);
        std::string seen;
        for (int k = 0; k < kAnalyzerSegments; ++k) {
            const Box box = SegmentBox(column, k);
            const COLORREF color = Pixel(box.left + box.width / 2, box.top + box.height - 1);
            const char number = static_cast<char>('0' + k);
            seen += !color ? ' ' : color == ramp[k] ? number : color == kHigh ? '#' : '?';
        }
        return seen.substr(0, seen.find_last_not_of(' ') + 1);
    }
    void Shows(const Box& column, const std::string& wanted) const {
        EXPECT_TRUE(WaitUntil([&] { return Column(column) == wanted; })) << Column(column);
    }
    bool Turns(int id, bool on) const {
        return WaitUntil([&] { return IsLit(Child(window, id)) == on; });
    }
    HWND window = nullptr;
    std::unique_ptr<SharedPeer> peer;
};
} // namespace

TEST_F(AnalyzerTest, ColumnsOfEveryModeAndTheFormat) {
    StartAnalyzer();
    const Box column = Layout(0, 0).columns[kAnalyzerMiddle][4];
    Shows(column, "");
    Publish(2048, 0.4f, 0.5f); // the fifth threshold is 0.45
    Shows(column, "0123");
    Publish(2048, 0.4f, 0.51f);
    Shows(column, "01234");
    Command(window, kAnalyzerGradient);
    Shows(column, "#####");
    Command(window, kAnalyzerCenter); // the last one of the two: refused
    Command(window, kAnalyzerSides);
    for (uint32_t split : {0, 1}) {
        Command(window, split ? kAnalyzerSplit : kAnalyzerCombined);
        const AnalyzerLayout layout = Layout(1, split);
        Shows(layout.columns[kAnalyzerLeft][15], "####");
        Shows(layout.columns[kAnalyzerMiddle][15], "#####");
        Shows(layout.columns[kAnalyzerRight][15], "#####");
        const Box& frame = layout.panes[layout.paneCount - 1].frame;
        EXPECT_EQ(Pixel(frame.left, frame.top), kHigh);
    }
    const Box left = Layout(1, 1).columns[kAnalyzerLeft][0];
    PostMessageA(window, WM_HSCROLL, MAKEWPARAM(SB_THUMBTRACK, 20), 0); // half the gain
    Shows(left, "########");
    peer->block->PowerFullScale = 0;
    Shows(left, "");
    std::memset(peer->block->SoundFormat, 0xFF, sizeof peer->block->SoundFormat);
    ASSERT_TRUE(Ask(window, WM_TIMER, 799, 0)); // seen; then the same format as before
    Publish(2048, 0.4f, 0.5f);
    Shows(left, "########");
    peer->block->PowerFullScale = 0;
    Shows(left, "");
    peer->block->VisualsTakeOver = 1; // another one shows the sound
    Publish(1, 1, 1);
    EXPECT_TRUE(WaitUntil([&] { return ChildText(window, kAnalyzerStereo) == "mono"; }));
    EXPECT_EQ(ChildText(window, kAnalyzerFormat), "11Khz 8bit");
    EXPECT_EQ(Column(left), "");
}

TEST_F(AnalyzerTest, SettingsAreMendedEditedAndKept) {
    const uint32_t bits = 0x7FC00000; // not a number, of another type than we write
    WriteWindowDword(kSection, "Gainer", bits);
    WriteWindowDword(kSection, "TrailsCount", 0);
    WriteWindowDword(kSection, "Center", 0);
    StartAnalyzer();
    EXPECT_TRUE(Turns(kAnalyzerCenter, true)) << "one of the two is always on";
    PostMessageA(window, WM_HSCROLL, MAKEWPARAM(SB_ENDSCROLL, 1), 0);
    Command(window, kAnalyzerTrails);
    EXPECT_TRUE(Turns(kAnalyzerTrails, true));
    Command(window, kAnalyzerSetUp);
    const HWND dialog = WaitForDialog(kDialog);
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(
        WaitUntil([&] { return ChildText(dialog, IDC_ANALYZER_HOLD_TEXT) == "Frames: 1"; }));
    Ask(Child(dialog, IDC_ANALYZER_HOLD), WM_KEYDOWN, VK_END, 0);
    Ask(Child(dialog, IDC_ANALYZER_FALLOFF), BM_CLICK, 0, 0);
    Command(dialog, IDOK);
    EXPECT_TRUE(WaitUntil([] { return ReadWindowDword(kSection, "TrailsCount", 0) == 50; }));
    EXPECT_EQ(ReadWindowDword(kSection, "Trails", 9), 1u) << "all are written";
    Command(window, kAnalyzerGradient);
    Command(window, kAnalyzerSides);
    Command(window, kAnalyzerCenter);
    Command(window, kAnalyzerSplit);
    Command(window, kAnalyzerPower);
    ASSERT_TRUE(WaitUntil([] { return ReadWindowDword(1, "SpectrumIU", 9) == 0; }));
    std::string written;
    for (const char* name : {"LeftAndRight", "Center", "Split", "Trails", "Gradient", "Falloff"})
        written += std::to_string(ReadWindowDword(kSection, name, 9));
    EXPECT_EQ(written, "101101");
    EXPECT_TRUE(ReadWindowDword(kSection, "LowColor", 0) == 0xA00000 &&
                ReadWindowDword(kSection, "HighColor", 0) == kHigh);
    float gain = 0;
    ReadWindowSetting(kSection, "Gainer", kRegBinary, 4, &gain);
    EXPECT_EQ(gain, 0.005f);
    Command(FindConsole(), kConsoleSpectrum);
    ASSERT_TRUE(WaitUntil([&] { return (window = FindComponent(kTitle)) != nullptr; }));
    EXPECT_TRUE(Turns(kAnalyzerSides, true) && Turns(kAnalyzerCenter, false) &&
                Turns(kAnalyzerSplit, true) && Turns(kAnalyzerTrails, true) &&
                Turns(kAnalyzerGradient, false));
}

TEST_F(AnalyzerTest, ThousandsOfFramesAndSizesLeaveNothingBehind) {
    StartAnalyzer();
    const auto frames = [&](int count) {
        for (int i = 0; i < count; ++i) {
            Publish(2048, static_cast<float>(i % 10) / 10, static_cast<float>(i % 7) / 7);
            Ask(window, WM_TIMER, 799, 0);
            if (i % 100 == 0)
                SetWindowPos(window, nullptr, 0, 0, 130 + i % 7 * 90, 30 + i % 5 * 70,
                             SWP_NOMOVE | SWP_NOZORDER);
        }
    };
    frames(600);
    const int before = GdiObjects(program->handle);
    ASSERT_GT(before, 0);
    frames(4000);
    EXPECT_LE(GdiObjects(program->handle), before + 1);
}
