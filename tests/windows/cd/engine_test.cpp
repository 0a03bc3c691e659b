// The engine over a drive of the test's making: slow, silent, stuck, failing, crashing.
#include "engine_kit.h"

#include <mmsystem.h>

#include <algorithm>
#include <cstring>

static const FakeDisc s_short = {{40, 50, 60}, "1000001"};

static Tmsf At(uint32_t track, uint32_t seconds) {
    return MakeTmsf(track, seconds / 60, seconds % 60, 0);
}

TEST_F(Engine, EndsOfPlayAreFoundWithoutNoticeAndOnADriveThatSaysItPlays) {
    SetCdNumber("Programmed", 1);
    SetCdNumber("AutoExit", 1);
    for (uint32_t modeAtEnd : {kModeStop, kModePlay}) {
        UseFake(s_short);
        ASSERT_TRUE(Start());
        Do(kCdRecordChanged); // a disc gets its program when it is looked up again
        Do(kCdPlay);
        EXPECT_EQ(s_fake.Played().to, At(1, 40));
        for (uint32_t track = 1; track <= 3; ++track) {
            EXPECT_EQ(Now().track, track);
            s_fake.position = s_fake.Played().to;
            s_fake.mode = modeAtEnd;
            Poll();
            Poll();
        }
        EXPECT_EQ(s_fake.plays, 3);
        EXPECT_FALSE(CdIsBusy());
        EXPECT_EQ(s_fake.mode, static_cast<uint32_t>(kModeStop)) << "it is told to stop";
        m_recorder.Pump();
        EXPECT_EQ(m_recorder.closes, 1);
        m_recorder.closes = 0;
        Stop();
    }
}

TEST_F(Engine, NoticesOfOneEndStepOnceAndGiveWayToWhatWasAskedMeanwhile) {
    SetCdNumber("Programmed", 1);
    for (const UINT asked : {0u, UINT{kCdStop}, UINT{kCdPlayEntry}}) {
        UseFake(s_short);
        ASSERT_TRUE(Start());
        Do(kCdRecordChanged);
        Do(kCdPlay);
        s_fake.mode = kModeStop;
        s_fake.stallMs = 200; // so that all stand in the queue before the first is carried out
        for (int i = 0; i < 3; ++i)
            PostMessageA(EngineWindow(), MM_MCINOTIFY, MCI_NOTIFY_SUCCESSFUL, 0);
        if (asked) PostCdCommand(asked, 2);
        Sleep(50);
        s_fake.stallMs = 0;
        Drain();
        EXPECT_EQ(Now().track, asked == kCdStop ? 0 : asked ? 3 : 2) << asked;
        EXPECT_EQ(s_fake.plays, asked == kCdStop ? 1 : 2) << asked;
        Stop();
    }
}

// A drive that stalls keeps nobody waiting but the engine; at the stop its thread is killed and
// forgotten, and the next one runs.
TEST_F(Engine, StallingDrive) {
    UseFake(s_short);
    ASSERT_TRUE(Start());
    CDInfoRecord record = Record();
    s_fake.stallMs = 60000;
    PostCdCommand(kCdPlay, 1);
    PostMessageA(EngineWindow(), WM_TIMER, 700, 0);
    std::vector<DWORD> times;
    for (int i = 0; i < 30; ++i) {
        const DWORD start = GetTickCount();
        ++record.revision;
        SetCdRecord(record);
        SetCdPlayFlags(i & 1 ? kPlayIntro : kPlayRepeat);
        EXPECT_EQ(Now().trackCount, 3);
        times.push_back(GetTickCount() - start);
        Sleep(10);
    }
    std::sort(times.begin(), times.end());
    EXPECT_LT(times[15], 50u);
    EXPECT_LT(times[29], 2000u) << "the machine may have been busy, but no call is that slow";
    EXPECT_EQ(Record().revision, record.revision);

    const DWORD start = GetTickCount();
    Stop();
    EXPECT_LT(GetTickCount() - start, 3500u) << "two seconds are what a hung one may cost";
    s_fake.stallMs = 0;
    EXPECT_EQ(CdDriveLetter(), 'D');
    EXPECT_EQ(CdIdentity(), 0u);
    EXPECT_FALSE(GetCdRecord(&record));
    EXPECT_EQ(SetCdPlayFlags(kPlayRepeat), 0u);
    EXPECT_FALSE(RegisterCdWindow(m_recorder.window));
    EXPECT_FALSE(SetCdRecord(record));
    ASSERT_TRUE(Start());
    Do(kCdPlay, 2);
    EXPECT_EQ(Now().track, 2);
}

TEST_F(Engine, FaultInADriverEndsTheEngineAloneAndClosesOnItsThread) {
    UseFake(s_short);
    ASSERT_TRUE(Start());
    s_fake.crash = 1;
    PostMessageA(EngineWindow(), WM_TIMER, 700, 0);
    ASSERT_TRUE(WaitUntil([] { return ComponentThreadEnded(CdEngineThread()); }));
    ASSERT_TRUE(WaitUntil([] { return s_fake.opens == 0; }));
    EXPECT_EQ(s_fake.closedBy, s_fake.openedBy);
    char text[64] = "";
    ReadRegString(kUserRoot, kSettingsRoot, "LastException", text, sizeof text);
    EXPECT_STREQ(text, "CDPlayrWindow");
    Stop();
    EXPECT_FALSE(CdIsBusy());
    ASSERT_TRUE(Start());
    EXPECT_EQ(Now().trackCount, 3);
}

TEST_F(Engine, EveryCallToTheDeviceFailingInTurn) {
    const int faults = ForEachFault([this](NthCall& calls) {
        UseFake(s_short);
        s_fake.calls = calls;
        if (Start()) {
            for (uint32_t command : {kCdPlay, kCdNext, kCdPause, kCdPause, kCdSeek, kCdPrevious,
                                     kCdRecordChanged, kCdStop, kCdEject}) {
                Do(command);
                Poll();
            }
            Do(kCdEject);
            Poll();
            SetSharedBits(SHARED_FIELD(CommandFlags), kCommandRefresh);
            Poll();
            calls.count = s_fake.calls.count;
            s_fake.calls = NthCall{};
            for (int i = 0; i < 3; ++i)
                Poll();
            if (s_fake.mode == kModeOpen) { // the door did not hear one of the two
                Do(kCdEject);
                Poll();
            }
            Do(kCdPlay, 2);
            const CdSnapshot now = Now();
            EXPECT_TRUE(now.track == 2 && now.trackCount == 3 && now.busy && !now.paused)
                << "call " << calls.failAt << " (" << s_fake.failed << "): mode " << s_fake.mode
                << " track " << now.track << " of " << now.trackCount;
            EXPECT_LE(s_fake.opens, 2);
        }
        calls.count = std::max(calls.count, s_fake.calls.count);
        Stop();
    });
    RecordProperty("calls", faults);
    EXPECT_GT(faults, 100);
}

TEST_F(Engine, RequestsOfOtherProcesses) {
    UseFake(s_short);
    SharedBlock->CommandFlags = kCommandNoUi;
    SetCdNumber("AutoRun", 1);
    ASSERT_TRUE(Start());
    Poll();
    EXPECT_EQ(Now().track, 1) << "started by itself";
    struct {
        uint32_t track;
        int32_t skip;
        uint32_t expected;
    } const cases[] = {{2, 0, 2},          {0, 1, 3},         {0, -2, 1}, {4, 0, 1},
                       {UINT32_MAX, 0, 1}, {0, INT32_MAX, 1}, {3, 0, 3},  {0, INT32_MIN, 3}};
    for (const auto& c : cases) {
        s_fake.position = At(Now().track, 5);
        SharedBlock->RequestedTrack = c.track;
        SharedBlock->SkipCount = c.skip;
        Poll();
        EXPECT_EQ(SharedBlock->CdTrack, c.expected) << c.track << ' ' << c.skip;
    }
    EXPECT_EQ(SharedBlock->CdIdentity, 1000001u);
    EXPECT_EQ(SharedBlock->CdTrackCount, 3);
    EXPECT_EQ(SharedBlock->CdMode, static_cast<uint32_t>(kModePlay));
    EXPECT_STREQ(SharedBlock->CdTrackTitle, "Track 3");

    Do(kCdStop);
    const int plays = s_fake.plays;
    for (const int drive : {0 + 'Q', 0 + '?', 0xFFAD, 0}) { // no CD drives
        SharedBlock->CommandDrive = static_cast<uint16_t>(drive);
        SetSharedBits(SHARED_FIELD(CommandFlags), kCommandPlayCd);
        Poll();
        EXPECT_EQ(s_fake.plays, plays) << drive;
    }
    EXPECT_EQ(SharedBlock->CommandFlags, kCommandNoUi) << "other bits stay";
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

TEST_F(Engine, DefaultsNeverReplaceAChoiceAndOtherPlayersAreLeftAlone) {
    ASSERT_TRUE(InstallDrive(BuildFolder())); // without a CD drive a message would wait for a user
    WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveLetter, "D");
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
