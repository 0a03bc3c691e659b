// What you hear: entries, loss, the default output and hostile packets against a platform made of
// variables; and the same code recording for real, from the sound server's input.
#include "fake_sound.h"
#include "tests/support/tone_player_win.h"
#include "waves/loopback.h"
#include "waves/loopback_win.h"

#include <gtest/gtest.h>

static std::vector<uint8_t> s_filled;
static int s_buffers;
static void Filled(const uint8_t* bytes) {
    s_filled.assign(bytes, bytes + kSoundBufferBytes);
    ++s_buffers;
}

class LoopbackTest : public testing::Test {
protected:
    void SetUp() override {
        s_sound = {};
        TheLoopbackSource = {MakeFakeEnumerator, eRender, AUDCLNT_STREAMFLAGS_LOOPBACK};
        ForgetLoopbackVerdict();
    }
    void TearDown() override {
        CloseLoopback(stream);
        TheLoopbackSource = kept;
        EXPECT_EQ(s_sound.refs, 0) << "references are balanced";
    }
    bool Open(uint16_t device, uint32_t code = 2048) {
        CloseLoopback(stream);
        return (stream = OpenLoopback(device, FormatOfCode(code))) != nullptr;
    }
    // Polls every 10 ms; each time a packet has come, unless value is 0.
    void Play(uint32_t ms, int16_t value) {
        const std::vector<int16_t> samples(static_cast<size_t>(441 * s_sound.channels), value);
        for (const uint32_t end = now + ms; now != end; now += 10) {
            if (value) s_sound.packets.push_back({samples, 441, 0});
            PollLoopback(stream, now, Filled);
        }
    }
    const LoopbackSource kept = TheLoopbackSource;
    LoopbackStream* stream = nullptr;
    uint32_t now = 0xFFFFF060; // the clock wraps on the way
};

TEST_F(LoopbackTest, EntriesAreThereWhereThePlatformRecords) {
    char name[64];
    uint16_t device = 0;
    ASSERT_EQ(CountLoopback(), 3);
    EXPECT_TRUE(LoopbackName(2, name, 10, &device));
    EXPECT_STREQ(name, "What you ");
    EXPECT_EQ(device, 32770);
    for (const uint16_t bad : {0, 32767, 32771, 65535})
        EXPECT_FALSE(Open(bad)) << bad;
    s_sound.missing = 1; // an old system
    EXPECT_EQ(CountLoopback(), 0);
    ForgetLoopbackVerdict();
    s_sound = {.service = AUDCLNT_E_WRONG_ENDPOINT_TYPE}; // the flag taken, the service refused
    EXPECT_EQ(CountLoopback(), 0);
}

// Each call that listing, opening, playing and starting anew make fails once, in turn.
TEST_F(LoopbackTest, SoundIsBackWithinASecondWhicheverCallFails) {
    const auto scenario = [&](uint32_t code, NthCall& calls) {
        s_sound = {.calls = calls};
        CountLoopback();
        if (Open(kLoopbackFirst, code)) {
            EXPECT_EQ(s_sound.flags, 0x88020000u);
            Play(200, 1000);
            RestartLoopback(stream);
            s_buffers = 0;
            Play(1000, 0);
            EXPECT_NEAR(s_buffers, code == 16 ? 5 : 43, 2) << "silence at its pace";
            EXPECT_EQ(s_filled[9], code == 16 ? 128 : 0);
            Play(1000, 16384);
            EXPECT_EQ(s_filled[9], code == 16 ? 192 : 64) << calls.failAt;
        }
        CloseLoopback(stream);
        stream = nullptr;
        EXPECT_EQ(s_sound.refs, 0) << calls.failAt;
        calls = s_sound.calls;
    };
    for (const uint32_t code : {16, 2048}) // 22.05 kHz mono 8 bit, 44.1 kHz stereo 16 bit
        EXPECT_EQ(ForEachFault([&](NthCall& calls) { scenario(code, calls); }, 200), 200);
}

TEST_F(LoopbackTest, TheDefaultIsFollowedAndAnOutputThatWasTakenAwayIsFoundAgain) {
    ASSERT_TRUE(Open(kLoopbackDefault));
    s_sound.standard = 1;
    Play(1100, 7);
    EXPECT_EQ(s_sound.from, 1);
    ASSERT_TRUE(Open(kLoopbackFirst + 1));
    s_sound = {.outputs = 1, .calls = {.failAt = 1}, .refs = s_sound.refs, .channels = 2};
    Play(3000, 0);
    s_sound.outputs = 2;
    Play(1000, 16384);
    EXPECT_EQ(s_filled[1], 64);
    EXPECT_EQ(s_sound.from, 1) << "and not the other one meanwhile";
}

TEST_F(LoopbackTest, HostilePacketsAreSilenceOrALoss) {
    ASSERT_TRUE(Open(kLoopbackDefault));
    const std::vector<int16_t> loud(2048, 16384);
    const struct {
        FakePacket packet;
        int buffers;
    } hostile[] = {{{{}, 1024, 0}, 1},
                   {{loud, 1024, AUDCLNT_BUFFERFLAGS_SILENT}, 1},
                   {{{}, 0xFFFFFFFF, 0}, 0},
                   {{loud, 0x40000000, 0}, 0}};
    for (const auto& c : hostile) {
        Play(1000, 16384);
        EXPECT_EQ(s_filled[1], 64);
        EXPECT_TRUE(RestartLoopback(stream));
        s_buffers = 0;
        s_sound.packets = {c.packet};
        Play(10, 0);
        EXPECT_EQ(s_buffers, c.buffers);
        EXPECT_EQ(s_filled[1], c.buffers ? 0 : 64);
    }
    Play(500, 16384);
    s_sound.packets.assign(5000, FakePacket{loud, 1024, 0});
    s_buffers = 0;
    PollLoopback(stream, now, Filled);
    EXPECT_LE(s_buffers, kMostBuffers + 1) << "the newest of a flood";
    EXPECT_GT(s_sound.packets.size(), 4000u) << "taken a part at a time";
}

// ---- for real

TEST_F(LoopbackTest, RecordsAToneThroughThePlatform) {
    TheLoopbackSource = {kept.MakeEnumerator, eCapture, 0};
    TonePlayer tone;
    tone.Play(1000, 1000);
    ASSERT_TRUE(Open(kLoopbackDefault, 16)); // 22.05 kHz mono 8 bit
    const auto waves = [] {
        int count = 0;
        for (size_t i = 1; i < s_filled.size(); ++i)
            count += s_filled[i - 1] < 128 && s_filled[i] >= 128;
        return count;
    };
    s_filled.clear();
    for (int tries = 0; tries < 1000 && std::abs(waves() - 186) > 1; ++tries) {
        PollLoopback(stream, GetTickCount(), Filled);
        Sleep(10);
    }
    EXPECT_NEAR(waves(), 186, 1);
}
