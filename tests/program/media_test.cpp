// The media player through the whole program: files that are played, passed over and come to their
// end, told of on the screen, in the shared block, in the settings and at the sound's output.
#include "media/player_layout.h"
#include "resources/ids.h"
#include "tests/program/harness.h"
#include "tests/support/capture_win.h"
#include "tests/support/tones.h"

#include <cmath>
#include <fstream>
#include <memory>

constexpr const char* kMedia = "MediaUI";
constexpr uint32_t kStopped = 525, kPaused = 526, kPlaying = 529;
static const std::string kFolder = std::string(kProgramFolder) + "\\";

static void WriteText(const std::string& name, const std::string& text) {
    std::ofstream(kFolder + name, std::ios::binary) << text;
}

static void WriteWav(const std::string& name, double hertz, double seconds) {
    const SoundFormatRecord format = FormatOfCode(kDefaultFormatCode);
    std::vector<uint8_t> bytes(44);
    AppendTone(bytes, format, static_cast<int>(seconds * format.rate), hertz, 0.4);
    const uint32_t size = static_cast<uint32_t>(bytes.size()) - 44, whole = size + 36, record = 16;
    memcpy(&bytes[0], "RIFF", 4), memcpy(&bytes[4], &whole, 4);
    memcpy(&bytes[8], "WAVEfmt ", 8), memcpy(&bytes[16], &record, 4);
    memcpy(&bytes[20], &format, 16), memcpy(&bytes[36], "data", 4), memcpy(&bytes[40], &size, 4);
    WriteText(name, std::string(bytes.begin(), bytes.end()));
}

// Of the first two seconds of sound that were recorded: how often the left side crosses the middle
// in a second.
static double HertzOf(const std::vector<int16_t>& sound) {
    int crossings = 0, frames = 0;
    for (size_t i = 2; i < sound.size() && frames < 2 * 44100; i += 2) {
        if (!sound[i] && !sound[i - 2]) continue;
        ++frames;
        crossings += sound[i - 2] < 0 && sound[i] >= 0;
    }
    return frames ? crossings * 44100.0 / frames : 0;
}

namespace {
class MediaTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        WriteWav("one.wav", 441, 2.5);
        WriteWav("two.wav", 882, 30);
        WriteWav("three.wav", 1323, 0.4);
        WriteText("bad.wav", "no sound at all");
        WriteText("a list.m3u", "one.wav\r\nbad.wav\r\nthree.wav\r\n");
        WriteText("long.m3u", "two.wav\r\nthree.wav\r\ntwo.wav\r\n");
        WriteText("bad.m3u", "bad.wav\r\nnone.wav\r\nbad.wav\r\n");
        SwitchOn("WaveInEngineOn");
        SwitchOn("MediaPlayerOn");
    }
    void StartMedia(const std::string& arguments = "") {
        Start(arguments);
        peer = std::make_unique<SharedPeer>();
        ASSERT_TRUE(peer->block && WaitUntil([] { return FindComponent(kMedia) != nullptr; }));
    }
    void Hand(const std::string& arguments) {
        Process second(arguments);
        EXPECT_EQ(second.WaitEnd(), 1) << "handed over";
    }
    // What the shared block tells: state, entry, title.
    std::string Now() const {
        const SharedControlBlock& block = *peer->block;
        return std::to_string(block.MediaState) + " " + std::to_string(block.MediaEntry) + " " +
               block.MediaTitle;
    }
    bool Comes(uint32_t state, const std::string& entry) const {
        return WaitUntil([=, this] { return Now() == std::to_string(state) + " " + entry; });
    }
    static std::string Text(int id) { return ChildText(FindComponent(kMedia), id); }
    static bool Shows(int id, const std::string& text) {
        return WaitUntil([=] { return Text(id).find(text) != std::string::npos; });
    }
    static void Do(UINT command) { Command(FindComponent(kMedia), command); }
    bool SoundMoves(DWORD waitMs = kPatienceMs) const {
        const uint32_t tick = peer->block->SoundTick;
        return WaitUntil([&] { return peer->block->SoundTick != tick; }, waitMs);
    }
    std::unique_ptr<SharedPeer> peer;
};
} // namespace

TEST_F(MediaTest, PlaysTheListOfASecondStartToItsEnd) {
    StartMedia();
    EXPECT_EQ(Text(701), "No File Loaded");
    for (int i = 0; i < 5; ++i) { // a busy sound server puts silence in between
        Capture sound;
        Hand("a list.m3u"); // two words, relative to the folder that it starts in
        ASSERT_TRUE(Comes(kPlaying, "1 one.wav")) << Now();
        const uint32_t tick = peer->block->MediaTick;
        EXPECT_TRUE(Shows(701, "a list.m3u :: one.wav")) << Text(701);
        EXPECT_TRUE(Shows(702, "00:01 / 00:02")) << Text(702);
        EXPECT_TRUE(Comes(kPlaying, "3 three.wav")) << "the second one is passed over: " << Now();
        EXPECT_NE(peer->block->MediaTick, tick);
        const double hertz = HertzOf(sound.Stop());
        if (std::abs(hertz - 441) > 11 && i < 4) continue;
        EXPECT_NEAR(hertz, 441, 11);
        break;
    }
    EXPECT_TRUE(Comes(kStopped, "1 one.wav")) << "without repeat: " << Now();
    EXPECT_EQ(Text(702), "00:00 / 00:00");
    EXPECT_FALSE(peer->block->CommandFlags & kCommandOpenFile);
    EXPECT_EQ(ReadWindowDword(9, "HistoryCount", 0), 1u) << "however often it was opened";

    Hand(kFolder + "bad.m3u");
    EXPECT_TRUE(Shows(701, "Unknown/Unsupported File Type"));
    EXPECT_TRUE(Comes(kStopped, "3 bad.wav")) << Now();
    EXPECT_TRUE(SoundMoves()) << "the capture is back";
    Sleep(600); // two ticks
    EXPECT_EQ(Now(), "525 3 bad.wav") << "as many failures as entries end it";

    // A name that fills its field to the last byte, without a NUL.
    memset(peer->block->CommandFile, 'x', sizeof peer->block->CommandFile);
    InterlockedOr(reinterpret_cast<volatile LONG*>(&peer->block->CommandFlags), kCommandOpenFile);
    EXPECT_TRUE(Comes(kStopped, "1 " + std::string(63, 'x'))) << Now();
    EXPECT_EQ(Close(), 0);
    EXPECT_TRUE(WaitUntil([] { return ReadWindowDword(1, "MediaPlayerOn", 0) == 1; }));
}

TEST_F(MediaTest, ObeysCommandsAndKeysAndKeepsItsSettings) {
    StartMedia(kFolder + "long.m3u");
    const HWND window = FindComponent(kMedia);
    ASSERT_TRUE(Comes(kPlaying, "1 two.wav")) << Now();
    ASSERT_TRUE(Shows(702, "00:01 / 00:30"));
    PostMessageA(window, WM_KEYDOWN, VK_PAUSE, 1);
    ASSERT_TRUE(Comes(kPaused, "1 two.wav"));
    const std::string paused = Text(702);
    Sleep(1500);
    EXPECT_EQ(Text(702), paused);
    EXPECT_FALSE(SoundMoves(500)) << "neither the file's nor the capture's";
    PostMessageA(window, WM_HSCROLL, MAKEWPARAM(SB_ENDSCROLL, 20),
                 reinterpret_cast<LPARAM>(Child(window, 712)));
    EXPECT_TRUE(Comes(kPlaying, "1 two.wav")) << "a seek plays on";
    EXPECT_TRUE(Shows(702, "00:21 / 00:30")) << Text(702);
    PostMessageA(window, WM_KEYDOWN, VK_PRIOR, 1);
    EXPECT_TRUE(Comes(kPlaying, "3 two.wav")) << "round the start";
    Do(711);
    EXPECT_TRUE(Comes(kStopped, "3 two.wav"));
    EXPECT_TRUE(SoundMoves());
    for (const UINT command : {710u, 712u, 751u, 803u}) // nothing plays, and there is no fourth
        Do(command);
    AnswerTime(window);
    EXPECT_EQ(Now(), "525 3 two.wav");
    EXPECT_EQ(Text(702), "00:00 / 00:30");
    Do(801);
    EXPECT_TRUE(Comes(kPlaying, "2 three.wav"));
    EXPECT_TRUE(Comes(kPlaying, "3 two.wav")) << "in order";
    Do(751);
    EXPECT_TRUE(Comes(kStopped, "1 two.wav")) << "the last one";
    Do(703); // repeat
    EXPECT_TRUE(WaitUntil([] { return ReadWindowDword(9, "Repeat", 0) == 1; }));
    Do(802);
    ASSERT_TRUE(Comes(kPlaying, "3 two.wav"));
    Do(751);
    EXPECT_TRUE(Comes(kPlaying, "1 two.wav")) << "round and round";
    PostMessageA(window, WM_COMMAND, kMediaEditor, 0);
    HWND editor = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        editor = GetLastActivePopup(window);
        return editor != window && IsWindowVisible(editor);
    }));
    Command(editor, IDC_LIST_REMOVE); // it begins with the current entry chosen
    Command(editor, IDOK);
    EXPECT_TRUE(Comes(kStopped, "1 three.wav")) << "what played is none of the list: " << Now();
    EXPECT_EQ(Close(), 0);

    StartMedia();
    EXPECT_TRUE(Shows(701, "long.m3u")) << Text(701);
    PostMessageA(FindComponent(kMedia), WM_KEYDOWN, VK_PLAY, 1);
    EXPECT_TRUE(Comes(kPlaying, "1 two.wav"));
    Do(704); // random
    EXPECT_TRUE(WaitUntil([] { return ReadWindowDword(9, "Random", 0) == 1; }));
    Hand(kFolder + "three.wav");
    EXPECT_TRUE(WaitUntil([this] { return Now().find("1 three.wav") != std::string::npos; }));
    char name[260] = "";
    EXPECT_TRUE(WaitUntil([&] {
        ReadWindowSetting(9, "LastFile", kRegSz, sizeof name, name);
        return std::string(name).find("Default.pls") != std::string::npos;
    })) << name;
    EXPECT_EQ(
        GetPrivateProfileIntA("playlist", "NumberOfEntries", 0, (kFolder + "Default.pls").c_str()),
        1u);
}
