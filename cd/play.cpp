// The play list and its rules. See play.h.
#include "cd/play.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "cdinfo/program.h"

uint32_t PlayFlagsOf(const CDEngineSettings& settings) {
    return (settings.Random ? kPlayRandom : 0u) | (settings.Programmed ? kPlayProgrammed : 0u) |
           (settings.Intro ? kPlayIntro : 0u) | (settings.Repeat ? kPlayRepeat : 0u) |
           (settings.TrackLock ? kPlayTrackLock : 0u);
}

void SetPlayFlagsOf(CDEngineSettings* settings, uint32_t flags) {
    settings->Random = (flags & kPlayRandom) != 0;
    settings->Programmed = (flags & kPlayProgrammed) != 0;
    settings->Intro = (flags & kPlayIntro) != 0;
    settings->Repeat = (flags & kPlayRepeat) != 0;
    settings->TrackLock = (flags & kPlayTrackLock) != 0;
}

static uint32_t TrackCountOf(const CDInfoRecord& record) {
    return std::min<uint32_t>(record.trackCount, kMaxTracks);
}

uint16_t TrackLength(const CDInfoRecord& record, uint32_t track) {
    return track >= 1 && track <= TrackCountOf(record) ? record.trackSeconds[track - 1] : 0;
}

PlayEntry TrackRange(const CDInfoRecord& record, uint32_t from, uint32_t to) {
    const uint32_t seconds = std::min<uint32_t>(TrackLength(record, to), kMaxMinute * 60 + 59);
    return {MakeTmsf(from, 0, 0, 0), MakeTmsf(to, seconds / 60, seconds % 60, 0)};
}

static int PlaysList(const CDEngineSettings& settings) {
    return settings.Programmed || settings.Random;
}

static uint32_t DrawIndex(const RandomSource& random, uint32_t count) {
    // Divided by the largest draw, not by one more: that draw gives the count itself, the empty
    // slot behind the last entry, which then takes a turn.
    const uint32_t r = static_cast<uint32_t>(random.Draw()) & kRandomMax;
    return r * count / kRandomMax;
}

static void Shuffle(CDEngineState* state, const RandomSource& random) {
    random.Seed(random.seed);
    for (int i = 0; i < 100; ++i) {
        const uint32_t a = DrawIndex(random, state->listCount);
        const uint32_t b = DrawIndex(random, state->listCount);
        std::swap(state->list[a], state->list[b]);
    }
}

void BuildPlayList(CDEngineState* state, const CDEngineSettings& settings,
                   const RandomSource& random) {
    const CDInfoRecord& record = state->record;
    const uint32_t tracks = TrackCountOf(record);
    std::fill(std::begin(state->list), std::end(state->list), PlayEntry{});
    if (settings.Programmed) {
        state->listCount = std::min<uint16_t>(record.programCount, kMaxPlayEntries);
        for (uint32_t i = 0; i < state->listCount; ++i)
            state->list[i] = {record.program[i].start & 0x00FFFFFF, record.program[i].stop};
    } else {
        state->listCount = static_cast<uint16_t>(tracks);
        for (uint32_t i = 0; i < tracks; ++i)
            state->list[i] = TrackRange(record, i + 1, i + 1);
    }
    if (settings.Random) Shuffle(state, random);
    if (!PlaysList(settings)) {
        std::fill(std::begin(state->list), std::end(state->list), PlayEntry{});
        state->list[0] = TrackRange(record, 1, tracks);
        state->listCount = 1;
    }
}

PlayEntry CurrentEntry(const CDEngineState& state) {
    return state.listIndex <= kMaxPlayEntries ? state.list[state.listIndex] : PlayEntry{};
}

int DecidePlay(CDEngineState* state, CDEngineSettings* settings, uint32_t track,
               const RandomSource& random, PlayEntry* range) {
    if (track) {
        const uint32_t tracks = TrackCountOf(state->record);
        if (track > tracks) return 0; // asked for by another program, or for another disc
        settings->Random = settings->Programmed = 0;
        BuildPlayList(state, *settings, random);
        state->listIndex = 0;
        *range = TrackRange(state->record, track, tracks);
        return 1;
    }
    *range = CurrentEntry(*state);
    if (state->paused) range->from = state->pausedPosition;
    return 1;
}

int DecideSeek(const CDEngineState& state, Tmsf position, uint32_t seconds, PlayEntry* range) {
    const uint32_t minute = seconds / 60;
    if (minute > kMaxMinute) return 0;
    *range = {MakeTmsf(TmsfTrack(position), minute, seconds - 60 * minute, 0),
              CurrentEntry(state).to};
    return 1;
}

int DecidePlayEntry(CDEngineState* state, const CDEngineSettings& settings, uint32_t index,
                    PlayEntry* range) {
    if (!settings.Programmed) return 0;
    state->listIndex = static_cast<uint16_t>(index < state->listCount ? index : 0);
    *range = CurrentEntry(*state);
    return 1;
}

int DecideNext(CDEngineState* state, const CDEngineSettings& settings, Tmsf position, int32_t steps,
               const RandomSource& random, PlayEntry* range) {
    if (!steps) steps = 1;
    if (!PlaysList(settings)) {
        const auto track =
            static_cast<uint16_t>(TmsfTrack(position) + static_cast<uint32_t>(steps));
        const uint32_t to = track && track <= TrackCountOf(state->record) ? track : 1;
        *range = {MakeTmsf(to, 0, 0, 0), CurrentEntry(*state).to};
        return 1;
    }
    if (!state->listCount) return 0;
    const uint32_t forward = steps > 0 ? static_cast<uint32_t>(steps) % state->listCount : 0;
    state->listIndex = static_cast<uint16_t>((state->listIndex + forward) % state->listCount);
    if (!state->listIndex) BuildPlayList(state, settings, random);
    *range = CurrentEntry(*state);
    return 1;
}

int DecidePrevious(CDEngineState* state, const CDEngineSettings& settings, Tmsf position,
                   int32_t steps, PlayEntry* range) {
    if (!PlaysList(settings)) {
        auto track = static_cast<uint16_t>(TmsfTrack(position) - static_cast<uint32_t>(steps));
        if (!track) track = static_cast<uint16_t>(TrackCountOf(state->record));
        *range = {MakeTmsf(track, 0, 0, 0), CurrentEntry(*state).to};
        return 1;
    }
    const uint32_t count = state->listCount;
    if (!count) return 0;
    const uint32_t back = steps > 0 ? static_cast<uint32_t>(steps) % count : 0;
    state->listIndex = static_cast<uint16_t>((state->listIndex % count + count - back) % count);
    *range = CurrentEntry(*state);
    return 1;
}

void FollowPosition(CDEngineState* state, Tmsf position, uint32_t now) {
    const uint32_t seconds = TmsfSeconds(position);
    state->currentTrack = static_cast<uint16_t>(TmsfTrack(position));
    state->trackStartTick = now - seconds * 1000;
    state->elapsedSeconds = static_cast<uint16_t>(seconds);
}

void PlayStarted(CDEngineState* state, Tmsf from, uint32_t now) {
    FollowPosition(state, from, now);
    state->playing = 1;
    state->paused = 0;
}

void PlayStopped(CDEngineState* state, const CDEngineSettings& settings,
                 const RandomSource& random) {
    state->playing = state->paused = 0;
    state->listIndex = 0;
    state->currentTrack = 0;
    state->elapsedSeconds = 0;
    BuildPlayList(state, settings, random);
}

static PollAction DecideIntro(const CDEngineState& state, const CDEngineSettings& settings) {
    if (settings.Repeat) return kPollNext;
    const int last = PlaysList(settings) ? state.listIndex + 1 >= state.listCount
                                         : state.currentTrack >= TrackCountOf(state.record);
    return last ? kPollStop : kPollNext;
}

PollAction DecidePoll(const CDEngineState& state, const CDEngineSettings& settings, uint32_t mode) {
    if (settings.Intro && state.elapsedSeconds > settings.IntroLength)
        return DecideIntro(state, settings);
    if (!state.currentTrack || state.elapsedSeconds < TrackLength(state.record, state.currentTrack))
        return kPollNothing;
    if (settings.TrackLock) return kPollLockTrack;
    return mode == kModePlay ? kPollFollow : kPollEnded;
}

// Frames from the start of the disc; 0 for a track that the disc does not have. The lead-out, as
// some devices name it after the end, counts as the end.
static uint32_t FramesOnDisc(const CDInfoRecord& record, Tmsf position) {
    const uint32_t track = TmsfTrack(position), tracks = TrackCountOf(record);
    if (!track || !tracks) return 0;
    if (track > tracks) return record.trackStarts[tracks];
    return record.trackStarts[track - 1] + TmsfSeconds(position) * kFramesPerSecond +
           TmsfFrame(position);
}

int PlayHasEnded(PlayWatch* watch, const CDEngineState& state, uint32_t mode, Tmsf position) {
    if (!state.playing || state.paused || mode == kModePause || mode == kModeSeek) {
        *watch = PlayWatch{watch->to};
        return 0;
    }
    watch->idlePolls = mode == kModePlay ? 0 : watch->idlePolls + 1;
    const int stands = position && position == watch->lastPosition;
    watch->lastPosition = position;
    if (watch->idlePolls >= 2) return 1;
    if (!stands || mode != kModePlay) return 0;
    const Tmsf leadOut = MakeTmsf(UINT8_MAX, 0, 0, 0);
    const uint32_t end = FramesOnDisc(state.record, watch->to ? watch->to : leadOut);
    return end && FramesOnDisc(state.record, position) + kFramesPerSecond >= end;
}

EndDecision DecideEnd(CDEngineState* state, const CDEngineSettings& settings, uint32_t mode,
                      uint32_t deviceTracks, const RandomSource& random) {
    EndDecision end;
    if (state->paused && mode == kModeOpen) state->paused = 0;
    if (!deviceTracks) state->listIndex = 0;
    // A drive that still seeks has not run out.
    if (!state->playing || state->paused || mode == kModePlay || mode == kModePause ||
        mode == kModeSeek)
        return end;
    end.ranOut = 1;
    if (settings.TrackLock) {
        end.playEntry = 1;
    } else if (state->listIndex + 1 < state->listCount) {
        ++state->listIndex;
        end.playEntry = 1;
    } else if (settings.Repeat) {
        state->listIndex = 0;
        BuildPlayList(state, settings, random);
        end.playEntry = 1;
    } else if (settings.Intro) {
        state->playing = 0; // intro play neither ejects nor closes anything
    } else {
        PlayStopped(state, settings, random);
        end.eject = settings.AutoEject != 0;
        end.exit = settings.AutoExit != 0;
    }
    return end;
}

DiscTime ComputeDiscTime(const CDEngineState& state, const CDEngineSettings& settings) {
    const CDInfoRecord& record = state.record;
    uint32_t elapsed = 0, total = 0;
    if (settings.Programmed) {
        const uint32_t count = std::min<uint32_t>(state.listCount, kMaxPlayEntries);
        for (uint32_t i = 0; i < count; ++i) {
            const uint32_t length = SegmentSeconds(record, state.list[i].from, state.list[i].to);
            total += length;
            if (i < state.listIndex) elapsed += length;
        }
        const uint32_t seconds = state.elapsedSeconds;
        const Tmsf position = MakeTmsf(state.currentTrack, seconds / 60, seconds % 60, 0);
        elapsed += SegmentSeconds(record, CurrentEntry(state).from, position);
    } else {
        for (uint32_t track = 1; track <= TrackCountOf(record); ++track) {
            total += TrackLength(record, track);
            if (track < state.currentTrack) elapsed += TrackLength(record, track);
        }
        elapsed = state.currentTrack ? elapsed + state.elapsedSeconds : 0;
    }
    return {static_cast<uint16_t>(elapsed), static_cast<uint16_t>(total)};
}
