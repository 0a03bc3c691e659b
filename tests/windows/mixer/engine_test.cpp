// The mixer engine over a fake card and a fake output.
#include "core/commands.h"
#include "core/settings.h"
#include "mixer/engine_win.h"
#include "tests/windows/mixer/fake_mixer.h"
#include "tests/windows/mixer/fake_output.h"

#include <gtest/gtest.h>

#include <functional>

constexpr const char* kKey = "Software\\Tonvista\\Mixer";
constexpr DWORD kVolume = MIXERCONTROL_CONTROLTYPE_VOLUME, kMute = MIXERCONTROL_CONTROLTYPE_MUTE;
constexpr DWORD kMux = MIXERCONTROL_CONTROLTYPE_MUX, kMixer = MIXERCONTROL_CONTROLTYPE_MIXER;
constexpr DWORD kSpeakers = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
constexpr DWORD kRecording = MIXERLINE_COMPONENTTYPE_DST_WAVEIN;
constexpr int kAsk = -1;

namespace {
class Engine : public testing::Test {
protected:
    void SetUp() override {
        ResetFake();
        Outputs = FakeOutputs{};
        DeleteRegTree(kUserRoot, kKey);
        Outputs.ids = {L"{0}.first", L"{0}.second"};
        for (HWND& window : windows)
            window = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                     nullptr);
    }
    void TearDown() override {
        Stop();
        for (HWND window : windows)
            DestroyWindow(window);
        EXPECT_EQ(Fake.open, 0);
        EXPECT_EQ(Outputs.objects + Outputs.listeners, 0);
    }
    static int Start() {
        return StartComponentThread(MixerEngineThread(), GetModuleHandleA(nullptr), nullptr);
    }
    static void Stop() { StopComponentThread(MixerEngineThread()); }
    // Notices that a window has got, when the engine has handled all that was posted to it before,
    // and what that posted in turn.
    int Notices(int window = 0) const {
        for (int i = 0; i < 3; ++i, Sleep(20))
            SendMessageA(MixerEngineThread()->Window, WM_NULL, 0, 0);
        int count = 0;
        MSG message;
        while (PeekMessageA(&message, windows[window], WM_COMMAND, WM_COMMAND, PM_REMOVE))
            count += message.wParam == kNotifyMixer && !message.lParam;
        return count;
    }
    static uint32_t Stored() { return ReadRegDword(kUserRoot, kKey, "Device"); }
    static std::string StoredOutput() {
        char id[260] = "";
        ReadRegString(kUserRoot, kKey, "SystemVolume", id, sizeof id);
        return id;
    }
    HWND windows[7] = {};
};
using Values = std::vector<DWORD>;
} // namespace

TEST_F(Engine, FadersReadTheAverageAndSetAllTheSame) {
    ASSERT_TRUE(Start());
    const struct {
        FakeControl control;
        int percent, before;
        Values after;
    } cases[] = {{{kVolume, {0, 65535}}, 50, 49, {32767, 32767}},
                 {{kVolume, {65535}, 0, 65535, true}, 0, 100, {0}},
                 {{kVolume, {5, 5, 12, 12, 12, 12}, 5, 12, false, {7, 8, 9}}, 20, 57, Values(6, 6)},
                 {{kVolume, {9, 9}, 9, 9}, 100, 0, {9, 9}}}; // an empty range
    for (const auto& c : cases) {
        FakeControl* control = FindFake(SpeakerLine(), kVolume);
        const DWORD id = control->id;
        *control = c.control;
        control->id = id;
        Fake.writes = 0;
        EXPECT_EQ(MixerMasterVolume(c.percent), c.before);
        EXPECT_EQ(control->values, c.after);
        EXPECT_EQ(Fake.writes, control->maximum > control->minimum);
    }
    EXPECT_EQ(MixerMasterBass(79), 25);
    EXPECT_EQ(MixerMasterTreble(kAsk), 75);
    EXPECT_EQ(MixerMasterBass(kAsk), 78) << "cut off twice";
    EXPECT_EQ(MixerLineVolume(SourceLine(0, 2), 10), 45);
    EXPECT_EQ(FindFake(SourceLine(0, 2), kVolume)->values, Values(2, 6553));
    FindFake(SpeakerLine(), MIXERCONTROL_CONTROLTYPE_BASS)->type = 0;
    EXPECT_TRUE(!MixerHasBass() && MixerHasTreble());
    FindFake(SpeakerLine(), kVolume)->items.assign(0x10000, 1); // far more than fits anywhere
    EXPECT_EQ(MixerMasterBass(10) + MixerMasterVolume(10), 0);
}

// A source's selection and mute, before and after, for each kind of destination. -1: no such
// control. The source in question is the second of three.
TEST_F(Engine, SourcesAreSwitchedBySelectionAndMute) {
    ASSERT_TRUE(Start());
    const struct {
        const char* what;
        DWORD type; // of the destination's list, 0 none
        int request, selected, muted, on;
        Values list; // afterwards
        int mutedAfter, told;
    } cases[] = {
        {"asked, as it should be", kMux, kAsk, 1, 0, 1, {0, 1, 0}, 0, 0},
        {"asked, muted though selected", kMux, kAsk, 1, 1, 0, {0, 1, 0}, 0, 0},
        {"asked, not selected", kMux, kAsk, 0, 0, 0, {1, 0, 0}, 1, 0},
        {"one of them on", kMux, 1, 0, 1, 0, {0, 1, 0}, 1, 1},
        {"one of them off", kMux, 0, 1, 0, 1, {1, 0, 1}, 0, 1},
        {"on among others", kMixer, 1, 0, 0, 0, {1, 1, 0}, 1, 1},
        {"off among others", kMixer, 0, 1, 0, 1, {0, 0, 0}, 0, 1},
        {"selection alone", kMixer, 0, 1, -1, 1, {0, 0, 0}, -1, 1},
        {"mute alone, on", 0, 1, -1, 1, 0, {}, 0, 1},
        {"mute alone, asked", 0, kAsk, -1, 1, 0, {}, 1, 0},
        {"not listed", kMixer, 1, -1, 1, 0, {0, 0, 0}, 0, 1},
        {"neither", 0, 1, -1, -1, 0, {}, -1, 0},
    };
    RegisterMixerWindow(windows[0]);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ResetFake();
        Fake.open = 1;
        const DWORD source = SourceLine(1, 0);
        FakeControl* list = FindFake(Fake.cards[0].destinations[1].line.id, kMux);
        list->type = c.type;
        list->items = {SourceLine(1, 1), c.selected < 0 ? 0x1234 : source, 0x4321};
        list->values = {c.selected == 0, c.selected == 1, 0};
        FakeControl* mute = FindFake(source, kMute);
        mute->values[0] = c.muted > 0;
        if (c.muted < 0) mute->type = 0;
        EXPECT_EQ(MixerSourceOn(kRecording, source, c.request), c.on);
        EXPECT_EQ(c.type ? list->values : Values{}, c.list);
        EXPECT_EQ(c.muted < 0 ? -1 : static_cast<int>(mute->values[0]), c.mutedAfter);
        EXPECT_EQ(Notices(), c.told);
    }
}

TEST_F(Engine, MasterSwitchAndSources) {
    ASSERT_TRUE(Start());
    for (const auto& [request, before] : {std::pair{kAsk, 1}, {0, 1}, {7, 0}, {1, 0}, {kAsk, 1}})
        EXPECT_EQ(MixerMasterOn(request), before);
    const std::string longName(60, 'x');
    for (int i = 0; i < 27; ++i)
        AddSource(0, PlainSource(longName));
    MixerSource sources[24];
    EXPECT_EQ(MixerSources(kSpeakers, sources, 24), 30);
    EXPECT_STREQ(sources[2].name, "CD Audio");
    EXPECT_EQ(sources[2].lineId, SourceLine(0, 2));
    EXPECT_EQ(sources[23].name, longName.substr(0, 31));
    EXPECT_EQ(MixerSources(MIXERLINE_COMPONENTTYPE_DST_DIGITAL, sources, 24), 0);
    Fake.cards[0].destinations[1].toldSources = 0xFFFFFFFF; // of which two are there
    EXPECT_EQ(MixerSources(kRecording, sources, 24), 0);
    EXPECT_NE(MixerLastError(), 0u);
}

// Each call of each operation fails once; then the card is gone, then the engine is off.
TEST_F(Engine, WhatFailsReadsZeroAndChangesNothing) {
    ASSERT_TRUE(Start());
    MixerSource sources[4];
    const DWORD line = SourceLine(1, 0);
    const struct {
        std::function<int()> operation;
        int calls;
    } operations[] = {{[] { return MixerMasterVolume(70); }, 4},
                      {[=] { return MixerLineVolume(line, 70); }, 4},
                      {[] { return MixerMasterOn(1); }, 4},
                      {[&] { return MixerSources(kSpeakers, sources, 4); }, 4}};
    for (const auto& [operation, calls] : operations) {
        for (int call = 1; call <= calls; ++call) {
            Fake.failCall = call;
            Fake.writes = 0;
            EXPECT_EQ(operation() + Fake.writes + Fake.failCall, 0) << call;
            EXPECT_EQ(MixerLastError(), static_cast<uint32_t>(MMSYSERR_ERROR));
        }
        EXPECT_NE(operation(), 0);
        EXPECT_EQ(MixerLastError(), 0u);
    }
    EXPECT_EQ(MixerSourceOn(kRecording, line, kAsk), 1);
    Fake.removed = true;
    for (const auto& [operation, calls] : operations)
        EXPECT_EQ(operation() + MixerSourceOn(kRecording, line, 1), 0);
    Fake.removed = false;
    Stop();
    for (const auto& [operation, calls] : operations)
        EXPECT_EQ(operation(), 0);
    EXPECT_TRUE(!PostMixerCommand(kMixerUseDevice, 0) && !RegisterMixerWindow(windows[0]));
    Fake.cards[0].refusesOpen = true;
    EXPECT_FALSE(Start());
}

TEST_F(Engine, TellsFiveWindowsOfChangesOnly) {
    ASSERT_TRUE(Start());
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(RegisterMixerWindow(windows[i]), i < 5);
    DestroyWindow(windows[1]); // without a goodbye
    EXPECT_TRUE(RegisterMixerWindow(windows[5]));
    EXPECT_TRUE(UnregisterMixerWindow(windows[2]) && !UnregisterMixerWindow(windows[2]));
    MixerMasterVolume(50);
    for (const int window : {0, 3, 4, 5})
        EXPECT_EQ(Notices(window), 1) << window;
    EXPECT_EQ(Notices(2) + Notices(6), 0);
    MixerMasterVolume(50);
    MixerMasterVolume(kAsk);
    EXPECT_EQ(Notices(), 0) << "nothing has changed";
    for (const UINT message : {MM_MIXM_LINE_CHANGE, MM_MIXM_CONTROL_CHANGE}) {
        PostMessageA(Fake.window, message, 0, 0);
        EXPECT_EQ(Notices(), 1);
    }
    // A driver that tells of every write: questions come to rest.
    Fake.notifies = true;
    FindFake(SourceLine(1, 0), kMute)->values[0] = 1;
    for (const int notices : {1, 0, 0}) {
        MixerSourceOn(kRecording, SourceLine(1, 0), kAsk);
        EXPECT_EQ(Notices(), notices);
    }
}

TEST_F(Engine, AnotherDeviceForThisRun) {
    Fake.cards.push_back({"Second Card", Fake.cards[0].destinations});
    Fake.cards[1].destinations[0].line.controls[0].values = {65535, 65535};
    Fake.cards.push_back({"Busy Card", {}, true});
    SeedMixerDefaults();
    WriteRegString(kUserRoot, kKey, "SystemVolume", "{0}.gone");
    ASSERT_TRUE(Start()) << "with the device, since that output is gone";
    RegisterMixerWindow(windows[0]);
    ChooseMixer(1);
    EXPECT_EQ(Notices(), 1);
    EXPECT_TRUE(Stored() == 0 && CurrentMixerChoice() == 0 && StoredOutput().empty());
    for (const LPARAM index : {2, 3, -1}) // busy, none, none
        PostMixerCommand(kMixerUseDevice, index);
    EXPECT_EQ(Notices(), 0);
    EXPECT_TRUE(Fake.open == 1 && MixerMasterVolume(kAsk) == 100);
    Stop();
    ChooseMixer(1); // for the next start
    SeedMixerDefaults();
    EXPECT_TRUE(Stored() == 1 && CurrentMixerChoice() == 1) << "defaults replace no choice";
    ASSERT_TRUE(Start());
    EXPECT_EQ(Fake.openCard, 1);
}

TEST_F(Engine, SystemVolume) {
    char name[64];
    ASSERT_EQ(CountMixerChoices(), 3);
    EXPECT_TRUE(MixerChoiceName(0, name, sizeof name) && !strcmp(name, "Fake Card"));
    EXPECT_TRUE(MixerChoiceName(2, name, sizeof name));
    EXPECT_STREQ(name, "System volume: {0}.SECOND");
    EXPECT_FALSE(MixerChoiceName(3, name, sizeof name) || MixerChoiceName(-1, name, sizeof name));
    ASSERT_TRUE(Start());
    RegisterMixerWindow(windows[0]);
    ChooseMixer(2);
    EXPECT_EQ(Notices(), 1);
    EXPECT_TRUE(Fake.open == 0 && StoredOutput() == "{0}.second" && CurrentMixerChoice() == 2);
    for (const int percent : {57, 99, 100, 0, 29}) {
        MixerMasterVolume(percent);
        EXPECT_EQ(MixerMasterVolume(kAsk), percent);
    }
    EXPECT_GE(Notices(), 1);
    EXPECT_TRUE(MixerMasterOn(0) && !MixerMasterOn(kAsk) && Outputs.muted);
    EXPECT_EQ(MixerMasterBass(50) + MixerMasterTreble(50) + MixerHasBass() + MixerHasTreble() +
                  MixerSources(kSpeakers, nullptr, 0) + MixerLineVolume(SourceLine(0, 0), 9) +
                  MixerSourceOn(kSpeakers, SourceLine(0, 0), 1),
              0);
    Notices();
    Outputs.listener->OnNotify(nullptr); // somebody else moved it
    EXPECT_EQ(Notices(), 1);
    ++Outputs.plugging;
    EXPECT_EQ(MixerMasterVolume(10) + MixerMasterOn(1), 0);
    EXPECT_EQ(MixerLastError(), static_cast<uint32_t>(E_FAIL));
    PostMessageA(MixerEngineThread()->Window, WM_DEVICECHANGE, 0, 0);
    EXPECT_EQ(Notices(), 1);
    EXPECT_EQ(MixerMasterVolume(kAsk), 29) << "it is back";
    Stop();
    ASSERT_TRUE(Start());
    EXPECT_TRUE(Outputs.listeners == 1 && Fake.open == 0) << "it counts before the device";
    ChooseMixer(0);
    Notices();
    EXPECT_TRUE(Outputs.listeners == 0 && Fake.open == 1 && StoredOutput().empty());
}

static DWORD WINAPI AskMaster(void*) {
    return static_cast<DWORD>(MixerMasterVolume(kAsk));
}

// Another device is chosen while a call into the old one has not come back.
TEST_F(Engine, OutputInUseElsewhereIsKeptUntilThen) {
    WriteRegString(kUserRoot, kKey, "SystemVolume", "{0}.first");
    Outputs.block = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    ASSERT_TRUE(Start());
    DWORD answer = 0;
    HANDLE thread = CreateThread(nullptr, 0, AskMaster, nullptr, 0, nullptr);
    for (int i = 0; i < 5000 && !Outputs.waiting; ++i)
        Sleep(1);
    ChooseMixer(0);
    Notices();
    EXPECT_TRUE(Fake.open == 1 && Outputs.objects == 1);
    SetEvent(Outputs.block);
    WaitForSingleObject(thread, INFINITE);
    GetExitCodeThread(thread, &answer);
    EXPECT_TRUE(answer == 50 && Outputs.objects == 0);
    CloseHandle(thread);
    CloseHandle(Outputs.block);
}

static DWORD WINAPI AnswerMessage(void*) {
    HWND box = nullptr;
    for (int i = 0; i < 500 && !box; ++i, Sleep(20))
        box = FindWindowA("#32770", "Tonvista Install Error");
    return box && PostMessageA(box, WM_COMMAND, IDOK, 0);
}

TEST_F(Engine, NoDeviceIsSaidAtInstallation) {
    Fake.cards.clear();
    HANDLE thread = CreateThread(nullptr, 0, AnswerMessage, nullptr, 0, nullptr);
    DWORD answered = 0;
    SeedMixerDefaults();
    WaitForSingleObject(thread, INFINITE);
    GetExitCodeThread(thread, &answered);
    CloseHandle(thread);
    EXPECT_TRUE(answered);
    EXPECT_FALSE(RegValueExists(kUserRoot, kKey, "Device"));
}
