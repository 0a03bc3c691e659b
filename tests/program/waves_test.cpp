// What is played is seen in the shared block, band by band and in every format, through the real
// capture; and the engine gets past devices that stall, go and never were.
#include "resources/ids.h"
#include "tests/program/harness.h"
#include "tests/support/tone_player_win.h"
#include "tests/support/tones.h"

#include <algorithm>
#include <cstring>
#include <fstream>

constexpr const char* kWavesClass = "WavesHiddenWindowClassName";
constexpr const char* kWavesKey = "Software\\Tonvista\\Waves";
constexpr uint32_t kBestFormat = 2048;

static HWND FindWavesEngine() {
    return FindWindowA(kWavesClass, nullptr);
}

static LRESULT Reconfigure(WORD device, WORD format) {
    LRESULT answer = -1;
    EXPECT_TRUE(
        Ask(FindWavesEngine(), WM_COMMAND, kWavesReconfigure, MAKELPARAM(device, format), &answer));
    return answer;
}

static int LoudestBand(const float bands[kBands]) {
    return static_cast<int>(std::max_element(bands, bands + kBands) - bands);
}

// Runs a command outside Wine; true when it succeeded. Such a process can't be waited for.
static bool RunOutside(const std::string& command) {
    const std::string path = std::string(kProgramFolder) + "\\outside.txt", mark = "well";
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                     CREATE_ALWAYS, 0, nullptr);
    PROCESS_INFORMATION process = {};
    std::string line = "\"Z:\\bin\\sh\" -c \"" + command + " && echo " + mark + "\"";
    CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                   &process);
    const bool well = WaitUntil([&] {
        std::ifstream said(path);
        const std::string all(std::istreambuf_iterator<char>(said), {});
        return all.find(mark) != std::string::npos;
    });
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    CloseHandle(startup.hStdOutput);
    return well;
}

namespace {
class WavesTest : public ProgramTest {
protected:
    void StartEngine() {
        SwitchOn("WaveInEngineOn");
        Start();
        ASSERT_TRUE(FindWavesEngine());
        if (!peer) peer = new SharedPeer;
        ASSERT_TRUE(peer->block);
    }
    void TearDown() override {
        delete peer;
        ProgramTest::TearDown();
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
        tones.Play(hertz(left), hertz(right));
        return WaitUntil([&] {
            return LoudestBand(peer->block->BandsLeft) == left &&
                   LoudestBand(peer->block->BandsRight) == right;
        });
    }
    bool TickMoves(DWORD waitMs = kPatienceMs) const {
        const uint32_t tick = peer->block->SoundTick;
        return WaitUntil([&] { return peer->block->SoundTick != tick; }, waitMs);
    }
    TonePlayer tones;
    SharedPeer* peer = nullptr;
};
} // namespace

TEST_F(WavesTest, EveryBandAndFormatIsHeard) {
    StartEngine();
    const SoundFormatRecord best = FormatOfCode(kBestFormat);
    for (int band = 0; band < kBands; ++band)
        ASSERT_TRUE(Shows(best, band, (band + 5) % kBands)) << band;
    // A sine of half the height has an eighth of what all samples at full scale have.
    EXPECT_TRUE(WaitUntil([&] {
        const double full = FramesPerBuffer(best) * 1073741824.0;
        const SharedControlBlock& block = *peer->block;
        return std::fabs(block.PowerFullScale - full) <= full / 1e6 &&
               std::fabs(block.PowerLeft - full / 8) <= full / 800 &&
               std::fabs(block.PowerRight - full / 8) <= full / 800;
    })) << peer->block->PowerLeft
        << " of " << peer->block->PowerFullScale;
    for (const uint32_t code : kFormatCodes) {
        if (code == kBestFormat) continue;
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
    EXPECT_TRUE(Reconfigure(0, 512));
    EXPECT_EQ(Reconfigure(4711, 1), 0) << "there is no such device";
    EXPECT_TRUE(HasFormat(512) && Shows(format, 3, 9));
    EXPECT_EQ(ReadRegDword(kUserRoot, kWavesKey, "InDevice"), 0u);
    EXPECT_EQ(ReadRegDword(kUserRoot, kWavesKey, "InFormat"), 512u);

    EXPECT_TRUE(RunOutside("pactl suspend-sink tonv 1"));
    Sleep(3000); // restarted and opened anew meanwhile, in vain
    EXPECT_FALSE(TickMoves(300));
    EXPECT_TRUE(RunOutside("pactl suspend-sink tonv 0"));
    ASSERT_TRUE(Shows(format, 12, 5));

    EXPECT_TRUE(RunOutside("pactl unload-module module-null-sink"));
    Sleep(2500);
    EXPECT_FALSE(TickMoves(300));
    EXPECT_TRUE(RunOutside("pactl load-module module-null-sink sink_name=tonv rate=44100 "
                           "norewinds=1 && pactl set-default-sink tonv && "
                           "pactl set-default-source tonv.monitor"));
    EXPECT_TRUE(TickMoves());
    EXPECT_EQ(Close(), 0);
    Start();
    EXPECT_TRUE(WaitUntil([&] { return peer->block->SoundTick && HasFormat(512); }));
}
