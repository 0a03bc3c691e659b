// Forms of other programs: their rules, what others' files look like, and the way there and back.
#include "archive/cddb.h"
#include "archive/cue_sheet.h"
#include "archive/ini.h"
#include "tests/logic/archive/records.h"

#include <gtest/gtest.h>

#include <algorithm>

// ---- CDPlayer.ini

static std::string WithNuls(std::string lines) {
    std::replace(lines.begin(), lines.end(), '\n', '\0');
    return lines;
}

static RecordPointer ReadIni(const std::string& text, const char* name = "C0FFEE") {
    auto record = std::make_unique<CDInfoRecord>();
    CopyText(record->identityText, name);
    ReadIniDisc(ParseIniSection(WithNuls(text)), record.get());
    return record;
}

static std::string ProgramOf(const CDInfoRecord& record) {
    std::string text = std::to_string(record.programCount) + ":";
    for (size_t i = 0; i < record.programCount; ++i)
        text += " " + std::to_string(TmsfTrack(record.program[i].start));
    return text;
}

// Title, then artist, title and comment of each track.
static std::string TextsOf(const CDInfoRecord& record) {
    std::string text = record.title;
    for (size_t i = 0; i < record.trackCount; ++i) {
        text += std::string("|") + record.trackArtists[i] + "/" + record.trackTitles[i];
        if (record.trackComments[i][0]) text += std::string("/") + record.trackComments[i];
    }
    return text;
}

TEST(Ini, Programs) {
    const struct {
        const char *keys, *program;
    } cases[] = {
        {"numplay=5\norder=2, 0\n", "2: 3 1"},
        {"numplay=2\norder=0 1,2\n", "2: 1 2"},
        {"order=0 1 2 0 1\n", "3: 1 2 3"},
        {"numplay=9\norder=7,2147483647,99999999999,-3,x\n", "5: 3 3 3 1 1"},
        {"numplay=150\n", "1: 1"},
        {"numplay=-1\n", "1: 1"},
        {"numplay=2\norder=\n", "0:"},
        {"numplay=\"2\"\norder=' 2 '\n", "1: 3"},
    };
    for (const auto& c : cases) {
        const auto record = ReadIni(std::string("numtracks=3\n") + c.keys);
        EXPECT_EQ(ProgramOf(*record), c.program) << c.keys;
    }
}

TEST(Ini, TextsAndTheirDefaults) {
    const auto record = ReadIni("NumTracks = 2\nartist=Group\nARTIST1=Other\n0= First \n0=Again\n"
                                "1=\"'Quoted'\"\n99=Beyond\ntitle=" +
                                std::string(80, 't') + "\n");
    EXPECT_STREQ(record->identityText, "00C0FFEE");
    EXPECT_EQ(TextsOf(*record), std::string(63, 't') + "|Group/First|Other/'Quoted'");
    EXPECT_STREQ(record->discArtist, "Various");
    EXPECT_STREQ(record->trackTitles[99], "Beyond") << "all slots are read";
    EXPECT_STREQ(record->trackArtists[99], "Group");
    EXPECT_EQ(TextsOf(*ReadIni("numtracks=00000000012\n")), "Unknown CD Title|Artist/Track 1")
        << "ten characters count";
    EXPECT_EQ(ReadIni("numtracks=65000\n")->trackCount, 100);
    EXPECT_EQ(ReadIni("numtracks=-4\n")->trackCount, 0);
    uint32_t identity;
    for (const char* name : {"", "123456789", "12G", " 12"})
        EXPECT_FALSE(ParseIniName(name, &identity)) << name;
}

TEST(Ini, WritesIntoWhatIsThere) {
    auto disc = MakeDisc(0xBEEF, 2, "\"Heroes\"");
    CopyText(disc->trackTitles[0], "line\r\n[evil]");
    CopyText(disc->trackTitles[1], " '");
    const IniLines before =
        ParseIniSection(WithNuls("EntryType=1\nTITLE=Old\n; note\nnumplay=7\n"));
    EXPECT_EQ(IniName(disc->identity), "BEEF");
    EXPECT_EQ(FormatIniSection(WriteIniDisc(*disc, before)),
              WithNuls("EntryType=1\nTITLE=\"\"Heroes\"\"\n; note\nnumplay=0\nnumtracks=2\n"
                       "artist=Somebody\n0=line  [evil]\n1=\" '\"\norder=\n\n"));
    disc->identity = 0;
    EXPECT_TRUE(WriteIniDisc(*disc, before).empty());
}

// ---- CDDB

static const char kForeignDisc[] =
    "# xmcd CD database file\r\n# Copyright (C) 1996 Somebody\r\n#\r\n# Track frame offsets:\r\n"
    "#\t150\r\n#\t17510\r\n#\t33275\r\n#\t45910\r\n#\r\n# Disc length: 812 seconds\r\n#\r\n"
    "# Revision: 3\r\n# Submitted via: other 1.0\r\n#\r\nDISCID=2e032a04,31032a04\r\n"
    "DTITLE=Group / A title that is cut \r\nDTITLE=in two \\\\ halves\r\n"
    "DYEAR=1997\r\nDGENRE=Rock\r\nTTITLE0=One\r\nTTITLE1=Two / Three\r\nTTITLE2=Caf\xE9\r\n"
    "TTITLE7=no such track\r\nEXTD=Line one\\nline\\ttwo\r\nEXTT1=live\r\nPLAYORDER=2, 4,9,1\r\n";

static RecordPointer ReadCddb(const std::string& text) {
    auto record = std::make_unique<CDInfoRecord>();
    return ReadCddbEntry(text, {}, record.get()) ? std::move(record) : nullptr;
}

TEST(Cddb, ReadsWhatOthersWrote) {
    const auto record = ReadCddb(kForeignDisc);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->trackStarts[4], 812u * 75);
    // 00:02:00 + 03:53:35 + 07:23:50 + 10:12:10, minutes in bits 16 and up
    EXPECT_EQ(record->identity, 0x000200u + 0x033523 + 0x071732 + 0x0A0C0A);
    EXPECT_EQ(TextsOf(*record), "A title that is cut in two \\ halves|Group/One|Group/Two / "
                                "Three/live|Group/Caf\xE9|Group/Track 4");
    EXPECT_STREQ(record->comment, "Line one line two (1997, Rock)");
    EXPECT_EQ(ProgramOf(*record), "3: 2 4 1");
    EXPECT_EQ(record->revision, 3);
}

TEST(Cddb, ArtistsOfTracks) {
    const struct {
        const char *fields, *texts;
    } cases[] = {
        {"DTITLE=Various Artists / Hits\nTTITLE0=A / x\nTTITLE1=y\nTTITLE2=B / z / w\n",
         "Hits|A/x|Various Artists/y|B/z / w"},
        {"DTITLE=Film / Music\nTTITLE0=A / x\nTTITLE1=B / y\nTTITLE2=C / z\n", "Music|A/x|B/y|C/z"},
        {"DTITLE=Alone\n", "Alone|Alone/Track 1|Alone/Track 2|Alone/Track 3"},
        {"", "Unknown CD Title|Artist/Track 1|Artist/Track 2|Artist/Track 3"},
    };
    for (const auto& c : cases) {
        const auto record = ReadCddb("# xmcd\n# Track frame offsets:\n# 150\n# 9000\n# 20000\n"
                                     "# Disc length: 400\n" +
                                     std::string(c.fields));
        ASSERT_TRUE(record);
        EXPECT_EQ(TextsOf(*record), c.texts);
    }
}

TEST(Cddb, RefusesWhatMakesNoDisc) {
    std::string many = "# xmcd\n# Track frame offsets:\n";
    for (int i = 0; i < 101; ++i)
        many += "# " + std::to_string(150 + i * 100) + "\n";
    for (const std::string& text : std::vector<std::string>{
             "", "xmcd", "# xmcd\nDTITLE=a / b\n", many,
             "# xmcd\n# Track frame offsets:\n# 150\n# 150\n# 300\n# Disc length: 9\n",
             "# xmcd\n# Track frame offsets:\n# 0\n# 100\n# 300\n# Disc length: 9\n",
             "# xmcd\n# Track frame offsets:\n# 99999999999\n# Disc length: 9\n"}) {
        EXPECT_FALSE(ReadCddb(text)) << text.substr(0, 80);
    }
}

TEST(Cddb, ThereAndBack) {
    std::string all = "\xEF\xBB\xBF";
    std::vector<std::string> discs;
    for (uint32_t seed = 0; seed < 200; ++seed) {
        const auto disc = RandomDisc(seed, 100);
        const std::string text = WriteCddbEntry(*disc, {});
        for (size_t at = 0, end; (end = text.find('\n', at)) != text.npos; at = end + 1)
            ASSERT_LT(end - at, 256u) << "line of seed " << seed;
        all += "#FILENAME=" + std::to_string(seed) + "\n" + text;
        discs.push_back(PackedDisc(*disc));
    }
    size_t found = 0;
    std::string_view rest = all;
    for (auto entry = NextCddbEntry(&rest); !entry.empty(); entry = NextCddbEntry(&rest)) {
        const auto back = ReadCddb(std::string(entry));
        ASSERT_TRUE(back && found < discs.size());
        EXPECT_EQ(PackedDisc(*back), discs[found]) << found;
        ++found;
    }
    EXPECT_EQ(found, discs.size());
}

TEST(Cddb, WhatWouldBeReadAnotherWay) {
    auto disc = MakeDisc(0xABC, 3, "In / Out", "AC / DC");
    disc->program[1].start = MakeTmsf(1, 0, 10, 0); // a stretch of a track
    disc->programCount = 2;
    auto various = MakeDisc(0xABD, 3, "Title", "VA");
    CopyText(various->trackTitles[2], "One / Two");
    const auto back = ReadCddb(WriteCddbEntry(*disc, {}));
    const auto other = ReadCddb(WriteCddbEntry(*various, {}));
    ASSERT_TRUE(back && other);
    EXPECT_EQ(TextsOf(*back), "In / Out|AC/DC/Track 1|AC/DC/Track 2|AC/DC/Track 3");
    EXPECT_EQ(back->programCount, 3) << "every track, where the order can't be told";
    EXPECT_EQ(TextsOf(*other), TextsOf(*various));
}

// ---- CUE

// lengths: frames of the files; 0 unknown.
static RecordPointer ReadSheet(const std::string& text, std::vector<uint32_t> lengths) {
    CueSheet sheet;
    CueTexts texts;
    if (!ReadCue(text, &sheet, &texts)) return nullptr;
    std::vector<CueFileLength> known;
    for (const uint32_t frames : lengths)
        known.push_back({{0, uint64_t{frames} * kAudioSectorBytes}, frames != 0});
    auto record = std::make_unique<CDInfoRecord>();
    return ReadCueDisc(sheet, texts, known, 0, {}, record.get()) ? std::move(record) : nullptr;
}

static const std::string kThreeTracks =
    "REM COMMENT \"of the disc\"\r\nPERFORMER \"Group\"\r\nTITLE The 12\" Mixes\r\n"
    "FILE \"all.flac\" FLAC\r\n"
    "  TRACK 01 AUDIO\r\n    TITLE \"One \"or\" two\"\r\n    INDEX 01 00:00:32\r\n"
    "  TRACK 02 AUDIO\r\n    PERFORMER \"Guest\"\r\n    rem comment live\r\n"
    "    INDEX 00 03:00:00\r\n    INDEX 01 03:02:00\r\n"
    "  TRACK 03 AUDIO\r\n    INDEX 01 07:00:10\r\n";

TEST(Cue, TitlesOfOthersSheets) {
    const auto record = ReadSheet(kThreeTracks, {0});
    ASSERT_TRUE(record);
    EXPECT_EQ(TextsOf(*record), "The 12\" Mixes|Group/One \"or\" two|Guest/Track 2/live|"
                                "Group/Track 3");
    EXPECT_STREQ(record->comment, "of the disc");
    EXPECT_EQ(record->identity, 0x000220u + 0x030400 + 0x07020A) << "00:02:32 03:04:00 07:02:10";
    EXPECT_EQ(record->trackSeconds[2], 0) << "nobody knows how long";
    const auto measured = ReadSheet(kThreeTracks, {40000});
    ASSERT_TRUE(measured);
    EXPECT_EQ(measured->identity, record->identity);
    EXPECT_EQ(measured->trackStarts[3], 40150u);
}

TEST(Cue, WhatCantBeTold) {
    const std::string track = "TRACK 01 AUDIO\nINDEX 01 00:00:00\n";
    const std::string one = "FILE a.wav WAVE\n" + track;
    const std::string two = one + "FILE b.wav WAVE\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n";
    EXPECT_FALSE(ReadSheet(one, {0})) << "the identity of a short disc counts its length";
    EXPECT_TRUE(ReadSheet(one, {9000}));
    EXPECT_FALSE(ReadSheet(two, {0, 9000})) << "where does track 2 begin?";
    EXPECT_TRUE(ReadSheet(two, {9000, 9000}));
    EXPECT_FALSE(ReadSheet("FILE a.wav WAVE\n", {9000}));
    CueSheet sheet;
    EXPECT_FALSE(ReadCue(kThreeTracks, &sheet)) << "nobody plays a file of that kind";
}

TEST(Cue, ThereAndBack) {
    for (uint32_t seed = 0; seed < 200; ++seed) {
        const auto disc = RandomDisc(seed, 99);
        const auto back = ReadSheet(WriteCueSheet(*disc, "any.wav", {}), {0});
        ASSERT_TRUE(back) << seed;
        EXPECT_EQ(PackedDisc(*disc, 0), PackedDisc(*back, 0)) << seed;
    }
    auto untimed = MakeDisc(0xABC, 1, "Title");
    std::memset(untimed->trackStarts, 0, sizeof untimed->trackStarts);
    CompleteRecord(untimed.get());
    const auto back = ReadSheet(WriteCueSheet(*untimed, "any.wav", {}), {0});
    ASSERT_TRUE(back);
    EXPECT_EQ(PackedDisc(*untimed), PackedDisc(*back));
}
