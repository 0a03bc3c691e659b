// Files played through the platform's own decoders and renderer, with the extractor in between.
#include "extractor/blocks.h"
#include "graph.h"
#include "tests/support/capture_win.h"
#include "tests/support/measure_win.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {
class ExtractorGraph : public testing::Test {
protected:
    void SetUp() override {
        CoInitialize(nullptr);
        block = OpenSharedBlock();
    }
    void TearDown() override {
        EXPECT_FALSE(ExtractorIsInUse()) << "something was not released";
        CloseSharedBlock(block);
        CoUninitialize();
    }
    bool ShowsBands(int left, int right) const {
        return Loudest(block->BandsLeft) == left && Loudest(block->BandsRight) == right;
    }
    static ptrdiff_t Loudest(const float* bands) {
        return std::max_element(bands, bands + kBands) - bands;
    }
    double LeadOfPicture(const MediaGraph& graph);
    SoundFormatRecord Format() const {
        SoundFormatRecord format;
        std::memcpy(&format, block->SoundFormat, sizeof format);
        return format;
    }
    SharedControlBlock* block;
};
} // namespace

constexpr int kLeftBand = 6, kRightBand = 9;

static double HertzOfBand(const SoundFormatRecord& format, int band) {
    const int points = FramesPerBuffer(format);
    return double(EvenBinOfBand(format, points, band)) * format.rate / points;
}

// A second of silence, then one of a tone in a band for each channel.
static std::vector<uint8_t> Step(const SoundFormatRecord& format) {
    const int second = static_cast<int>(format.rate);
    const size_t width = format.bits / 8u;
    std::vector<uint8_t> sound, right;
    AppendTone(sound, format, second, 0, 0);
    AppendTone(right, format, second, 0, 0);
    AppendTone(sound, format, second, HertzOfBand(format, kLeftBand), 0.5, 1);
    AppendTone(right, format, second, HertzOfBand(format, kRightBand), 0.5, 2);
    for (size_t i = width; format.channels == 2 && i < sound.size(); i += 2 * width)
        std::memcpy(&sound[i], &right[i], width);
    return sound;
}

// How long the picture of the step came before its sound, in ms. 10000: it did not come.
double ExtractorGraph::LeadOfPicture(const MediaGraph& graph) {
    Capture capture;
    double shown = 0;
    graph.control->Run();
    WaitUntil([&] { return block->PowerFullScale > 0; }); // silence, to begin with
    for (const double start = Now(); !shown && Now() - start < kPatienceMs; Sleep(1))
        if (block->PowerLeft > 0) shown = Now();
    const SoundFormatRecord format = Format();
    const int right = format.channels == 2 ? kRightBand : kLeftBand;
    const float power = format.bits == 16 ? 0.125f : 0.125f / 128; // a sine at half scale
    EXPECT_TRUE(WaitUntil([&] {
        return ShowsBands(kLeftBand, right) &&
               std::abs(block->PowerLeft / block->PowerFullScale / power - 1) < 0.1f;
    })) << format.rate;
    EXPECT_TRUE(graph.PlaysToItsEnd());
    const auto& samples = capture.Stop();
    for (size_t i = 0; shown && i < samples.size(); ++i)
        if (std::abs(samples[i]) > 64) return capture.TimeOf(i) - shown;
    return 10000;
}

TEST_F(ExtractorGraph, ShowsWhatTheFileHoldsAtMostTenthOfASecondBeforeItSounds) {
    for (const SoundFormatRecord& file : {PcmFormat(44100, 2, 16), PcmFormat(22050, 1, 16),
                                          PcmFormat(22050, 2, 8), PcmFormat(11025, 1, 8)}) {
        const std::string path = WriteWav(file, Step(file));
        double lead = 10000;
        for (int attempt = 0; lead > 100 && attempt < 5; ++attempt) { // a busy machine's sound lags
            MediaGraph graph(path);
            ASSERT_TRUE(graph.rendered && graph.GoesThrough());
            lead = LeadOfPicture(graph);
        }
        const std::string name = std::to_string(file.rate) + " Hz, " +
                                 std::to_string(file.channels) + " x " + std::to_string(file.bits);
        std::printf("%s: picture %.0f ms ahead\n", name.c_str(), lead);
        EXPECT_LE(lead, 100) << name;
        const SoundFormatRecord shown = Format();
        EXPECT_EQ(std::memcmp(&shown, &file, 16), 0) << name;
    }
}

TEST_F(ExtractorGraph, FilesThatCanNotBeShownPlayWithoutIt) {
    const struct {
        SoundFormatRecord file;
        bool shown;
    } kCases[] = {{PcmFormat(44100, 6, 16), false},
                  {PcmFormat(44100, 2, 24), true}, // decoded to 16 bit
                  {PcmFormat(44100, 2, 32, 3), true}};
    for (const auto& c : kCases) {
        std::memset(block->SoundFormat, 0, sizeof block->SoundFormat);
        MediaGraph graph(WriteWav(c.file, std::vector<uint8_t>(c.file.bytesPerSecond / 2)));
        ASSERT_TRUE(graph.rendered) << c.file.bits;
        EXPECT_EQ(graph.GoesThrough(), c.shown) << c.file.bits;
        graph.control->Run();
        EXPECT_TRUE(graph.PlaysToItsEnd()) << c.file.bits;
        EXPECT_EQ(Format().bits, c.shown ? 16 : 0) << c.file.bits;
    }
}

TEST_F(ExtractorGraph, SeeksPausesStopsAndBeginsAnew) {
    const SoundFormatRecord format = PcmFormat(22050, 2, 16);
    std::vector<uint8_t> sound;
    for (const int band : {3, 8, 12})
        AppendTone(sound, format, 3 * 22050, HertzOfBand(format, band), 0.5);
    MediaGraph graph(WriteWav(format, sound));
    const auto seek = [&](int64_t ms) {
        LONGLONG position = ms * kTimeUnitsPerMs;
        return graph.seeking->SetPositions(&position, AM_SEEKING_AbsolutePositioning, nullptr,
                                           AM_SEEKING_NoPositioning);
    };
    graph.control->Run();
    EXPECT_TRUE(WaitUntil([&] { return ShowsBands(3, 3); }));
    ASSERT_TRUE(SUCCEEDED(seek(6200)));
    EXPECT_TRUE(WaitUntil([&] { return ShowsBands(12, 12); }));
    EXPECT_FALSE(WaitUntil([&] { return ShowsBands(3, 3) || ShowsBands(8, 8); }, 1500));
    OAFilterState state;
    graph.control->Pause();
    graph.control->GetState(kPatienceMs, &state);
    const auto goesOn = [&](DWORD waitMs) {
        const uint32_t tick = block->SoundTick;
        return WaitUntil([&] { return block->SoundTick != tick; }, waitMs);
    };
    EXPECT_FALSE(goesOn(300));
    graph.control->Run();
    EXPECT_TRUE(goesOn(kPatienceMs));
    graph.control->Stop();
    EXPECT_FALSE(goesOn(300));
    ASSERT_TRUE(SUCCEEDED(seek(0)));
    graph.control->Run();
    EXPECT_TRUE(WaitUntil([&] { return ShowsBands(3, 3); }));
}
