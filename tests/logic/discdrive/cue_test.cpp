// CUE sheets and WAV headers from outside: what is read, and what is refused.
#include "discdrive/cue.h"
#include "discdrive/wav.h"

#include <gtest/gtest.h>

static const std::string kHead = "FILE \"a b.bin\" BINARY\nTRACK 01 AUDIO\n";

TEST(Cue, ReadsWhatSheetsHold) {
    CueSheet s;
    ASSERT_TRUE(ReadCue("\xEF\xBB\xBFREM COMMENT \"TRACK 07\"\r\nPERFORMER \"X\"\r\n"
                        "file C:\\Music\\my disc.bin binary\r\n"
                        "  track 1 MODE1/2048\r\n\tINDEX 01 00:00:00\r\n    POSTGAP 00:02:00\r\n"
                        "  TRACK 02 AUDIO\r\n    FLAGS DCP\r\n    PREGAP 00:02:00\r\n"
                        "    INDEX 01 10:59:74\r\n    INDEX 02 11:00:00\r\n"
                        "  TRACK 03 AUDIO\r\n    INDEX 00 12:00:00\r\n"
                        "FILE \"sub/last.wav\" WAVE\r\n    INDEX 01 00:00:00",
                        &s));
    ASSERT_EQ(s.files.size(), 2u);
    EXPECT_EQ(s.files[0].name, "my disc.bin") << "from the sheet's own folder";
    EXPECT_EQ(s.files[1].name, "sub\\last.wav");
    EXPECT_TRUE(!s.files[0].wave && s.files[1].wave);
    ASSERT_EQ(s.tracks.size(), 3u);
    EXPECT_FALSE(s.tracks[0].audio);
    EXPECT_EQ(s.tracks[0].sectorBytes, 2048u);
    EXPECT_EQ(s.tracks[0].postgap, 150u);
    EXPECT_EQ(s.tracks[1].pregap, 150u);
    EXPECT_EQ(s.tracks[1].start.frame, 10u * 4500 + 59 * 75 + 74);
    EXPECT_EQ(s.tracks[2].first.file, 0);
    EXPECT_EQ(s.tracks[2].first.frame, 54000u);
    EXPECT_EQ(s.tracks[2].start.file, 1);

    ASSERT_TRUE(ReadCue("FILE \"blank.bin\" BINARY", &s)) << "a disc without tracks";
    EXPECT_TRUE(s.tracks.empty());
}

TEST(Cue, RefusesWhatIsBroken) {
    const struct {
        const char* why;
        std::string text;
    } cases[] = {
        {"empty", ""},
        {"a kind of file that is not played", "FILE \"a.mp3\" MP3\n"},
        {"no track of this name", "FILE \"a.bin\" BINARY\nTRACK 01 MODE9/2352\nINDEX 01 0:0:0\n"},
        {"track number 100", "FILE \"a.bin\" BINARY\nTRACK 100 AUDIO\nINDEX 01 00:00:00\n"},
        {"a hole in the numbers", kHead + "INDEX 01 00:00:00\nTRACK 03 AUDIO\nINDEX 01 00:01:00\n"},
        {"no index", kHead},
        {"index 00 behind 01", kHead + "INDEX 01 00:00:00\nINDEX 00 00:00:01\n"},
        {"75 frames", kHead + "INDEX 01 00:00:75\n"},
        {"60 seconds", kHead + "INDEX 01 00:60:00\n"},
        {"not a text", kHead + "INDEX 01 00:00:00\n" + std::string(1, '\0')},
        {"too long", kHead + "INDEX 01 00:00:00\n" + std::string(kMaxCueBytes, '\n')},
    };
    for (const auto& c : cases) {
        CueSheet s;
        EXPECT_FALSE(ReadCue(c.text, &s)) << c.why;
    }
}

static std::string Little(uint32_t value, int width) {
    std::string bytes;
    for (int i = 0; i < width; ++i)
        bytes.push_back(static_cast<char>(value >> (8 * i)));
    return bytes;
}

static int ReadWav(const std::string& bytes, size_t fileBytes, WavData* data) {
    return ReadWavHeader({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}, fileBytes,
                         data);
}

TEST(Wav, TakesOnlyWhatADiscHolds) {
    const struct {
        const char* why;
        uint32_t tag, channels, rate, bits;
        int good;
    } formats[] = {
        {"as on a disc", 1, 2, 44100, 16, 1}, {"mono", 1, 1, 44100, 16, 0},
        {"48 kHz", 1, 2, 48000, 16, 0},       {"8 bits", 1, 2, 44100, 8, 0},
        {"float", 3, 2, 44100, 16, 0},
    };
    for (const auto& f : formats) {
        const std::string head = "RIFF" + Little(0, 4) + "WAVELIST" + Little(3, 4) + "abc" +
                                 Little(0, 1) + "fmt " + Little(16, 4) + Little(f.tag, 2) +
                                 Little(f.channels, 2) + Little(f.rate, 4) + Little(f.rate * 4, 4) +
                                 Little(f.channels * f.bits / 8, 2) + Little(f.bits, 2) + "data" +
                                 Little(8, 4);
        WavData data;
        EXPECT_EQ(ReadWav(head, head.size() + 8, &data), f.good) << f.why;
        if (!f.good) continue;
        EXPECT_EQ(data.offset, head.size());
        EXPECT_EQ(data.bytes, 8u);
        EXPECT_FALSE(ReadWav(head, head.size() + 7, &data)) << "cut off";
        for (size_t n = 0; n < head.size(); ++n)
            EXPECT_FALSE(ReadWav(head.substr(0, n), n, &data)) << n << " bytes of head";
    }
}
