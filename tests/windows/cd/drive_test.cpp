// The engine over the disc drive's driver: real commands, real notices, real time.
#include "engine_kit.h"

#include "tests/support/tone_disc.h"

class EngineOnDriver : public Engine {
protected:
    static void SetUpTestSuite() {
        ASSERT_TRUE(InstallDrive(BuildFolder())); // it stays loaded from the first use on
        s_three = MakeToneDisc(kProgramFolder, "three", {{440, 300}, {550, 300}, {660, 450}});
        s_two = MakeToneDisc(kProgramFolder, "two", {{770, 450}, {880, 450}});
    }
    void SetUp() override {
        WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveLetter, "D");
        PutImage(s_three.cue);
        CalmDrive();
        Engine::SetUp();
    }
    void TearDown() override {
        CalmDrive();
        Engine::TearDown();
    }
    // Started, with the disc read: a new disc takes the drive 2.5 s.
    bool StartWithDisc() {
        return Start() && WaitUntil([] { return Now().trackCount == 3; });
    }
    static ToneDisc s_three, s_two;
};
ToneDisc EngineOnDriver::s_three, EngineOnDriver::s_two;

TEST_F(EngineOnDriver, ObeysEveryCommand) {
    ASSERT_TRUE(StartWithDisc());
    CdSnapshot now = Now();
    EXPECT_EQ(now.drive, 'D');
    EXPECT_EQ(now.discTotal, 4 + 4 + 6);
    EXPECT_EQ(Record().trackStarts[3], 150u + 1050);

    Do(kCdPlay);
    now = Now();
    EXPECT_EQ(now.track, 1);
    EXPECT_TRUE(now.busy && !now.paused);
    Do(kCdNext, 1);
    EXPECT_EQ(Now().track, 2);
    Do(kCdPrevious, 1);
    Do(kCdPrevious, 1);
    EXPECT_EQ(Now().track, 3) << "from track 1 to the last";
    Do(kCdSeek, 3);
    EXPECT_EQ(Now().elapsed, 3);
    for (int asStopped : {0, 1}) {
        SetDrive(kDiscDrivePauseAsStopped, asStopped);
        Do(kCdPause);
        Sleep(1100); // a poll
        now = Now();
        EXPECT_TRUE(now.busy && now.paused && now.track == 3 && now.elapsed == 3);
        Do(kCdPause);
        now = Now();
        EXPECT_TRUE(now.busy && !now.paused && now.track == 3);
    }
    Do(kCdPlay, 1);
    EXPECT_TRUE(WaitUntil([] { return Now().track == 2; })) << "the disc goes on by itself";
    Do(kCdStop);
    now = Now();
    EXPECT_FALSE(now.busy);
    EXPECT_EQ(now.track, 0);
    m_recorder.Pump();
    EXPECT_GT(m_recorder.changes, 10);
}

TEST_F(EngineOnDriver, EndOfTheDiscWithAndWithoutNotice) {
    ASSERT_TRUE(StartWithDisc());
    for (int quiet : {0, 1}) {
        SetDrive(kDiscDriveNoNotify, quiet);
        SetDrive(kDiscDriveStayPlaying, quiet);
        Do(kCdPlay, 3);
        Do(kCdSeek, 4);
        const DWORD start = GetTickCount();
        EXPECT_TRUE(WaitUntil([] { return !CdIsBusy(); }));
        const DWORD took = GetTickCount() - start;
        EXPECT_GT(took, 1800u);
        // Two seconds of music are left; two poll periods more; a third would pass 5 s.
        EXPECT_LT(took, 2000u + 2 * kPollMinMs + 700) << quiet;
    }
}

TEST_F(EngineOnDriver, DoorAndDiscs) {
    SetDrive(kDiscDriveStaleToc, 1); // an open device tells the disc that it began with
    ASSERT_TRUE(StartWithDisc());
    const uint32_t identity = CdIdentity();
    Do(kCdPlay);
    Do(kCdEject);
    EXPECT_TRUE(WaitUntil([] { return !strcmp(Now().title, "Drive Door is Open"); }));
    EXPECT_STREQ(Now().trackArtist, "Insert Audio CD");
    EXPECT_EQ(Now().trackCount, 0);
    EXPECT_FALSE(CdIsBusy());
    Do(kCdEject);
    EXPECT_TRUE(WaitUntil([] { return Now().trackCount == 3; }));
    EXPECT_EQ(CdIdentity(), identity);

    Do(kCdPlay);
    EXPECT_EQ(DiscImageDrive(), 'D');
    EXPECT_TRUE(PutDiscImage(s_two.cue.c_str()));
    EXPECT_TRUE(WaitUntil([] { return Now().trackCount == 2; }));
    EXPECT_FALSE(CdIsBusy());
    EXPECT_NE(CdIdentity(), identity);
    EXPECT_TRUE(EjectDiscImage());
    EXPECT_TRUE(WaitUntil([] { return Now().trackCount == 0; }));
    PutImage(s_three.cue); // swapped behind the engine's back
    EXPECT_TRUE(WaitUntil([] { return Now().trackCount == 3; }));
    EXPECT_EQ(CdIdentity(), identity);
}

TEST_F(EngineOnDriver, DrivesAreTheSystemsAndTheDriversOwn) {
    WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveLetter, "q"); // no such drive in the system
    EXPECT_TRUE(IsCdDrive('Q'));
    EXPECT_TRUE(CdDriveMask() >> ('Q' - 'A') & 1);
    EXPECT_FALSE(IsCdDrive('R'));
    EXPECT_EQ(ChooseCdDrive('q'), 'Q');
}

// ---- settings

static uint32_t Stored(const char* name) {
    return ReadRegDword(kUserRoot, kCdKey, name);
}

static const char* const kPlayer = "AudioCD\\shell\\play\\command";

static std::string Player() {
    char text[300] = "";
    ReadRegString(kClassesRoot, kPlayer, "", text, sizeof text);
    return text;
}

TEST_F(EngineOnDriver, OptionsModesAndDriveAreSavedAsTheyChange) {
    ASSERT_TRUE(StartWithDisc());
    EXPECT_EQ(SetCdPlayFlags(kPlayRandom | kPlayTrackLock | 0x100), kPlayRandom | kPlayTrackLock);
    EXPECT_EQ(Stored("Random"), 1u);
    Do(kCdIntroLength, 25);
    Do(kCdOptions, kOptionAutoEject | kOptionAutoRun);
    EXPECT_EQ(Stored("IntroLength"), 25u);
    EXPECT_EQ(Stored("AutoEject"), 1u);
    EXPECT_EQ(Stored("AutoRun"), 1u);
    EXPECT_EQ(Stored("StopExit"), 0u);
    Stop();
    ASSERT_TRUE(Start());
    EXPECT_EQ(CdPlayFlags(), static_cast<uint32_t>(kPlayRandom)) << "the lock is not kept";
    EXPECT_TRUE(WaitUntil([] { return CdIsBusy() != 0; })) << "AutoRun";
    EXPECT_EQ(Now().listCount, 3);
}

TEST_F(EngineOnDriver, DefaultsNeverReplaceAChoiceAndOtherPlayersAreLeftAlone) {
    DeleteRegTree(kUserRoot, kCdKey);
    SetCdNumber("IntroLength", 17);
    ASSERT_TRUE(SeedCdDefaults(nullptr, 1));
    EXPECT_EQ(Stored("IntroLength"), 17u);
    EXPECT_EQ(Stored("AutoRun"), 1u);
    EXPECT_EQ(Stored("UseAsDefault"), 1u);
    EXPECT_EQ(Stored("Drive"), static_cast<uint32_t>(ChooseCdDrive('C')));
    EXPECT_NE(Player().find(".exe /play %1"), std::string::npos) << Player();
    const std::string ours = Player();
    const struct {
        std::string before, after;
    } cases[] = {{"C:\\other.exe %1", "C:\\other.exe %1"},
                 {"C:\\Old\\TonVue.exe /play %1", "CDPlayer /play %1"},
                 {ours, "CDPlayer /play %1"}};
    for (const auto& c : cases) {
        WriteRegString(kClassesRoot, kPlayer, "", c.before.c_str());
        SeedCdDefaults(nullptr, 0);
        EXPECT_EQ(Player(), c.after) << c.before;
    }
    EXPECT_EQ(Stored("UseAsDefault"), 0u);
    // Values of a wrong type read as missing.
    WriteRegString(kUserRoot, kCdKey, "Repeat", "yes");
    CDEngineSettings settings;
    LoadCdSettings(&settings);
    EXPECT_EQ(settings.Repeat, 0u);
    EXPECT_EQ(settings.IntroLength, 17u);
}
