// Shows what flows through the filter: a thread that takes each block of sound when it is heard and
// publishes it in the shared block. The streaming thread only leaves a copy.
#pragma once
#include "core/platform.h"
#define NO_DSHOW_STRSAFE // <dshow.h> would poison strcpy and others
#include <dshow.h>

#include <atomic>

#include "extractor/blocks.h"
#include "waves/publish.h"

struct SharedControlBlock;

// Large: a part of the filter, all zero at first.
struct Publisher {
    HANDLE thread, wake;
    std::atomic<int> active; // the streaming thread leaves its copies
    std::atomic<int> idle;   // the publisher's thread waits for something to be left
    std::atomic<int> quit;
    SharedControlBlock* block;
    PublishedSound sound;
    SRWLOCK lock; // guards what follows; held for moments, and never by the streaming thread
    IReferenceClock* clock;
    REFERENCE_TIME start; // of the stream, by that clock
    int running;
    SoundSums sums;
    BlockQueue queue;
};

int OpenPublisher(Publisher* publisher);
void ClosePublisher(Publisher* publisher);
void SetPublisherFormat(Publisher* publisher, const SoundFormatRecord& format); // while stopped
// From stopped to paused and back. It does nothing where no program has a shared block.
void StartPublisher(Publisher* publisher);
void StopPublisher(Publisher* publisher); // nothing is published any more
void RunPublisher(Publisher* publisher, REFERENCE_TIME start);
void PausePublisher(Publisher* publisher);
void SetPublisherClock(Publisher* publisher, IReferenceClock* clock);
IReferenceClock* GetPublisherClock(Publisher* publisher); // with a reference, or null
void FlushPublisher(Publisher* publisher);

// ---- the streaming thread
void LeaveSample(Publisher* publisher, IMediaSample* sample);
void LeaveEnd(Publisher* publisher);
