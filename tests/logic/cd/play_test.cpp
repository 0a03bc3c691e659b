// The play list and its rules, on states made here.
#include "cd/play.h"

#include <gtest/gtest.h>

#include <vector>

static std::vector<int> s_draws; // what the generator gives, over and over
static size_t s_drawn;
static std::vector<uint32_t> s_seeds;

static RandomSource Draws(std::vector<int> draws) {
    s_draws = std::move(draws);
    s_drawn = 0;
    s_seeds.clear();
    return {[](uint32_t seed) { s_seeds.push_back(seed); },
            [] { return s_draws[s_drawn++ % s_draws.size()]; }, 4711};
}

// A disc whose tracks last so many seconds, and half a second more on the disc.
static CDInfoRecord DiscOf(const std::vector<uint32_t>& seconds) {
    CDInfoRecord record;
    record.trackCount = static_cast<uint16_t>(seconds.size());
    uint32_t at = kLeadInFrames;
    for (size_t i = 0; i < seconds.size(); ++i) {
        record.trackStarts[i] = at;
        at += seconds[i] * kFramesPerSecond + 37;
    }
    record.trackStarts[seconds.size()] = at;
    DeriveTrackSeconds(&record);
    return record;
}

static constexpr Tmsf At(uint32_t track, uint32_t second) {
    return MakeTmsf(track, second / 60, second % 60, 0);
}

static std::vector<Tmsf> Order(const CDEngineState& state) {
    std::vector<Tmsf> from;
    for (int i = 0; i < state.listCount; ++i)
        from.push_back(state.list[i].from);
    return from;
}

TEST(PlayList, ShuffleExchangesADrawnPairAHundredTimes) {
    CDEngineState state;
    state.record = DiscOf({10, 20, 30, 40});
    CDEngineSettings settings = {};
    settings.Random = 1;
    // Indexes r * 4 / 32767: (0 1), (3 0), (1 3), thirty-three times, and (0 1) once more.
    BuildPlayList(&state, settings, Draws({0, 8192, 24576, 0, 8192, 24576}));
    EXPECT_EQ(Order(state), (std::vector<Tmsf>{At(2, 0), At(4, 0), At(3, 0), At(1, 0)}));
    EXPECT_EQ(s_seeds, std::vector<uint32_t>{4711});
    EXPECT_EQ(s_drawn, 200u);
    // The largest draw takes the empty slot behind the list, never what an older list left there.
    for (uint32_t tracks : {0u, 1u, 100u}) {
        state = {};
        state.record = DiscOf(std::vector<uint32_t>(tracks, 5));
        state.list[tracks] = {At(200, 0), At(200, 0)};
        std::vector<int> draws(200, 0);
        draws[1] = 32767;
        BuildPlayList(&state, settings, Draws(draws));
        EXPECT_EQ(state.listCount, tracks);
        EXPECT_EQ(state.list[0].from, 0u);
        EXPECT_EQ(state.list[tracks].from, tracks ? At(1, 0) : 0u);
    }
}

TEST(PlayCommands, NextAndPrevious) {
    const struct {
        int random, next;
        uint32_t at; // track of the position, or index of the entry
        int32_t steps;
        uint32_t expected; // the same
        size_t builds;
    } cases[] = {
        {0, 1, 1, 1, 2, 0},   {0, 1, 4, 1, 1, 0},  {0, 1, 2, 5, 1, 0},
        {0, 1, 2, 0, 3, 0},   {0, 1, 2, -5, 1, 0}, {0, 1, 4, INT32_MAX, 3, 0}, // 65535 + 4
        {0, 0, 2, 1, 1, 0},   {0, 0, 1, 1, 4, 0},  {0, 0, 4, 0, 4, 0},
        {0, 0, 3, 4, 255, 0},                                          // 65535
        {0, 0, 3, -2, 5, 0},  {1, 1, 0, 0, 1, 0},  {1, 1, 3, 1, 0, 1}, // a new order at each pass
        {1, 1, 1, 9, 2, 0},   {1, 1, 1, -3, 1, 0}, {1, 1, 1, INT32_MAX, 0, 1},
        {1, 0, 2, 1, 1, 0},   {1, 0, 0, 1, 3, 0},  {1, 0, 1, 9, 0, 0},
        {1, 0, 9, 1, 0, 0},
    };
    for (const auto& c : cases) {
        CDEngineState state;
        state.record = DiscOf({10, 20, 30, 40});
        CDEngineSettings settings = {};
        settings.Random = c.random != 0;
        BuildPlayList(&state, settings, Draws({0}));
        state.listIndex = static_cast<uint16_t>(c.random ? c.at : 0);
        const RandomSource random = Draws({0});
        PlayEntry range;
        EXPECT_TRUE(c.next ? DecideNext(&state, settings, At(c.at, 7), c.steps, random, &range)
                           : DecidePrevious(&state, settings, At(c.at, 7), c.steps, &range));
        EXPECT_EQ(range.from, At(c.random ? c.expected + 1 : c.expected, 0))
            << c.random << ' ' << c.next << ' ' << c.at << ' ' << c.steps;
        EXPECT_EQ(s_seeds.size(), c.builds);
        EXPECT_TRUE(c.random || range.to == At(4, 40));
    }
    CDEngineState empty;
    CDEngineSettings programmed = {};
    programmed.Programmed = 1;
    PlayEntry range;
    EXPECT_FALSE(DecideNext(&empty, programmed, At(1, 0), 1, Draws({0}), &range));
    EXPECT_FALSE(DecidePrevious(&empty, programmed, At(1, 0), 1, &range));
}

TEST(PlayCommands, PlayATrackEndsListPlayAndResumeKeepsTheEntry) {
    CDEngineState state;
    state.record = DiscOf({10, 20, 30});
    CDEngineSettings settings = {};
    settings.Random = settings.Programmed = settings.Repeat = 1;
    state.listIndex = 2;
    PlayEntry range;
    for (uint32_t wrong : {4u, 100u, 258u, UINT32_MAX})
        EXPECT_FALSE(DecidePlay(&state, &settings, wrong, Draws({0}), &range)) << wrong;
    EXPECT_TRUE(settings.Random);
    ASSERT_TRUE(DecidePlay(&state, &settings, 2, Draws({0}), &range));
    EXPECT_EQ(range.from, At(2, 0));
    EXPECT_EQ(range.to, At(3, 30));
    EXPECT_EQ(PlayFlagsOf(settings), kPlayRepeat);

    state.paused = 1;
    state.pausedPosition = MakeTmsf(2, 0, 9, 12);
    ASSERT_TRUE(DecidePlay(&state, &settings, 0, Draws({0}), &range));
    EXPECT_EQ(range.from, state.pausedPosition);
    EXPECT_EQ(range.to, At(3, 30));

    EXPECT_TRUE(DecideSeek(state, At(3, 5), 125, &range));
    EXPECT_EQ(range.from, MakeTmsf(3, 2, 5, 0));
    EXPECT_FALSE(DecideSeek(state, At(3, 5), UINT32_MAX, &range));
}

TEST(Poll, IntroTrackEndAndTrackLock) {
    struct Case {
        uint32_t flags;
        uint16_t track, index, elapsed;
        uint32_t mode;
        PollAction expected;
    };
    constexpr uint32_t kIntroRepeat = kPlayIntro | kPlayRepeat,
                       kIntroRandom = kPlayIntro | kPlayRandom;
    const Case cases[] = {
        {kPlayIntro, 1, 0, 10, kModePlay, kPollNothing}, // strictly greater
        {kPlayIntro, 1, 0, 11, kModePlay, kPollNext},
        {kPlayIntro, 3, 0, 11, kModePlay, kPollStop},
        {kIntroRepeat, 3, 0, 11, kModePlay, kPollNext},
        {kIntroRandom, 3, 1, 11, kModePlay, kPollNext},
        {kIntroRandom, 1, 2, 11, kModePlay, kPollStop},
        {0, 2, 0, 19, kModeStop, kPollNothing},
        {0, 2, 0, 20, kModePlay, kPollFollow},
        {0, 2, 0, 20, kModeStop, kPollEnded},
        {kPlayTrackLock, 2, 0, 20, kModePlay, kPollLockTrack},
        {kPlayTrackLock | kPlayIntro, 2, 0, 20, kModePlay, kPollNext},
        {0, 0, 0, 500, kModeStop, kPollNothing},
        {0, 200, 0, 0, kModePlay, kPollFollow},
    };
    for (const Case& c : cases) {
        CDEngineState state;
        state.record = DiscOf({40, 20, 30});
        CDEngineSettings settings = {};
        settings.IntroLength = 10;
        SetPlayFlagsOf(&settings, c.flags);
        BuildPlayList(&state, settings, Draws({0}));
        state.playing = 1;
        state.currentTrack = c.track;
        state.listIndex = c.index;
        state.elapsedSeconds = c.elapsed;
        EXPECT_EQ(DecidePoll(state, settings, c.mode), c.expected)
            << c.flags << ' ' << c.track << ' ' << c.elapsed;
    }
}

TEST(Poll, EndThatNobodyTells) {
    CDEngineState state;
    state.record = DiscOf({10, 20, 30});
    state.playing = 1;
    const Tmsf end = At(3, 30);
    const struct {
        uint32_t mode;
        Tmsf position; // at two polls
        int ended;
    } cases[] = {
        {kModePlay, end, 1},        {kModePlay, At(3, 29), 1}, // within a second
        {kModePlay, At(3, 28), 0},                             // before: a scratch
        {kModePlay, At(170, 0), 1},                            // the lead-out
        {kModePlay, At(2, 20), 0},  {kModePlay, 0, 0},         // unknown
        {kModeStop, 0, 1},          {0, 0, 1},                 // a device that no longer answers
        {kModeSeek, end, 0},
    };
    for (const auto& c : cases) {
        PlayWatch watch{end}, joined; // play that was going on before: it ends with the disc
        EXPECT_FALSE(PlayHasEnded(&watch, state, c.mode, c.position)) << "once may be a slip";
        EXPECT_FALSE(PlayHasEnded(&joined, state, c.mode, c.position));
        EXPECT_EQ(PlayHasEnded(&watch, state, c.mode, c.position), c.ended) << c.position;
        EXPECT_EQ(PlayHasEnded(&joined, state, c.mode, c.position),
                  c.ended && c.position != At(3, 29)); // half a second lies behind its end
    }
    PlayWatch watch{end};
    for (uint32_t mode : {kModeStop, kModePlay, kModeStop, kModeSeek, kModeStop})
        EXPECT_FALSE(PlayHasEnded(&watch, state, mode, 0)) << "never two in a row";
    state.paused = 1;
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(PlayHasEnded(&watch, state, kModeStop, end)) << "a pause may read as stopped";
}

TEST(EndOfPlay, EveryWayItCanGo) {
    constexpr uint32_t kEject = 32, kExit = 64; // beside the play flags
    struct Case {
        const char* name;
        uint32_t flags;
        uint32_t playing, paused, mode, tracks;
        uint16_t index;
        // after it
        int playEntry, eject, exit;
        uint32_t playingAfter;
        uint16_t indexAfter, trackAfter;
    };
    const Case cases[] = {
        {"paused", 0, 1, 1, kModePause, 3, 0, 0, 0, 0, 1, 0, 2},
        {"pause read as stop", kExit, 1, 1, kModeStop, 3, 0, 0, 0, 0, 1, 0, 2},
        {"seeks", kExit, 1, 0, kModeSeek, 3, 0, 0, 0, 0, 1, 0, 2},
        {"stopped by hand", kEject, 0, 0, kModeStop, 3, 0, 0, 0, 0, 0, 0, 2},
        {"ran out, eject and exit", kEject | kExit, 1, 0, kModeStop, 3, 0, 0, 1, 1, 0, 0, 0},
        {"intro", kPlayIntro | kEject | kExit, 1, 0, kModeStop, 3, 0, 0, 0, 0, 0, 0, 2},
        {"list goes on", kPlayRandom | kPlayRepeat, 1, 0, kModeStop, 3, 1, 1, 0, 0, 1, 2, 2},
        {"list at its end", kPlayRandom, 1, 0, kModeStop, 3, 2, 0, 0, 0, 0, 0, 0},
        {"list repeats", kPlayRandom | kPlayRepeat | kEject, 1, 0, kModeStop, 3, 2, 1, 0, 0, 1, 0,
         2},
        {"lock", kPlayTrackLock | kPlayRandom, 1, 0, kModeStop, 3, 1, 1, 0, 0, 1, 1, 2},
        {"door opened in a pause", kPlayRandom, 1, 1, kModeOpen, 0, 2, 1, 0, 0, 1, 1, 2},
        {"door opened", 0, 1, 0, kModeOpen, 0, 0, 0, 0, 0, 0, 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CDEngineState state;
        state.record = DiscOf({10, 20, 30});
        CDEngineSettings settings = {};
        SetPlayFlagsOf(&settings, c.flags);
        settings.AutoEject = c.flags & kEject;
        settings.AutoExit = c.flags & kExit;
        BuildPlayList(&state, settings, Draws({0}));
        state.playing = c.playing;
        state.paused = c.paused;
        state.listIndex = c.index;
        state.currentTrack = 2;
        const EndDecision end = DecideEnd(&state, settings, c.mode, c.tracks, Draws({0}));
        EXPECT_EQ(end.playEntry, c.playEntry);
        EXPECT_EQ(end.eject, c.eject);
        EXPECT_EQ(end.exit, c.exit);
        EXPECT_EQ(state.playing, c.playingAfter);
        EXPECT_EQ(state.listIndex, c.indexAfter);
        EXPECT_EQ(state.currentTrack, c.trackAfter);
    }
}
