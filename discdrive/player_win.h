// One play: a range of a disc sent to waveOut on a thread of its own. The thread shares nothing
// with the drive but this record, whose changing fields are atomic, and the three functions the
// drive hands over; so it needs no lock.
#pragma once
#include "discdrive/image_win.h"

#include <atomic>

enum PlayOutcome { kPlayDone, kPlayStopped, kPlayFailed };

struct Play {
    // Fixed while it runs.
    std::shared_ptr<const DiscImage> image;
    uint32_t from = 0, to = 0;                   // frames; `to` is not played any more
    void (*onTick)() = nullptr;                  // some 50 times a second, on the play's thread
    void (*onEnd)(Play*, PlayOutcome) = nullptr; // the last call, on the play's thread

    std::atomic<uint32_t> frame{0}; // being heard
    std::atomic<int> stop{0}, pause{0};
    std::atomic<int> paused{0}; // `pause` has been carried out
    HANDLE wake = nullptr;      // set after a change of `stop` or `pause`, and by the sound device
    HANDLE settled = nullptr;   // set when the sound has begun, and when a pause has
    HANDLE thread = nullptr;

    Play() = default;
    Play(const Play&) = delete;
    Play& operator=(const Play&) = delete;
    ~Play();
};

// Returns when the sound has begun: 1; or 0 when it can't (no sound device, image gone), and then
// onEnd is not called.
int StartPlay(const std::shared_ptr<Play>& play);
void StopPlay(Play& play);              // asks only
void PausePlay(Play& play, int paused); // returns when the sound stands still or runs again
void JoinPlay(Play& play);              // waits until its thread is gone; not from that thread
