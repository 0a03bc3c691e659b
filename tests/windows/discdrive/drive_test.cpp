// The driver as a program meets it: through mciSendCommand.
#include "drive_kit.h"

#include "core/tmsf.h"

#include <gtest/gtest.h>

#include <sstream>

// The disc of most tests: audio, data, audio. Starts: frames 150, 450, 525; end 750.
constexpr DWORD kFrames1 = 300, kFrames2 = 75, kFrames3 = 225;

static std::string MainBin() {
    return Noise(kFrames1, 1) + std::string(kFrames2 * kSectorBytes, '\x55') + Noise(kFrames3, 3);
}

static std::string MakeMainDisc() {
    const std::string folder = TempFolder();
    PutFile(folder + "\\main.bin", MainBin());
    PutFile(folder + "\\main.cue", "FILE \"main.bin\" BINARY\r\n"
                                   "  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n"
                                   "  TRACK 02 MODE1/2352\r\n    INDEX 01 00:04:00\r\n"
                                   "  TRACK 03 AUDIO\r\n    INDEX 01 00:05:00\r\n");
    return folder + "\\main.cue";
}

static void CalmDown() {
    for (const char* name : {kDiscDriveDoor, kDiscDriveStall, kDiscDriveFailCommand,
                             kDiscDriveFailError, kDiscDriveNoNotify, kDiscDriveStayPlaying,
                             kDiscDrivePauseAsStopped, kDiscDriveStaleToc}) {
        SetNumber(name, 0);
    }
    SetText(kDiscDriveLogFile, "");
}

// Set in a second process that only opens, plays, and goes without stopping or closing. Its exit
// code tells whether the disc that was in already was ready at once.
static const char* const kGuest = "TONVISTA_DRIVE_GUEST";

static int IsGuest() {
    return GetEnvironmentVariableA(kGuest, nullptr, 0) != 0;
}

static void LeaveWhilePlaying() {
    const MCIDEVICEID device = OpenDevice("D:");
    const int ready = device && Mode(device) == MCI_MODE_STOP;
    const DWORD error = PlayRange(device, MCI_NOTIFY | MCI_FROM, MakeMsf(0, 2, 0));
    Sleep(200);
    ExitProcess(ready && !error ? 7 : 8);
}

class Drive : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (IsGuest()) LeaveWhilePlaying();
        ASSERT_TRUE(InstallDriver());
        s_main = MakeMainDisc();
        SetText(kDiscDriveLetter, "D");
    }
    void SetUp() override {
        CalmDown();
        SetText(kDiscDriveImage, s_main);
        m_device = OpenDevice("D:");
        ASSERT_NE(m_device, kNoDevice) << s_openError;
        ASSERT_TRUE(WaitForMode(m_device, MCI_MODE_STOP));
        ASSERT_EQ(SetDevice(m_device, MCI_SET_TIME_FORMAT, MCI_FORMAT_TMSF), 0u);
        while (NextNotify(0)) {
        }
    }
    void TearDown() override {
        CalmDown();
        Send(m_device, MCI_STOP);
        CloseDevice(m_device);
    }
    // Puts a disc in; 1 when the drive has accepted it.
    int Insert(const std::string& image) {
        SetText(kDiscDriveImage, image);
        return WaitForMode(m_device, MCI_MODE_OPEN, 0) &&
               WaitForMode(m_device, MCI_MODE_STOP, 3200);
    }
    MCIDEVICEID m_device = kNoDevice;
    static std::string s_main;
};
std::string Drive::s_main;

TEST_F(Drive, OpensOnlyAsTheServedLetterAndCountsItsOpens) {
    EXPECT_EQ(OpenDevice("E:", MCI_OPEN_SHAREABLE), kNoDevice);
    EXPECT_EQ(OpenDevice("D:\\main.cue", MCI_OPEN_SHAREABLE), kNoDevice);
    EXPECT_EQ(OpenDevice("D:", 0, "alone"), kNoDevice);
    EXPECT_EQ(s_openError, static_cast<DWORD>(MCIERR_MUST_USE_SHAREABLE));
    for (const char* element : {"D:\\", "d:", static_cast<const char*>(nullptr)}) {
        const MCIDEVICEID second = OpenDevice(element, MCI_OPEN_SHAREABLE, "second");
        ASSERT_NE(second, kNoDevice) << s_openError;
        EXPECT_EQ(Mode(second), static_cast<DWORD>(MCI_MODE_STOP));
        CloseDevice(second);
    }
    CloseDevice(m_device);
    m_device = OpenDevice("D:", 0);
    ASSERT_NE(m_device, kNoDevice) << "alone after the others have closed";
    EXPECT_EQ(OpenDevice("D:", MCI_OPEN_SHAREABLE, "late"), kNoDevice);
    EXPECT_EQ(s_openError, static_cast<DWORD>(MCIERR_MUST_USE_SHAREABLE));
}

TEST_F(Drive, TellsItsTableOfContents) {
    constexpr DWORD kError = 0x80000000;
    struct {
        DWORD format, item, flags, track, expected;
    } const cases[] = {
        {MCI_FORMAT_TMSF, MCI_STATUS_NUMBER_OF_TRACKS, 0, 0, 3},
        {MCI_FORMAT_TMSF, MCI_STATUS_NUMBER_OF_TRACKS, MCI_TRACK, 0, 3},
        {MCI_FORMAT_TMSF, MCI_STATUS_MEDIA_PRESENT, 0, 0, TRUE},
        {MCI_FORMAT_TMSF, MCI_STATUS_READY, 0, 0, TRUE},
        {MCI_FORMAT_TMSF, MCI_STATUS_TIME_FORMAT, 0, 0, MCI_FORMAT_TMSF},
        {MCI_FORMAT_TMSF, MCI_STATUS_LENGTH, 0, 0, MakeMsf(0, 8, 0)},
        {MCI_FORMAT_TMSF, MCI_STATUS_LENGTH, MCI_TRACK, 2, MakeMsf(0, 1, 0)},
        {MCI_FORMAT_TMSF, MCI_STATUS_POSITION, MCI_TRACK, 3, MakeTmsf(3, 0, 0, 0)},
        {MCI_FORMAT_MSF, MCI_STATUS_POSITION, MCI_TRACK, 3, MakeMsf(0, 7, 0)},
        {MCI_FORMAT_MILLISECONDS, MCI_STATUS_POSITION, MCI_TRACK, 3, 7000},
        {MCI_FORMAT_MILLISECONDS, MCI_STATUS_LENGTH, 0, 0, 8000},
        {MCI_FORMAT_MSF, MCI_STATUS_POSITION, MCI_STATUS_START, 0, MakeMsf(0, 2, 0)},
        {MCI_FORMAT_MSF, MCI_CDA_STATUS_TYPE_TRACK, MCI_TRACK, 1, MCI_CDA_TRACK_AUDIO},
        {MCI_FORMAT_MSF, MCI_CDA_STATUS_TYPE_TRACK, MCI_TRACK, 2, MCI_CDA_TRACK_OTHER},
        {MCI_FORMAT_MSF, MCI_STATUS_LENGTH, MCI_TRACK, 0, kError | MCIERR_OUTOFRANGE},
        {MCI_FORMAT_MSF, MCI_STATUS_LENGTH, MCI_TRACK, 4, kError | MCIERR_OUTOFRANGE},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(SetDevice(m_device, MCI_SET_TIME_FORMAT, c.format), 0u);
        EXPECT_EQ(Status(m_device, c.item, c.flags, c.track), c.expected)
            << "item " << c.item << " track " << c.track << " format " << c.format;
    }
    EXPECT_NE(SetDevice(m_device, MCI_SET_TIME_FORMAT, MCI_FORMAT_HMS), 0u);

    char text[17] = {};
    MCI_INFO_PARMSA info = {0, text, sizeof text};
    ASSERT_EQ(mciSendCommandA(m_device, MCI_INFO, MCI_INFO_MEDIA_IDENTITY,
                              reinterpret_cast<DWORD_PTR>(&info)),
              0u);
    EXPECT_STREQ(text, "3840") << "00:02:00, 00:06:00 and 00:07:00 added up";
}

// What the sound server heard, from waveIn; the default source is the monitor of the output.
struct Recorder {
    HWAVEIN in = nullptr;
    WAVEHDR header = {};
    std::string bytes = std::string(7 * 176400, '\0');
    Recorder() {
        WAVEFORMATEX format = {WAVE_FORMAT_PCM, 2, 44100, 176400, 4, 16, 0};
        if (waveInOpen(&in, WAVE_MAPPER, &format, 0, 0, CALLBACK_NULL)) return;
        header.lpData = bytes.data();
        header.dwBufferLength = static_cast<DWORD>(bytes.size());
        waveInPrepareHeader(in, &header, sizeof header);
        waveInAddBuffer(in, &header, sizeof header);
        waveInStart(in);
        Sleep(600);
    }
    std::string Finish() {
        Sleep(500);
        waveInReset(in);
        waveInUnprepareHeader(in, &header, sizeof header);
        waveInClose(in);
        return bytes.substr(0, header.dwBytesRecorded);
    }
};

// How what was heard differs from what was to be heard with silence around it; empty: it doesn't.
static std::string Difference(const std::string& heard, const std::string& expected) {
    const size_t at = heard.find(expected.substr(0, 64));
    if (at == std::string::npos) return "not heard at all";
    if (heard.find_first_not_of('\0') != at) return "something before it";
    size_t same = 0;
    while (same < expected.size() && at + same < heard.size() && heard[at + same] == expected[same])
        ++same;
    if (same < expected.size()) return "differs at byte " + std::to_string(same);
    return heard.find_first_not_of('\0', at + same) == std::string::npos ? ""
                                                                         : "something after it";
}

TEST_F(Drive, PlaysExactlyFromToAndSkipsData) {
    const std::string bin = MainBin();
    const std::string expected = bin.substr(160 * kSectorBytes, 140 * kSectorBytes) +
                                 bin.substr(375 * kSectorBytes, 80 * kSectorBytes);
    // On a busy machine the sound server stumbles now and then; a driver's fault comes each time.
    std::string difference = "not tried";
    for (int attempt = 0; attempt < 5 && !difference.empty(); ++attempt) {
        Recorder recorder;
        ASSERT_NE(recorder.in, nullptr);
        // 02:10 of track 1 to 01:05 of track 3.
        ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM | MCI_TO, MakeTmsf(1, 0, 2, 10),
                            MakeTmsf(3, 0, 1, 5)),
                  0u);
        EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_PLAY));
        DWORD last = 0, code = 0;
        for (int step = 0; step < 2000 && !(code = NextNotify(10)); ++step) {
            const DWORD place = Status(m_device, MCI_STATUS_POSITION);
            const DWORD order = TmsfTrack(place) << 16 | TmsfSecond(place) << 8 | TmsfFrame(place);
            EXPECT_GE(order, last) << "the position runs backwards";
            EXPECT_NE(TmsfTrack(place), 2u) << "in the data";
            last = order;
        }
        EXPECT_EQ(code, static_cast<DWORD>(MCI_NOTIFY_SUCCESSFUL));
        EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_STOP));
        EXPECT_EQ(Status(m_device, MCI_STATUS_POSITION), MakeTmsf(3, 0, 1, 5));
        difference = Difference(recorder.Finish(), expected);
    }
    EXPECT_EQ(difference, "");
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
    ASSERT_EQ(PlayRange(m_device, kWhole, MakeTmsf(1, 0, 0, 0)), 0u);
    EXPECT_EQ(Send(m_device, MCI_PAUSE, MCI_NOTIFY), 0u);
    EXPECT_EQ(NextNotify(200), static_cast<DWORD>(MCI_NOTIFY_SUPERSEDED)) << "by the pause's own";
    EXPECT_EQ(NextNotify(200), static_cast<DWORD>(MCI_NOTIFY_SUCCESSFUL));
    ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM | MCI_TO, MakeTmsf(2, 0, 0, 0),
                        MakeTmsf(3, 0, 0, 0)),
              0u);
    EXPECT_EQ(NextNotify(500), static_cast<DWORD>(MCI_NOTIFY_SUCCESSFUL)) << "nothing but data";
    const ULONGLONG start = GetTickCount64();
    ASSERT_EQ(PlayRange(m_device, MCI_WAIT | MCI_FROM | MCI_TO, MakeTmsf(1, 0, 0, 0),
                        MakeTmsf(1, 0, 0, 45)),
              0u);
    EXPECT_GE(GetTickCount64() - start, 500u) << "waited for";
}

TEST_F(Drive, ALostFileIsAFailure) {
    const std::string folder = TempFolder() + "\\lost";
    CreateDirectoryA(folder.c_str(), nullptr);
    PutFile(folder + "\\1.wav", Wav(Noise(150, 5)));
    PutFile(folder + "\\2.WAV", Wav(Noise(150, 6)));
    PutFile(folder + "\\notes.txt", "not sound");
    ASSERT_TRUE(Insert(folder));
    EXPECT_EQ(Status(m_device, MCI_STATUS_NUMBER_OF_TRACKS), 2u);
    ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM, MakeTmsf(1, 0, 0, 0)), 0u);
    ASSERT_TRUE(DeleteFileA((folder + "\\2.WAV").c_str()));
    EXPECT_EQ(NextNotify(3000), static_cast<DWORD>(MCI_NOTIFY_FAILURE));
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_STOP));
    EXPECT_NE(PlayRange(m_device, MCI_NOTIFY | MCI_FROM, MakeTmsf(2, 0, 0, 0)), 0u);
    EXPECT_EQ(NextNotify(100), 0u) << "the error has told it";
}

TEST_F(Drive, PausesWhereItIsAndGoesOnFromThere) {
    for (const int byResume : {1, 0}) {
        ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM | MCI_TO, MakeTmsf(1, 0, 0, 0),
                            MakeTmsf(1, 0, 1, 0)),
                  0u);
        Sleep(400);
        ASSERT_EQ(Send(m_device, MCI_PAUSE), 0u);
        EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_PAUSE));
        const DWORD place = Status(m_device, MCI_STATUS_POSITION);
        EXPECT_GE(TmsfFrame(place), 15u);
        EXPECT_LE(TmsfFrame(place), 45u);
        Sleep(300);
        EXPECT_EQ(Status(m_device, MCI_STATUS_POSITION), place);
        ASSERT_EQ(byResume ? Send(m_device, MCI_RESUME) : PlayRange(m_device, 0), 0u);
        EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_PLAY));
        EXPECT_EQ(NextNotify(1500), static_cast<DWORD>(MCI_NOTIFY_SUCCESSFUL));
        EXPECT_EQ(Status(m_device, MCI_STATUS_POSITION), MakeTmsf(1, 0, 1, 0));
    }
    SetNumber(kDiscDrivePauseAsStopped, 1);
    ASSERT_EQ(PlayRange(m_device, MCI_FROM, MakeTmsf(1, 0, 0, 0)), 0u);
    ASSERT_EQ(Send(m_device, MCI_PAUSE), 0u);
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_STOP));
}

TEST_F(Drive, DoorAndSwapAbortThePlayAndTakeTime) {
    ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM, MakeTmsf(1, 0, 0, 0)), 0u);
    ASSERT_EQ(SetDevice(m_device, MCI_SET_DOOR_OPEN | MCI_WAIT), 0u);
    EXPECT_EQ(NextNotify(200), static_cast<DWORD>(MCI_NOTIFY_ABORTED));
    EXPECT_EQ(GetNumber(kDiscDriveDoor), 1u) << "other processes must know";
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_OPEN));
    EXPECT_EQ(Status(m_device, MCI_STATUS_MEDIA_PRESENT), 0u);
    EXPECT_NE(Status(m_device, MCI_STATUS_NUMBER_OF_TRACKS) & 0x80000000, 0u);
    EXPECT_NE(PlayRange(m_device, MCI_FROM, MakeTmsf(1, 0, 0, 0)), 0u);

    ASSERT_EQ(mciSendCommandA(m_device, MCI_SET, MCI_SET_DOOR_CLOSED, 0), 0u) << "no parameters";
    EXPECT_EQ(GetNumber(kDiscDriveDoor), 0u);
    const ULONGLONG start = GetTickCount64();
    ASSERT_TRUE(WaitForMode(m_device, MCI_MODE_STOP));
    EXPECT_NEAR(static_cast<double>(GetTickCount64() - start), 2500, 150);

    // From outside, with no command in between: the play itself notices.
    for (const int byDoor : {0, 1}) {
        ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM, MakeTmsf(1, 0, 0, 0)), 0u);
        if (byDoor) {
            SetNumber(kDiscDriveDoor, 1);
        } else {
            SetText(kDiscDriveImage, s_main + "x");
        }
        EXPECT_EQ(NextNotify(200), static_cast<DWORD>(MCI_NOTIFY_ABORTED));
        EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_OPEN));
        if (!byDoor) {
            ASSERT_TRUE(Insert(s_main));
        }
    }
    // The key may go, and come again: another one, of which nothing was asked.
    CalmDown();
    ASSERT_TRUE(WaitForMode(m_device, MCI_MODE_STOP));
    RegDeleteKeyA(HKEY_CURRENT_USER, kDiscDriveKey);
    EXPECT_TRUE(WaitForMode(m_device, MCI_MODE_OPEN, 1000)) << "no image, no disc";
    SetText(kDiscDriveLetter, "D");
    EXPECT_TRUE(Insert(s_main));
}

TEST_F(Drive, ABrokenImageIsNoDisc) {
    const std::string folder = TempFolder();
    const std::string track = "\" WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n";
    PutFile(folder + "\\rate.wav", Wav(Noise(10, 1), 48000));
    PutFile(folder + "\\cut.wav", Wav(Noise(10, 1)).substr(0, 9000));
    PutFile(folder + "\\missing.cue", "FILE \"missing.bin\" BINARY\n");
    PutFile(folder + "\\rate.cue", "FILE \"rate.wav" + track);
    PutFile(folder + "\\cut.cue", "FILE \"cut.wav" + track);
    PutFile(folder + "\\folder.cue", "FILE \".\" BINARY\n");
    PutFile(folder + "\\device.cue", "FILE \"CON\" BINARY\n");
    CreateDirectoryA((folder + "\\none").c_str(), nullptr);
    for (const char* image : {"missing.cue", "rate.cue", "cut.cue", "folder.cue", "device.cue",
                              "main.bin", "none", "absent"}) {
        SetText(kDiscDriveImage, folder + "\\" + image);
        EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_OPEN)) << image;
    }
    Sleep(2700);
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_OPEN)) << "not only spinning up";
    EXPECT_EQ(Status(m_device, MCI_STATUS_MEDIA_PRESENT), 0u);
}

TEST_F(Drive, DiscsOfEverySizeAndFilesOfAnyName) {
    // The file's name as the system has it, and in the sheets as UTF-8 or in the code page.
    const std::string base = TempFolder();
    for (const int tracks : {0, 1, 99}) {
        std::string sheet =
            tracks == 1 ? "FILE \"\xC3\xA9.bin\" BINARY\n" : "FILE \xE9.bin BINARY\n";
        for (int i = 0; i < tracks; ++i) {
            char line[80];
            wsprintfA(line, "TRACK %02d AUDIO\nINDEX 01 00:%02d:%02d\n", i + 1, i * 10 / 75,
                      i * 10 % 75);
            sheet += line;
        }
        PutFile(base + "\\\xE9.bin", Noise(tracks * 10, 9));
        const std::string cue = base + "\\" + std::to_string(tracks) + ".cue";
        PutFile(cue, sheet);
        ASSERT_TRUE(Insert(cue)) << tracks;
        EXPECT_EQ(Status(m_device, MCI_STATUS_NUMBER_OF_TRACKS), static_cast<DWORD>(tracks));
        EXPECT_EQ(PlayRange(m_device, MCI_FROM, MakeTmsf(tracks, 0, 0, 0)) == 0, tracks > 0);
        ASSERT_TRUE(tracks == 0 || Send(m_device, MCI_STOP) == 0);
    }
    const std::string folder = base + "\\many";
    CreateDirectoryA(folder.c_str(), nullptr);
    DeleteFileA((folder + "\\200.wav").c_str());
    for (int i = 0; i < 101; ++i) {
        PutFile(folder + "\\" + std::to_string(100 + i) + ".wav", Wav(Noise(4, 7)));
        if (i < 99) continue;
        ASSERT_TRUE(Insert(i == 99 ? folder : folder + "\\"));
        EXPECT_EQ(Status(m_device, MCI_STATUS_NUMBER_OF_TRACKS), i + 1u);
        EXPECT_EQ(PlayRange(m_device, MCI_FROM | MCI_WAIT, MakeTmsf(i + 1, 0, 0, 0)), 0u);
        EXPECT_EQ(Status(m_device, MCI_STATUS_CURRENT_TRACK), i + 1u);
    }
}

TEST_F(Drive, MannersForTrials) {
    SetNumber(kDiscDriveStall, 300);
    const ULONGLONG start = GetTickCount64();
    Mode(m_device);
    EXPECT_NEAR(static_cast<double>(GetTickCount64() - start), 300, 60);
    SetNumber(kDiscDriveStall, 0);
    SetNumber(kDiscDriveFailCommand, MCI_PLAY);
    SetNumber(kDiscDriveFailError, MCIERR_DEVICE_LOCKED);
    EXPECT_EQ(PlayRange(m_device, MCI_FROM, MakeTmsf(1, 0, 0, 0)),
              static_cast<DWORD>(MCIERR_DEVICE_LOCKED));
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_STOP));
    SetNumber(kDiscDriveFailCommand, MCI_OPEN);
    EXPECT_EQ(OpenDevice("D:\\", MCI_OPEN_SHAREABLE, "fails"), kNoDevice);
    SetNumber(kDiscDriveFailCommand, 0);

    const std::string log = TempFolder() + "\\commands.txt";
    DeleteFileA(log.c_str());
    SetText(kDiscDriveLogFile, log);
    SetNumber(kDiscDriveNoNotify, 1);
    SetNumber(kDiscDriveStayPlaying, 1);
    ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM | MCI_TO, MakeTmsf(3, 0, 2, 60),
                        MakeTmsf(3, 0, 3, 0)),
              0u);
    EXPECT_EQ(NextNotify(900), 0u);
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_PLAY)) << "although it has ended";
    EXPECT_EQ(Status(m_device, MCI_STATUS_POSITION), MakeTmsf(3, 0, 3, 0));
    EXPECT_EQ(Send(m_device, MCI_STOP), 0u);
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_STOP));
    std::stringstream lines;
    lines << std::ifstream(log).rdbuf();
    EXPECT_NE(lines.str().find(" play flags=0000000d a=3c020003 b=30003 -> 0"), std::string::npos)
        << lines.str();
}

TEST_F(Drive, AStaleTableOfContentsLastsUntilTheNextOpen) {
    const std::string one = TempFolder() + "\\one";
    CreateDirectoryA(one.c_str(), nullptr);
    PutFile(one + "\\1.wav", Wav(Noise(75, 8)));
    SetNumber(kDiscDriveStaleToc, 1);
    ASSERT_TRUE(Insert(one));
    EXPECT_EQ(Status(m_device, MCI_STATUS_NUMBER_OF_TRACKS), 3u) << "the disc before";
    EXPECT_EQ(PlayRange(m_device, MCI_FROM, MakeTmsf(3, 0, 0, 0)), 0u) << "plays nothing";
    CloseDevice(m_device);
    m_device = OpenDevice("D:");
    ASSERT_NE(m_device, kNoDevice);
    EXPECT_EQ(Status(m_device, MCI_STATUS_NUMBER_OF_TRACKS), 1u);
}

TEST_F(Drive, PlaysOnWhenItsLastProgramHasLeft) {
    ASSERT_EQ(PlayRange(m_device, MCI_NOTIFY | MCI_FROM, MakeTmsf(1, 0, 0, 0)), 0u);
    CloseDevice(m_device);
    EXPECT_EQ(NextNotify(200), static_cast<DWORD>(MCI_NOTIFY_ABORTED));
    Sleep(300);
    m_device = OpenDevice("D:");
    ASSERT_NE(m_device, kNoDevice);
    EXPECT_EQ(Mode(m_device), static_cast<DWORD>(MCI_MODE_PLAY));
    EXPECT_NE(Status(m_device, MCI_STATUS_POSITION), MakeMsf(0, 2, 0));
}

TEST_F(Drive, AProcessMayEndWhilePlaying) {
    char command[MAX_PATH + 40] = "\"";
    GetModuleFileNameA(nullptr, command + 1, MAX_PATH);
    lstrcatA(command, "\" --gtest_filter=Drive.AProcess*");
    SetEnvironmentVariableA(kGuest, "1");
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION guest;
    ASSERT_TRUE(CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               &startup, &guest));
    EXPECT_EQ(WaitForSingleObject(guest.hProcess, 10000), WAIT_OBJECT_0) << "it hangs";
    DWORD code = 0;
    GetExitCodeProcess(guest.hProcess, &code);
    EXPECT_EQ(code, 7u);
    TerminateProcess(guest.hProcess, 9);
    CloseHandle(guest.hProcess);
    CloseHandle(guest.hThread);
}
