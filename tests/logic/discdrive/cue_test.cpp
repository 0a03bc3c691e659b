// CUE sheets and WAV headers from outside: what is read, and what is refused.
#include "discdrive/cue.h"
#include "discdrive/wav.h"

#include <gtest/gtest.h>

#include <cstring>

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
    EXPECT_FALSE(s.files[0].wave);
    EXPECT_EQ(s.files[1].name, "sub\\last.wav");
    EXPECT_TRUE(s.files[1].wave);
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
        {"no file", "TRACK 01 AUDIO\nINDEX 01 00:00:00\n"},
        {"a kind of file that is not played", "FILE \"a.mp3\" MP3\n"},
        {"a file without a name", "FILE \"\" BINARY\n"},
        {"a file without a kind", "FILE\n"},
        {"no track of this name", "FILE \"a.bin\" BINARY\nTRACK 01 MODE9/2352\nINDEX 01 0:0:0\n"},
        {"track number 0", "FILE \"a.bin\" BINARY\nTRACK 00 AUDIO\nINDEX 01 00:00:00\n"},
        {"track number 100", "FILE \"a.bin\" BINARY\nTRACK 100 AUDIO\nINDEX 01 00:00:00\n"},
        {"a hole in the numbers", kHead + "INDEX 01 00:00:00\nTRACK 03 AUDIO\nINDEX 01 00:01:00\n"},
        {"no index", kHead},
        {"only index 00", kHead + "INDEX 00 00:00:00\n"},
        {"an index twice", kHead + "INDEX 01 00:00:00\nINDEX 01 00:00:01\n"},
        {"index 00 behind 01", kHead + "INDEX 01 00:00:00\nINDEX 00 00:00:01\n"},
        {"75 frames", kHead + "INDEX 01 00:00:75\n"},
        {"60 seconds", kHead + "INDEX 01 00:60:00\n"},
        {"a minute too many", kHead + "INDEX 01 256:00:00\n"},
        {"a negative time", kHead + "INDEX 01 00:-1:00\n"},
        {"two parts only", kHead + "INDEX 01 00:00\n"},
        {"no time", kHead + "INDEX 01\n"},
        {"a bad gap", kHead + "PREGAP 1:2\nINDEX 01 00:00:00\n"},
        {"not a text", kHead + "INDEX 01 00:00:00\n" + std::string(1, '\0')},
        {"too long", kHead + "INDEX 01 00:00:00\n" + std::string(kMaxCueBytes, '\n')},
    };
    for (const auto& c : cases) {
        CueSheet s;
        EXPECT_FALSE(ReadCue(c.text, &s)) << c.why;
    }
}

TEST(Cue, NamesStayInTheSheetsFolder) {
    const struct {
        const char *name, *local;
    } cases[] = {
        {"\\\\host\\share\\a.bin", "a.bin"},
        {"..\\..\\a.bin", "a.bin"},
        {"D:a.bin", "a.bin"},
        {"/etc/a.bin", "a.bin"},
        {"cd 1/a.bin", "cd 1\\a.bin"},
    };
    for (const auto& c : cases) {
        CueSheet s;
        ASSERT_TRUE(ReadCue("FILE \"" + std::string(c.name) + "\" BINARY", &s)) << c.name;
        EXPECT_EQ(s.files[0].name, c.local);
    }
}

TEST(Cue, KnowsUtf8) {
    EXPECT_TRUE(IsUtf8("plain"));
    EXPECT_TRUE(IsUtf8("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xB5"));
    for (const char* other : {"caf\xE9", "\xC3", "\xC0\xAF", "\x80", "\xE2\x82", "\xF8\x88"})
        EXPECT_FALSE(IsUtf8(other));
}

struct WavParts {
    std::vector<uint8_t> bytes;
    WavParts& Text(const char* t) {
        bytes.insert(bytes.end(), t, t + strlen(t));
        return *this;
    }
    WavParts& Number(uint32_t value, int width) {
        for (int i = 0; i < width; ++i)
            bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
        return *this;
    }
    WavParts& Format(uint32_t tag, uint32_t channels, uint32_t rate, uint32_t bits) {
        Text("fmt ").Number(16, 4).Number(tag, 2).Number(channels, 2).Number(rate, 4);
        return Number(rate * 4, 4).Number(channels * bits / 8, 2).Number(bits, 2);
    }
};

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
        WavParts w;
        w.Text("RIFF").Number(0, 4).Text("WAVELIST").Number(3, 4).Text("abc").Number(0, 1);
        w.Format(f.tag, f.channels, f.rate, f.bits).Text("data").Number(8, 4);
        const size_t start = w.bytes.size();
        w.Number(0, 4).Number(0, 4);
        WavData data;
        EXPECT_EQ(ReadWavHeader(w.bytes, w.bytes.size(), &data), f.good) << f.why;
        if (!f.good) continue;
        EXPECT_EQ(data.offset, start);
        EXPECT_EQ(data.bytes, 8u);
        EXPECT_FALSE(ReadWavHeader(w.bytes, w.bytes.size() - 1, &data)) << "cut off";
        for (size_t n = 0; n < start; ++n) {
            const std::vector<uint8_t> head(w.bytes.begin(), w.bytes.begin() + n);
            EXPECT_FALSE(ReadWavHeader(head, n, &data)) << n << " bytes of head";
        }
    }
    WavParts noFormat;
    noFormat.Text("RIFF").Number(0, 4).Text("WAVEdata").Number(0, 4);
    WavData data;
    EXPECT_FALSE(ReadWavHeader(noFormat.bytes, noFormat.bytes.size(), &data));
}
