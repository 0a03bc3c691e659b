// A disc in the drive plays: what comes out of the sound server is what stands in the image, and
// the disc's titles stand in the database after a restart.
#include "tests/program/harness.h"
#include "tests/support/capture_win.h"
#include "tests/support/tone_disc.h"

constexpr int kPlay = 704; // the player's "Play" button

namespace {
class SoundTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        disc = MakeToneDisc(kProgramFolder, "sound",
                            {{440, 225}, {660, 300}, {990, 225, true}, {550, 150}});
        PutImage(disc.cue);
        SwitchOn("CDEngineOn");
        SwitchOn("CDPlayerUI");
    }
    // Samples of the image from a frame on.
    const int16_t* At(int frame) const { return &disc.samples[frame * kSamplesPerFrame * 2]; }
    ToneDisc disc;
};
} // namespace

TEST_F(SoundTest, TrackTwoPlaysBitForBit) {
    Start();
    Capture capture;
    Command(FindCdEngine(), kCdPlay, 2);
    ASSERT_TRUE(
        WaitUntil([] { return ChildText(FindComponent("CDPlayerUI"), 703).find("[2]") == 0; }));
    Sleep(3000);
    Command(FindCdEngine(), kCdStop);
    const auto& sound = capture.Stop();
    // At least two of the three seconds, from the track's very first frame.
    const size_t wanted = 2 * 75 * kSamplesPerFrame * 2;
    EXPECT_GE(MatchLength(sound, At(disc.starts[1]), wanted), wanted);
    EXPECT_EQ(MatchLength(sound, At(disc.starts[0]), 64), 0u) << "nothing of track 1 was heard";
}

TEST_F(SoundTest, DiscPlaysToItsEndAndSkipsTheDataTrack) {
    Start();
    Capture capture;
    Command(FindComponent("CDPlayerUI"), kPlay);
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    ASSERT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 1; }));
    // 12 s of disc; its end is noticed within two poll periods.
    ASSERT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 0; }, 20000));
    const auto& sound = capture.Stop();
    const size_t lastFrame = 149u * kSamplesPerFrame * 2;
    EXPECT_GE(MatchLength(sound, At(disc.starts[3]), lastFrame), lastFrame);
    EXPECT_EQ(MatchLength(sound, At(disc.starts[2]), 64), 0u) << "data is never sound";
}

TEST_F(SoundTest, NewDiscStandsInTheDatabaseAfterARestart) {
    Start();
    ASSERT_TRUE(WaitUntil(
        [] { return GetFileAttributesA(DatabasePath().c_str()) != INVALID_FILE_ATTRIBUTES; }));
    EXPECT_EQ(Close(), 0);
    Start();
    EXPECT_TRUE(WaitUntil([] {
        return ChildText(FindComponent("CDPlayerUI"), 700) == "Unknown CD Title";
    })) << ChildText(FindComponent("CDPlayerUI"), 700);
}
