// What is played, and what comes next: the play list, the steps through it, the rules of every
// poll and the end of play. Functions from the engine's state, and from what was just read from
// the device, to a decision; the engine performs it.
//
// The caller holds the engine's lock where the state is the engine's own.
#pragma once
#include <cstdint>

#include "cd/engine_state.h"

// The C library's generator: Draw gives 0..kRandomMax.
struct RandomSource {
    void (*Seed)(uint32_t seed);
    int (*Draw)();
    uint32_t seed; // for the next shuffle
};
constexpr uint32_t kRandomMax = 32767;

uint32_t PlayFlagsOf(const CDEngineSettings& settings);
void SetPlayFlagsOf(CDEngineSettings* settings, uint32_t flags);

// From track `from` at 0:00 to track `to` at its whole length in seconds.
PlayEntry TrackRange(const CDInfoRecord& record, uint32_t from, uint32_t to);
// The list from the record and the modes. The index stays.
void BuildPlayList(CDEngineState* state, const CDEngineSettings& settings,
                   const RandomSource& random);
// The entry at the index; an empty one when there is none.
PlayEntry CurrentEntry(const CDEngineState& state);

// ---- commands. Each gives 1 and the range to play, or 0 when there is nothing to do. Lists,
// modes and index are brought up to date; what a successful play command changes is not.

// Track 0: resume, or the current entry. Another one: from that track to the end of the disc,
// which ends random and programmed play.
int DecidePlay(CDEngineState* state, CDEngineSettings* settings, uint32_t track,
               const RandomSource& random, PlayEntry* range);
int DecideSeek(const CDEngineState& state, Tmsf position, uint32_t seconds, PlayEntry* range);
int DecidePlayEntry(CDEngineState* state, const CDEngineSettings& settings, uint32_t index,
                    PlayEntry* range);
// Forward: 0 steps count as 1; in list play a negative count makes no step. Back: 0 steps play
// the same track or entry again.
int DecideNext(CDEngineState* state, const CDEngineSettings& settings, Tmsf position, int32_t steps,
               const RandomSource& random, PlayEntry* range);
int DecidePrevious(CDEngineState* state, const CDEngineSettings& settings, Tmsf position,
                   int32_t steps, PlayEntry* range);

// What a successful play command changes.
void PlayStarted(CDEngineState* state, Tmsf from, uint32_t now);
// Track and time taken from the device: it went on by itself, or played before the engine came.
void FollowPosition(CDEngineState* state, Tmsf position, uint32_t now);
void PlayStopped(CDEngineState* state, const CDEngineSettings& settings,
                 const RandomSource& random);

// ---- the poll while playing

enum PollAction {
    kPollNothing,
    kPollStop,      // intro play is through
    kPollNext,      // intro play: one step forward
    kPollLockTrack, // track lock: the current track again
    kPollFollow,    // the device went on into another track
    kPollEnded      // play has run out: DecideEnd
};
// `mode` and `position` as read at this poll; elapsed seconds are up to date.
PollAction DecidePoll(const CDEngineState& state, const CDEngineSettings& settings, uint32_t mode);

// Watches for an end that the device does not tell. It counts as ended when it is found neither
// playing nor paused twice in a row, or when it says that it plays but stands still within a
// second of the end. Made anew at every play command.
struct PlayWatch {
    Tmsf to = 0; // where the play command ends, 0: with the disc
    uint32_t idlePolls = 0;
    Tmsf lastPosition = 0;
};
int PlayHasEnded(PlayWatch* watch, const CDEngineState& state, uint32_t mode, Tmsf position);

// ---- the end of play

struct EndDecision {
    int ranOut = 0;    // play has ended or goes on elsewhere
    int playEntry = 0; // post play with 0
    int eject = 0;     // post eject
    int exit = 0;      // close the program
};
EndDecision DecideEnd(CDEngineState* state, const CDEngineSettings& settings, uint32_t mode,
                      uint32_t deviceTracks, const RandomSource& random);

// ---- times

struct DiscTime {
    uint16_t elapsed; // seconds; sums wrap at 16 bits
    uint16_t total;
};
DiscTime ComputeDiscTime(const CDEngineState& state, const CDEngineSettings& settings);
// Length of a track (1-based) in seconds; 0 for one that the disc does not have.
uint16_t TrackLength(const CDInfoRecord& record, uint32_t track);
