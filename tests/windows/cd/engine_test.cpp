// The engine over a drive of the test's making: stuck, failing, asked for nonsense.
#include "engine_kit.h"

#include <mmsystem.h>

#include <algorithm>

static const FakeDisc s_short = {{40, 50, 60}, "1000001"};

static Tmsf At(uint32_t track, uint32_t seconds) {
    return MakeTmsf(track, seconds / 60, seconds % 60, 0);
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
    ++record.revision;
    DWORD start = GetTickCount();
    for (int i = 0; i < 30; ++i) {
        EXPECT_TRUE(SetCdRecord(record));
        SetCdPlayFlags(i & 1 ? kPlayIntro : kPlayRepeat);
        EXPECT_EQ(Now().trackCount, 3);
    }
    EXPECT_LT(GetTickCount() - start, 2000u) << "none has waited for the drive";
    EXPECT_EQ(Record().revision, record.revision);

    start = GetTickCount();
    Stop();
    EXPECT_LT(GetTickCount() - start, 3500u) << "two seconds are what a hung one may cost";
    s_fake.stallMs = 0;
    EXPECT_EQ(CdDriveLetter(), 'D');
    EXPECT_EQ(CdIdentity(), 0u);
    EXPECT_FALSE(GetCdRecord(&record));
    EXPECT_EQ(SetCdPlayFlags(kPlayRepeat), 0u);
    EXPECT_FALSE(RegisterCdWindow(m_owner));
    EXPECT_FALSE(SetCdRecord(record));
    ASSERT_TRUE(Start());
    Do(kCdPlay, 2);
    EXPECT_EQ(Now().track, 2);
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

TEST_F(Engine, RequestsOfOtherProcessesThatMakeNoSense) {
    UseFake(s_short);
    SharedBlock->CommandFlags = kCommandNoUi;
    SetCdNumber("AutoRun", 1);
    ASSERT_TRUE(Start());
    Poll();
    EXPECT_EQ(Now().track, 1) << "started by itself";
    const struct {
        uint32_t track;
        int32_t skip;
        uint32_t expected;
    } cases[] = {{4, 0, 1}, {UINT32_MAX, 0, 1}, {0, INT32_MAX, 1}, {3, 0, 3}, {0, INT32_MIN, 3}};
    for (const auto& c : cases) {
        s_fake.position = At(Now().track, 5);
        SharedBlock->RequestedTrack = c.track;
        SharedBlock->SkipCount = c.skip;
        Poll();
        EXPECT_EQ(SharedBlock->CdTrack, c.expected) << c.track << ' ' << c.skip;
    }
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
    EXPECT_NE(Player().find(".exe /play %1"), std::string::npos) << Player();
    const std::string ours = Player();
    const struct {
        std::string before, after;
    } cases[] = {{"C:\\other.exe %1", "C:\\other.exe %1"},
                 {"C:\\Old\\TonVue.exe /play %1", "CDPlayer /play %1"},
                 {"D:\\Before\\Tonvista.exe /play %1", "CDPlayer /play %1"},
                 {ours, "CDPlayer /play %1"}};
    for (const auto& c : cases) {
        WriteRegString(kClassesRoot, kPlayer, "", c.before.c_str());
        SeedCdDefaults(nullptr, 0);
        EXPECT_EQ(Player(), c.after) << c.before;
    }
    CDEngineSettings settings;
    LoadCdSettings(&settings);
    EXPECT_EQ(settings.IntroLength, 17u);
    EXPECT_TRUE(settings.AutoRun && !settings.UseAsDefault);
}
