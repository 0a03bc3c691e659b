// A disc in the drive plays: what comes out of the sound server is what stands in the image, and
// the disc's titles stand in the database after a restart.
#include "tests/program/harness.h"
#include "tests/support/capture_win.h"
#include "resources/ids.h"
#include "tests/support/tone_disc.h"

constexpr const char* kPlayer = "CDPlayerUI";
// Controls of the player.
constexpr int kTitle = 700, kTrackTime = 703, kPlay = 704, kCdInfo = 734;

namespace {
class SoundTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        disc = MakeToneDisc(kProgramFolder, "sound",
                            {{440, 225}, {660, 200}, {990, 225, true}, {550, 150}});
        PutImage(disc.cue);
        SwitchOn("CDEngineOn");
        SwitchOn("CDPlayerUI");
    }
    // Samples of the image from a frame on.
    const int16_t* At(int frame) const { return &disc.samples[frame * kSamplesPerFrame * 2]; }
    ToneDisc disc;
};
} // namespace

// A sound server on a busy machine puts silence in between now and then; a fault of ours comes
// each time.
constexpr int kAttempts = 5;

TEST_F(SoundTest, TrackTwoPlaysBitForBit) {
    Start();
    const size_t wanted = 75 * kSamplesPerFrame * 2; // a second, from the track's very first frame
    size_t matched = 0;
    for (int attempt = 0; attempt < kAttempts && matched < wanted; ++attempt) {
        Capture capture;
        Command(FindCdEngine(), kCdPlay, 2);
        ASSERT_TRUE(WaitUntil(
            [] { return ChildText(FindComponent(kPlayer), kTrackTime).find("[2]") == 0; }));
        Sleep(1300);
        Command(FindCdEngine(), kCdStop);
        const auto& sound = capture.Stop();
        matched = MatchLength(sound, At(disc.starts[1]), wanted);
        EXPECT_EQ(MatchLength(sound, At(disc.starts[0]), 64), 0u) << "track 1 was heard";
    }
    EXPECT_EQ(matched, wanted);
}

TEST_F(SoundTest, DiscPlaysToItsEndAndSkipsTheDataTrack) {
    Start();
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    const size_t wanted = 149u * kSamplesPerFrame * 2; // the last track
    size_t matched = 0;
    for (int attempt = 0; attempt < kAttempts && matched < wanted; ++attempt) {
        Capture capture;
        Command(FindComponent(kPlayer), kPlay);
        ASSERT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 1; }));
        Command(FindCdEngine(), kCdPlay, 2); // the first would only take longer
        ASSERT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 2; }));
        // Under 5 s of sound; its end is noticed within two poll periods.
        ASSERT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 0; }, 17000));
        const auto& sound = capture.Stop();
        matched = MatchLength(sound, At(disc.starts[3]), wanted);
        EXPECT_EQ(MatchLength(sound, At(disc.starts[2]), 64), 0u) << "data is never sound";
    }
    EXPECT_EQ(matched, wanted);
}

TEST_F(SoundTest, NewDiscPlaysInProgrammedPlayToo) {
    WriteRegDword(kUserRoot, "Software\\Tonvista\\CDEngine", "Programmed", kRegDword, 1);
    Start();
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    Command(FindComponent(kPlayer), kPlay);
    EXPECT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 1; }));
}

// ---- titles that somebody typed

static std::string DiscTitle() {
    return ChildText(FindComponent(kPlayer), kTitle);
}

// Opens the editor and types a disc title into it; OK is left to the caller.
static HWND TypeTitle(const char* title) {
    HWND editor = nullptr;
    Command(FindComponent(kPlayer), kCdInfo);
    if (!WaitUntil([&] { return (editor = FindWindowA("#32770", "CD Information")) != nullptr; }))
        return nullptr;
    HWND field = Child(editor, IDC_EDITOR_TITLE);
    Ask(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(title));
    Ask(field, EM_SETMODIFY, TRUE, 0);
    return editor;
}

TEST_F(SoundTest, TypedTitlesStandAfterARestartAlsoFromAnEditorLeftOpen) {
    Start();
    ASSERT_TRUE(WaitUntil([] { return DiscTitle() == "Unknown CD Title"; }));
    const HWND editor = TypeTitle("Morning Tones");
    ASSERT_TRUE(editor);
    Command(editor, IDOK);
    EXPECT_TRUE(WaitUntil([] { return DiscTitle() == "Morning Tones"; })) << DiscTitle();
    EXPECT_EQ(Close(), 0);
    Start();
    EXPECT_TRUE(WaitUntil([] { return DiscTitle() == "Morning Tones"; })) << DiscTitle();
    ASSERT_TRUE(TypeTitle("Half Typed")); // and left so
    EXPECT_EQ(Close(), 0);
    Start();
    EXPECT_TRUE(WaitUntil([] { return DiscTitle() == "Half Typed"; })) << DiscTitle();
}

// Another program holds the database while a title is typed; the disc is taken out before it lets
// go. The title is stored when the file is free again.
TEST_F(SoundTest, TitleTypedWhileTheDatabaseIsBusyIsStoredLater) {
    Start();
    ASSERT_TRUE(WaitUntil([] { return DiscTitle() == "Unknown CD Title"; }));
    HANDLE holder = INVALID_HANDLE_VALUE;
    ASSERT_TRUE(WaitUntil([&] {
        holder = CreateFileA(DatabasePath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0,
                             nullptr);
        return holder != INVALID_HANDLE_VALUE;
    }));
    const HWND editor = TypeTitle("Patience");
    ASSERT_TRUE(editor);
    Command(editor, IDOK);
    ASSERT_TRUE(WaitUntil([] { return DiscTitle() == "Patience"; })) << DiscTitle();
    PutImage("");
    ASSERT_TRUE(WaitUntil([] { return DiscTitle() == "Drive Door is Open"; })) << DiscTitle();
    CloseHandle(holder);
    Sleep(2500); // two polls
    EXPECT_EQ(Close(), 0);
    PutImage(disc.cue);
    Start();
    EXPECT_TRUE(WaitUntil([] { return DiscTitle() == "Patience"; })) << DiscTitle();
}
