// What is played is seen in the shared block, band by band and in every format, through the real
// capture; and the engine gets past devices that stall, go and never were.
#include "tests/program/harness.h"
#include "tests/support/tone_player_win.h"
#include "tests/support/tones.h"
#include "waves/engine_win.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

constexpr const char* kWavesKey = "Software\\Tonvista\\Waves";

static LRESULT Reconfigure(WORD device, WORD format) {
    LRESULT answer = -1;
    Ask(FindWindowA(kWavesEngineClass, nullptr), WM_COMMAND, kWavesReconfigure,
        MAKELPARAM(device, format), &answer);
    return answer;
}

static auto LoudestBand(const float bands[kBands]) {
    return std::max_element(bands, bands + kBands) - bands;
}

// A command outside Wine. Such a process can't be waited for: what it does has to be.
static void RunOutside(const std::string& command) {
    WinExec(("\"Z:\\bin\\sh\" -c \"" + command + "\"").c_str(), SW_HIDE);
}

namespace {
class WavesTest : public ProgramTest {
protected:
    void StartEngine() {
        SwitchOn("WaveInEngineOn");
        Start();
        peer = std::make_unique<SharedPeer>();
        ASSERT_TRUE(peer->block);
    }
    bool HasFormat(uint32_t code) const {
        const SoundFormatRecord wanted = FormatOfCode(code);
        return !std::memcmp(peer->block->SoundFormat, &wanted, sizeof wanted);
    }
    // Plays into the middle of two bands, and waits until each stands highest on its side.
    bool Shows(const SoundFormatRecord& format, int left, int right) {
        const int points = FramesPerBuffer(format);
        const auto hertz = [&](int band) {
            return double(format.rate) / points * EvenBinOfBand(format, points, band);
        };
        // A stream of the player's that the sound server has dropped is made anew; an engine that
        // does not hear stays deaf.
        for (int attempt = 0; attempt < 3; ++attempt) {
            if (attempt) tones = std::make_unique<TonePlayer>();
            tones->Play(hertz(left), hertz(right));
            if (WaitUntil([&] {
                    return LoudestBand(peer->block->BandsLeft) == left &&
                           LoudestBand(peer->block->BandsRight) == right;
                }))
                return true;
            std::printf("attempt %d: bands %d and %d, last sound %lu ms ago\n", attempt,
                        static_cast<int>(LoudestBand(peer->block->BandsLeft)),
                        static_cast<int>(LoudestBand(peer->block->BandsRight)),
                        static_cast<unsigned long>(GetTickCount() - peer->block->SoundTick));
        }
        return false;
    }
    bool Hears(bool sound) const {
        return WaitUntil([&] {
            const uint32_t tick = peer->block->SoundTick;
            return WaitUntil([&] { return peer->block->SoundTick != tick; }, 300) == sound;
        });
    }
    std::unique_ptr<TonePlayer> tones = std::make_unique<TonePlayer>();
    std::unique_ptr<SharedPeer> peer;
};
} // namespace

TEST_F(WavesTest, EveryBandAndFormatIsHeard) {
    StartEngine();
    const SoundFormatRecord best = FormatOfCode(2048);
    for (int band = 0; band < kBands; ++band)
        ASSERT_TRUE(Shows(best, band, (band + 5) % kBands)) << band;
    // A sine of half the height has an eighth of what all samples at full scale have.
    EXPECT_TRUE(WaitUntil([&] {
        const double full = 1024 * 1073741824.0;
        return std::fabs(peer->block->PowerFullScale / full - 1) <= 1e-6 &&
               std::fabs(peer->block->PowerLeft / full * 8 - 1) <= 0.01 &&
               std::fabs(peer->block->PowerRight / full * 8 - 1) <= 0.01;
    }));
    for (const uint32_t code : kFormatCodes) {
        const SoundFormatRecord format = FormatOfCode(code);
        EXPECT_EQ(Reconfigure(0, static_cast<WORD>(code)), 1);
        EXPECT_TRUE(HasFormat(code)) << code;
        for (const int band : {2, 8, 14})
            ASSERT_TRUE(Shows(format, band, format.channels == 1 ? band : 15 - band))
                << code << ", " << band;
    }
}

TEST_F(WavesTest, DevicesThatStallGoOrNeverWere) {
    StartEngine();
    const SoundFormatRecord format = FormatOfCode(512);
    EXPECT_EQ(Reconfigure(0, 512), 1);
    EXPECT_EQ(Reconfigure(4711, 1), 0) << "there is no such device";
    EXPECT_TRUE(HasFormat(512) && Shows(format, 3, 9));
    EXPECT_EQ(ReadRegDword(kUserRoot, kWavesKey, "InDevice"), 0u);
    EXPECT_EQ(ReadRegDword(kUserRoot, kWavesKey, "InFormat"), 512u);

    RunOutside("pactl suspend-sink tonv 1");
    Sleep(3500); // restarted and opened anew meanwhile, in vain
    EXPECT_TRUE(Hears(false));
    RunOutside("pactl suspend-sink tonv 0");
    ASSERT_TRUE(Shows(format, 12, 5));

    RunOutside("pactl unload-module module-null-sink");
    Sleep(2500);
    EXPECT_TRUE(Hears(false));
    RunOutside("pactl load-module module-null-sink sink_name=tonv rate=44100 norewinds=1 && "
               "pactl set-default-sink tonv && pactl set-default-source tonv.monitor");
    EXPECT_TRUE(Hears(true));
    EXPECT_EQ(Close(), 0);
    Start();
    EXPECT_TRUE(WaitUntil([&] { return peer->block->SoundTick && HasFormat(512); }));
}
