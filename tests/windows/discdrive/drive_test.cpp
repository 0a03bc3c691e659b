// The driver as a program meets it: through mciSendCommand.
#include "drive_kit.h"

#include "core/tmsf.h"
#include "discdrive/image_win.cpp"
#include "tests/support/tone_disc.h"

#include <gtest/gtest.h>

static std::string Path(const std::string& name) {
    return std::string(kProgramFolder) + "\\" + name;
}

static void PutFile(const std::string& name, const std::string& bytes) {
    WriteWholeFile(Path(name), bytes.data(), bytes.size());
}

// A WAV file of so many sectors with a low hum.
static std::string Wav(uint32_t sectors) {
    const uint32_t bytes = sectors * 2352;
    const uint32_t words[] = {36 + bytes, 0x45564157, 0x20746D66, 16,         0x20001,
                              44100,      176400,     0x100004,   0x61746164, bytes};
    return "RIFF" + std::string(reinterpret_cast<const char*>(words), sizeof words) +
           std::string(bytes, '\1');
}

class Drive : public testing::Test {
protected:
    static void SetUpTestSuite() {
        ASSERT_TRUE(InstallDrive(BuildFolder()));
        // Starts: frames 150, 450, 525; end 750.
        s_main = MakeToneDisc(kProgramFolder, "main", {{440, 300}, {0, 75, true}, {660, 225}});
        WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveLetter, "D");
    }
    void SetUp() override {
        CalmDrive();
        PutImage(s_main.cue);
        m_device = OpenDevice("D:");
        ASSERT_TRUE(m_device) << s_openError;
        ASSERT_TRUE(AwaitMode(MCI_MODE_STOP));
        ASSERT_EQ(SetDevice(m_device, MCI_SET_TIME_FORMAT, MCI_FORMAT_TMSF), 0u);
        while (NextNotify(0)) {
        }
    }
    void TearDown() override {
        CalmDrive();
        Send(m_device, MCI_STOP);
        Send(m_device, MCI_CLOSE);
    }
    bool AwaitMode(DWORD mode, DWORD waitMs = 5000) {
        return WaitUntil([&] { return Mode(m_device) == mode; }, waitMs);
    }
    // Puts a disc in; true when the drive has accepted it.
    bool Insert(const std::string& image) {
        PutImage(image);
        return AwaitMode(MCI_MODE_OPEN, 0) && AwaitMode(MCI_MODE_STOP, 3200);
    }
    MCIDEVICEID m_device = 0;
    static ToneDisc s_main;
};
ToneDisc Drive::s_main;

TEST_F(Drive, TellsItsTableOfContents) {
    constexpr DWORD kError = 0x80000000;
    struct {
        DWORD format, item, flags, track, expected;
    } const cases[] = {
        {MCI_FORMAT_TMSF, MCI_STATUS_NUMBER_OF_TRACKS, MCI_TRACK, 0, 3},
        {MCI_FORMAT_TMSF, MCI_STATUS_LENGTH, MCI_TRACK, 2, MakeMsf(0, 1, 0)},
        {MCI_FORMAT_TMSF, MCI_STATUS_POSITION, MCI_TRACK, 3, MakeTmsf(3, 0, 0, 0)},
        {MCI_FORMAT_MSF, MCI_STATUS_POSITION, MCI_STATUS_START, 0, MakeMsf(0, 2, 0)},
        {MCI_FORMAT_MSF, MCI_CDA_STATUS_TYPE_TRACK, MCI_TRACK, 2, MCI_CDA_TRACK_OTHER},
        {MCI_FORMAT_MSF, MCI_STATUS_LENGTH, MCI_TRACK, 4, kError | MCIERR_OUTOFRANGE},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(SetDevice(m_device, MCI_SET_TIME_FORMAT, c.format), 0u);
        EXPECT_EQ(Status(m_device, c.item, c.flags, c.track), c.expected)
            << "item " << c.item << " track " << c.track << " format " << c.format;
    }
    char text[17] = {};
    MCI_INFO_PARMSA info = {0, text, sizeof text};
    ASSERT_EQ(mciSendCommandA(m_device, MCI_INFO, MCI_INFO_MEDIA_IDENTITY,
                              reinterpret_cast<DWORD_PTR>(&info)),
              0u);
    EXPECT_STREQ(text, "3840") << "00:02:00, 00:06:00 and 00:07:00 added up";
}

TEST_F(Drive, PositionsRunFromToAndSkipData) {
    // 3 s and 35 frames of track 1 to 40 frames of track 3.
    ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM | MCI_TO, MakeTmsf(1, 0, 3, 35),
                        MakeTmsf(3, 0, 0, 40)),
              0u);
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_PLAY));
    DWORD last = 0, code = 0;
    for (int step = 0; step < 1000 && !(code = NextNotify(10)); ++step) {
        const DWORD place = Status(m_device, MCI_STATUS_POSITION);
        const DWORD order = TmsfTrack(place) << 16 | TmsfSecond(place) << 8 | TmsfFrame(place);
        EXPECT_GE(order, last) << "the position runs backwards";
        EXPECT_NE(TmsfTrack(place), 2u) << "in the data";
        last = order;
    }
    EXPECT_EQ(code, static_cast<DWORD>(MCI_NOTIFY_SUCCESSFUL));
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_STOP));
    EXPECT_EQ(Status(m_device, MCI_STATUS_POSITION), MakeTmsf(3, 0, 0, 40));
}

TEST_F(Drive, NotifiesHowAPlayEnded) {
    constexpr DWORD kWhole = MCI_NOTIFY | MCI_FROM;
    const struct {
        const char* how;
        DWORD code;
        DWORD (*end)(MCIDEVICEID);
    } cases[] = {
        {"another play", MCI_NOTIFY_SUPERSEDED,
         [](MCIDEVICEID d) { return PlayRange(d, kWhole, MakeTmsf(1, 0, 1, 0)); }},
        {"a play that asks for none", MCI_NOTIFY_ABORTED,
         [](MCIDEVICEID d) { return PlayRange(d, MCI_FROM, MakeTmsf(1, 0, 1, 0)); }},
        {"stop", MCI_NOTIFY_ABORTED, [](MCIDEVICEID d) { return Send(d, MCI_STOP); }},
        {"seek", MCI_NOTIFY_ABORTED,
         [](MCIDEVICEID d) { return Send(d, MCI_SEEK, MCI_SEEK_TO_START); }},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(PlayRange(m_device, kWhole, MakeTmsf(1, 0, 0, 0)), 0u);
        EXPECT_EQ(NextNotify(60), 0u) << "while it plays";
        ASSERT_EQ(c.end(m_device), 0u) << c.how;
        EXPECT_EQ(NextNotify(500), c.code) << c.how;
        Send(m_device, MCI_STOP);
        while (NextNotify(0)) {
        }
    }
    ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM | MCI_TO, MakeTmsf(2, 0, 0, 0),
                        MakeTmsf(3, 0, 0, 0)),
              0u);
    EXPECT_EQ(NextNotify(500), static_cast<DWORD>(MCI_NOTIFY_SUCCESSFUL)) << "nothing but data";
    // A file that is lost while it plays.
    CreateDirectoryA(Path("lost").c_str(), nullptr);
    PutFile("lost\\1.wav", Wav(150));
    PutFile("lost\\2.WAV", Wav(150));
    PutFile("lost\\notes.txt", "not sound");
    ASSERT_TRUE(Insert(Path("lost")));
    EXPECT_EQ(Status(m_device, MCI_STATUS_NUMBER_OF_TRACKS), 2u);
    ASSERT_EQ(PlayRange(m_device, kWhole, MakeTmsf(1, 0, 0, 0)), 0u);
    ASSERT_TRUE(DeleteFileA(Path("lost\\2.WAV").c_str()));
    EXPECT_EQ(NextNotify(3000), static_cast<DWORD>(MCI_NOTIFY_FAILURE));
    EXPECT_NE(PlayRange(m_device, kWhole, MakeTmsf(2, 0, 0, 0)), 0u);
}

TEST_F(Drive, DoorAndSwapAbortThePlayAndTakeTime) {
    ASSERT_EQ(SetDevice(m_device, MCI_SET_DOOR_OPEN | MCI_WAIT), 0u);
    EXPECT_EQ(ReadRegDword(kUserRoot, kDiscDriveKey, kDiscDriveDoor), 1u) << "others must know";
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_OPEN));
    EXPECT_EQ(Status(m_device, MCI_STATUS_MEDIA_PRESENT), 0u);
    EXPECT_NE(PlayRange(m_device, MCI_FROM, MakeTmsf(1, 0, 0, 0)), 0u);
    ASSERT_EQ(mciSendCommandA(m_device, MCI_SET, MCI_SET_DOOR_CLOSED, 0), 0u) << "no parameters";
    const ULONGLONG start = GetTickCount64();
    ASSERT_TRUE(AwaitMode(MCI_MODE_STOP));
    EXPECT_NEAR(static_cast<double>(GetTickCount64() - start), 2500, 150);
    // From outside, with no command in between: the play itself notices.
    for (const int byDoor : {0, 1}) {
        ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM, MakeTmsf(1, 0, 0, 0)), 0u);
        if (byDoor) SetDrive(kDiscDriveDoor, 1);
        if (!byDoor) PutImage("C:\\none");
        EXPECT_EQ(NextNotify(400), static_cast<DWORD>(MCI_NOTIFY_ABORTED));
        EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_OPEN));
        ASSERT_TRUE(byDoor || Insert(s_main.cue));
    }
}

// Asked beneath the driver: for 2.5 s after a swap any image looks like none.
TEST_F(Drive, ABrokenImageIsNoDisc) {
    PutFile("cut.wav", Wav(10).substr(0, 9000));
    PutFile("missing.cue", "FILE \"missing.bin\" BINARY\n");
    PutFile("cut.cue", "FILE \"cut.wav\" WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
    PutFile("folder.cue", "FILE \".\" BINARY\n");
    PutFile("device.cue", "FILE \"CON\" BINARY\n");
    CreateDirectoryA(Path("none").c_str(), nullptr);
    for (const wchar_t* image : {L"missing.cue", L"cut.cue", L"folder.cue", L"device.cue",
                                 L"main.bin", L"none", L"absent"})
        EXPECT_FALSE(OpenDiscImage(L"C:\\TonvistaTest\\" + std::wstring(image))) << image;
    EXPECT_TRUE(OpenDiscImage(L"C:\\TonvistaTest\\main.cue"));
}

TEST_F(Drive, DiscsOfEverySizeAndFilesOfAnyName) {
    // The file's name as the system has it, and in the sheets as UTF-8 or in the code page.
    for (const int tracks : {0, 1, 99}) {
        std::string sheet =
            tracks == 1 ? "FILE \"\xC3\xA9.bin\" BINARY\n" : "FILE \xE9.bin BINARY\n";
        for (int i = 0; i < tracks; ++i) {
            char line[80];
            wsprintfA(line, "TRACK %02d AUDIO\nINDEX 01 00:%02d:%02d\n", i + 1, i * 10 / 75,
                      i * 10 % 75);
            sheet += line;
        }
        PutFile("\xE9.bin", std::string(tracks * 10 * 2352, '\1'));
        const std::string cue = std::to_string(tracks) + ".cue";
        PutFile(cue, sheet);
        ASSERT_TRUE(Insert(Path(cue))) << tracks;
        EXPECT_EQ(Status(m_device, MCI_STATUS_NUMBER_OF_TRACKS), static_cast<DWORD>(tracks));
        EXPECT_EQ(PlayRange(m_device, MCI_FROM, MakeTmsf(tracks, 0, 0, 0)) == 0, tracks > 0);
        Send(m_device, MCI_STOP);
    }
}
