// A disc in the drive plays: what comes out of the sound server is what stands in the image, and
// the disc's titles stand in the database after a restart.
#include "tests/program/harness.h"
#include "tests/support/capture_win.h"
#include "resources/ids.h"
#include "tests/support/tone_disc.h"

constexpr const char* kPlayer = "CDPlayerUI";
// Controls of the player.
constexpr int kTitle = 700, kTrackTime = 703, kPlay = 704, kRepeat = 730, kRandom = 731,
              kCdInfo = 734;

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

TEST_F(SoundTest, PlaysBitForBitToTheEndAndSkipsTheDataTrack) {
    Start();
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    // Track 2 from its very first frame, and the last track; the first would only take longer.
    const size_t wanted[] = {199u * kSamplesPerFrame * 2, 149u * kSamplesPerFrame * 2};
    size_t matched[2] = {};
    for (int attempt = 0; attempt < kAttempts && (matched[0] < wanted[0] || matched[1] < wanted[1]);
         ++attempt) {
        Capture capture;
        Command(FindCdEngine(), kCdPlay, 2);
        ASSERT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 2; }));
        // Under 5 s of sound; its end is noticed within two poll periods.
        ASSERT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 0; }, 17000));
        const auto& sound = capture.Stop();
        for (const int i : {0, 1})
            matched[i] = MatchLength(sound, At(disc.starts[i ? 3 : 1]), wanted[i]);
        EXPECT_EQ(MatchLength(sound, At(disc.starts[0]), 64), 0u) << "track 1 was heard";
        EXPECT_EQ(MatchLength(sound, At(disc.starts[2]), 64), 0u) << "data is never sound";
    }
    EXPECT_EQ(matched[0], wanted[0]);
    EXPECT_EQ(matched[1], wanted[1]);
}

TEST_F(SoundTest, NewDiscPlaysInProgrammedPlayToo) {
    WriteRegDword(kUserRoot, "Software\\Tonvista\\CDEngine", "Programmed", kRegDword, 1);
    Start();
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    Command(FindComponent(kPlayer), kPlay);
    EXPECT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 1; }));
}

// Drives of today lie: no notice at the end, "playing" for ever, a pause told as a stop, the old
// disc's table of contents. And a disc may be taken out under a play that would begin again.
TEST_F(SoundTest, LyingDriveAndDiscTakenOut) {
    for (const char* manner :
         {kDiscDriveNoNotify, kDiscDriveStayPlaying, kDiscDrivePauseAsStopped, kDiscDriveStaleToc})
        SetDrive(manner, 1);
    Start();
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    const auto time = [] { return ChildText(FindComponent(kPlayer), kTrackTime); };
    Command(FindCdEngine(), kCdPlay, 4);
    ASSERT_TRUE(WaitUntil([&] { return time().find("[4]") == 0; }));
    Command(FindCdEngine(), kCdPause);
    Sleep(2500); // the track would be over, and two polls have come
    EXPECT_EQ(time().find("[4]"), 0u) << "it is paused, not ended";
    Command(FindCdEngine(), kCdPause);
    EXPECT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 0; })) << "the end came unsaid";

    PutImage(MakeToneDisc(kProgramFolder, "other", {{300, 750}, {400, 750}}).cue);
    EXPECT_TRUE(WaitUntil([&] { return peer.block->CdTrackCount == 2; }));
    Command(FindComponent(kPlayer), kRepeat);
    Command(FindComponent(kPlayer), kRandom);
    Command(FindComponent(kPlayer), kPlay);
    ASSERT_TRUE(WaitUntil([&] { return peer.block->CdTrack != 0; }));
    PutImage("");
    EXPECT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 0 && time().empty(); }));
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

// Another program holds the database while a title is typed, and the disc is taken out before it
// lets go.
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
    EXPECT_EQ(Close(), 0); // at the latest now it is stored
    PutImage(disc.cue);
    Start();
    EXPECT_TRUE(WaitUntil([] { return DiscTitle() == "Patience"; })) << DiscTitle();
}
