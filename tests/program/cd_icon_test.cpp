// The CD icon as a user sees it, and the engine's configuration dialog by all its ways.
#include "cd/icon_win.h"
#include "resources/ids.h"
#include "tests/program/harness.h"
#include "tests/support/screen_win.h"
#include "tests/support/tone_disc.h"

constexpr uint32_t kPlaying = 526, kPaused = 529;
constexpr const char* kDialog = "CD Engine Configuration";
constexpr const char* kCdKey = "Software\\Tonvista\\CDEngine";
constexpr const char* kPlayerKey = "AudioCD\\shell\\play\\command";
constexpr const char* kOtherPlayer = "C:\\other.exe %1";

namespace {
class CdIconTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        WriteRegDword(kUserRoot, kSettingsRoot, kCdIconOptionsValue, kRegDword, 23);
        static const std::string s_disc =
            MakeToneDisc(kProgramFolder, "icon", {{440, 4500}, {550, 3750}}).cue;
        PutImage(s_disc);
    }
    static HWND Window() { return FindWindowA(kCdIconClass, nullptr); }
    static HWND Tray() {
        return FindWindowExA(FindWindowA("__winex11_standalone_tray", nullptr), nullptr,
                             "__winex11_tray_icon", nullptr);
    }
    // The tooltip that is shown just now.
    static std::string Tip() {
        HWND tip = nullptr;
        while ((tip = FindWindowExA(nullptr, tip, TOOLTIPS_CLASSA, nullptr)))
            if (IsWindowVisible(tip)) return TextOf(tip);
        return "";
    }
    // The icon's, when the pointer comes over it and rests there; it is shown for some seconds.
    static bool Tells(const char* text) {
        for (int i = 0; i < 4; ++i) {
            SetCursorPos(1000, 1000);
            SetWindowPos(GetParent(Tray()), HWND_TOPMOST, 0, 600, 0, 0,
                         SWP_NOSIZE | SWP_NOACTIVATE);
            Sleep(100);
            const RECT icon = PlaceOf(Tray());
            SetCursorPos((icon.left + icon.right) / 2, (icon.top + icon.bottom) / 2);
            if (WaitUntil([=] { return Tip() == text; }, 3000)) return true;
        }
        return false;
    }
    static std::string Player() {
        char text[300] = "";
        ReadRegString(kClassesRoot, kPlayerKey, "", text, sizeof text);
        return text;
    }
};
} // namespace

TEST_F(CdIconTest, TellsWhatTheOptionsAskForAndPausesByAClick) {
    SwitchOn("CDEngineOn");
    SwitchOn("CDUITBIcon");
    Start();
    const SharedPeer peer;
    const auto cdIs = [&](uint32_t mode) {
        return WaitUntil([&] { return peer.block->CdMode == mode; });
    };
    EXPECT_TRUE(Tells("Unknown CD Title, by Artist 01:50")) << Tip();
    Command(Window(), kCdIconEntryFirst + 1);
    EXPECT_TRUE(cdIs(kPlaying));
    EXPECT_TRUE(Tells("Track 2, by Artist, on Unknown CD Title 00:50")) << Tip();
    for (const uint32_t mode : {kPaused, kPlaying}) {
        PostMessageA(Tray(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        EXPECT_TRUE(cdIs(mode));
    }
    // Its open menu holds up nobody.
    PostMessageA(Tray(), WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    ASSERT_TRUE(WaitUntil([] { return IsWindowVisible(FindWindowA("#32768", nullptr)) != 0; }));
    EXPECT_LT(AnswerTime(FindConsole()), kPatienceMs);
    Command(FindConsole(), kConsoleCdIconOption);
    PostMessageA(FindConsole(), RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    EXPECT_TRUE(Tells("Track 2, by Artist 00:50")) << Tip();
    EXPECT_EQ(ReadRegDword(kUserRoot, kSettingsRoot, kCdIconOptionsValue), 22u);
    Command(FindConsole(), kConsoleCdEngine); // needs it, and so goes with it
    EXPECT_TRUE(WaitUntil([] { return !Window() && !Tray(); }));
}

// Asked by the console with the engine off, then by the CD player with the engine on.
TEST_F(CdIconTest, ConfiguresTheEngineWhetherItRunsOrNot) {
    const std::string before = Player();
    Start();
    for (const uint32_t engine : {0u, 1u}) {
        SCOPED_TRACE(engine);
        if (engine) Command(FindConsole(), kConsoleCdPlayer);
        ASSERT_TRUE(WaitUntil([=] { return !engine || FindComponent("CDPlayerUI"); }));
        const auto answer = [=](const char* intro, int box, UINT boxOn, int button) {
            Command(engine ? FindComponent("CDPlayerUI") : FindConsole(),
                    engine ? UINT{kPlayerConfigure} : UINT{kConsoleConfigureCd});
            const HWND dialog = WaitForDialog(kDialog);
            CheckDlgButton(dialog, box, boxOn);
            Ask(Child(dialog, IDC_CD_CONFIG_INTRO), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(intro));
            Command(dialog, static_cast<UINT>(button));
            EXPECT_TRUE(WaitUntil([=] { return !IsWindow(dialog); }));
        };
        const auto becomes = [](const char* name, uint32_t value) {
            return WaitUntil([=] { return ReadRegDword(kUserRoot, kCdKey, name) == value; });
        };
        const uint32_t length = ReadRegDword(kUserRoot, kCdKey, "IntroLength");
        answer("12", IDC_CD_CONFIG_STOP_EXIT, !engine, IDCANCEL);
        EXPECT_TRUE(becomes("IntroLength", length) && becomes("StopExit", engine));
        answer("99", IDC_CD_CONFIG_STOP_EXIT, !engine, IDOK);
        EXPECT_TRUE(becomes("IntroLength", 30) && becomes("StopExit", !engine));
        answer("", IDC_CD_CONFIG_DEFAULT, 1, IDOK);
        EXPECT_TRUE(becomes("IntroLength", 5) && becomes("UseAsDefault", 1));
        if (engine) Ask(FindCdEngine(), WM_NULL, 0, 0); // it may still be at the claim
        EXPECT_NE(Player().find("tonvista.exe /play %1"), std::string::npos) << Player();
        // Who came in between keeps the command.
        WriteRegString(kClassesRoot, kPlayerKey, "", kOtherPlayer);
        answer("18", IDC_CD_CONFIG_DEFAULT, 0, IDOK);
        EXPECT_TRUE(becomes("UseAsDefault", 0) && becomes("IntroLength", 18));
        EXPECT_EQ(Player(), kOtherPlayer);
    }
    WriteRegString(kClassesRoot, kPlayerKey, "", before.c_str());
}
