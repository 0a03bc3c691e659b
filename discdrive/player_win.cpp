// See player_win.h. Six buffers of a fifth of a second carry the sound over a slow disk; where a
// play stands is told by the device, not by what was handed to it.
#include "discdrive/player_win.h"

#include <algorithm>
#include <mmsystem.h>
#include <new>

constexpr int kBuffers = 6;
constexpr uint32_t kBufferFrames = 15;
constexpr uint32_t kBufferBytes = kBufferFrames * kAudioSectorBytes;
constexpr DWORD kTickMs = 20;
// Silence behind the last sound, in two parts. Buffers come back some 30 ms before they are heard,
// and much earlier on a busy machine; closing cuts what is not yet heard; and a sound server that
// has run dry may hold back a short rest until more comes. So the end is told after the first part,
// and the device is closed after the second.
constexpr uint32_t kTailFrames[] = {9, kBufferFrames};
constexpr int kTails = 2;
constexpr DWORD kLingerMs = 1000;
constexpr DWORD kSettleMs = 2000;

struct Sound {
    HWAVEOUT out = nullptr;
    WAVEHDR headers[kBuffers] = {};
    std::unique_ptr<char[]> bytes;
    SectorFile file;
    int fileNumber = -1;
    uint32_t next = 0; // the next frame to be read
    int paused = 0;
    int tails = 0; // given to the device
};

Play::~Play() {
    for (const HANDLE handle : {wake, settled, thread}) {
        if (handle) CloseHandle(handle);
    }
}

static int OpenSound(Sound& sound, HANDLE event) {
    WAVEFORMATEX format = {};
    format.wFormatTag = WAVE_FORMAT_PCM;
    format.nChannels = 2;
    format.nSamplesPerSec = 44100;
    format.wBitsPerSample = 16;
    format.nBlockAlign = 4;
    format.nAvgBytesPerSec = 4 * 44100;
    if (waveOutOpen(&sound.out, WAVE_MAPPER, &format, reinterpret_cast<DWORD_PTR>(event), 0,
                    CALLBACK_EVENT) != MMSYSERR_NOERROR) {
        sound.out = nullptr;
        return 0;
    }
    sound.bytes.reset(new (std::nothrow) char[kBuffers * kBufferBytes]);
    if (!sound.bytes) return 0;
    for (int i = 0; i < kBuffers; ++i) {
        WAVEHDR& header = sound.headers[i];
        header.lpData = sound.bytes.get() + i * kBufferBytes;
        header.dwBufferLength = kBufferBytes;
        if (waveOutPrepareHeader(sound.out, &header, sizeof header)) return 0;
    }
    return 1;
}

static void CloseSound(Sound& sound) {
    CloseSectorFile(&sound.file);
    if (!sound.out) return;
    waveOutReset(sound.out);
    for (WAVEHDR& header : sound.headers)
        waveOutUnprepareHeader(sound.out, &header, sizeof header);
    waveOutClose(sound.out);
}

static int ReadStretch(const Play& play, Sound& sound, const DiscPiece& part, char* to) {
    const size_t whole = static_cast<size_t>(part.count) * kAudioSectorBytes;
    const size_t stored = static_cast<size_t>(part.bytes);
    ZeroMemory(to + stored, whole - stored);
    if (part.file < 0 || !stored) return 1;
    if (sound.fileNumber != part.file) {
        if (!OpenSectorFile(&sound.file, play.image->files[part.file].c_str())) return 0;
        sound.fileNumber = part.file;
    }
    return ReadSectorBytes(sound.file, part.offset, to, stored) == stored;
}

// Frames put into the buffer, of the range or of the silence behind it; 0 after that; -1 when the
// image can't be read.
static int FillBuffer(const Play& play, Sound& sound, WAVEHDR& header) {
    uint32_t filled = 0;
    while (filled < kBufferFrames) {
        DiscPiece part = NextStretch(play.image->disc, sound.next, play.to);
        if (part.count > kBufferFrames - filled) {
            part = NextStretch(play.image->disc, part.start, part.start + kBufferFrames - filled);
        }
        if (!part.count) break;
        if (!ReadStretch(play, sound, part, header.lpData + filled * kAudioSectorBytes)) return -1;
        filled += part.count;
        sound.next = part.start + part.count;
    }
    if (!filled && sound.tails < kTails) {
        filled = kTailFrames[sound.tails++];
        ZeroMemory(header.lpData, filled * kAudioSectorBytes);
    }
    return static_cast<int>(filled);
}

static int IsQueued(const WAVEHDR& header) {
    return (*static_cast<const volatile DWORD*>(&header.dwFlags) & WHDR_INQUEUE) != 0;
}

// Keeps the queue full. The buffers in it afterwards; -1 after an error.
static int Feed(const Play& play, Sound& sound) {
    int queued = 0;
    for (WAVEHDR& header : sound.headers) {
        if (IsQueued(header)) {
            ++queued;
            continue;
        }
        const int frames = FillBuffer(play, sound, header);
        if (frames < 0) return -1;
        if (frames == 0) continue;
        header.dwBufferLength = static_cast<DWORD>(frames) * kAudioSectorBytes;
        if (waveOutWrite(sound.out, &header, sizeof header)) return -1;
        ++queued;
    }
    return queued;
}

static void TellPlace(Play& play, const Sound& sound) {
    MMTIME time = {};
    time.wType = TIME_BYTES;
    if (waveOutGetPosition(sound.out, &time, sizeof time) || time.wType != TIME_BYTES) return;
    play.frame = FrameAfter(play.image->disc, play.from, play.to, time.u.cb / kAudioSectorBytes);
}

static void CarryOutPause(Play& play, Sound& sound) {
    const int wanted = play.pause;
    if (wanted == sound.paused) return;
    if (wanted) {
        waveOutPause(sound.out);
        TellPlace(play, sound);
    } else {
        waveOutRestart(sound.out);
    }
    sound.paused = wanted;
    play.paused = wanted;
    SetEvent(play.settled);
}

static PlayOutcome KeepPlaying(Play& play, Sound& sound) {
    while (!play.stop) {
        CarryOutPause(play, sound);
        const int queued = Feed(play, sound);
        if (queued < 0) return kPlayFailed;
        if (!sound.paused) TellPlace(play, sound);
        play.onTick();
        if (sound.tails == kTails && queued <= 1) {
            play.frame = play.to;
            return kPlayDone;
        }
        WaitForSingleObject(play.wake, kTickMs);
    }
    return kPlayStopped;
}

static void Linger(const Play& play, const Sound& sound) {
    const ULONGLONG until = GetTickCount64() + kLingerMs;
    const WAVEHDR* const end = sound.headers + kBuffers;
    while (std::any_of(sound.headers, end, IsQueued) && GetTickCount64() < until)
        WaitForSingleObject(play.wake, kTickMs);
}

static DWORD WINAPI PlayThread(void* argument) {
    const std::unique_ptr<std::shared_ptr<Play>> own(static_cast<std::shared_ptr<Play>*>(argument));
    Play& play = **own;
    Sound sound;
    sound.next = play.from;
    // A range without any sound (nothing but data) is over before it begins, and asks no device.
    const int silent = !NextStretch(play.image->disc, play.from, play.to).count;
    if (!silent && (!OpenSound(sound, play.wake) || Feed(play, sound) < 0)) {
        CloseSound(sound);
        return 0;
    }
    play.paused = 0;
    SetEvent(play.settled);
    PlayOutcome outcome = kPlayDone;
    if (silent) {
        play.frame = play.to;
    } else {
        outcome = KeepPlaying(play, sound);
    }
    // After a stop the caller waits for silence; else nobody waits for the device to be closed.
    if (outcome == kPlayStopped) {
        CloseSound(sound);
        play.onEnd(&play, outcome);
    } else {
        play.onEnd(&play, outcome);
        if (outcome == kPlayDone) Linger(play, sound);
        CloseSound(sound);
    }
    return 0;
}

int StartPlay(const std::shared_ptr<Play>& play) {
    play->frame = play->from;
    play->wake = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    play->settled = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    if (!play->wake || !play->settled) return 0;
    auto argument = std::make_unique<std::shared_ptr<Play>>(play);
    play->thread = CreateThread(nullptr, 0, PlayThread, argument.get(), 0, nullptr);
    if (!play->thread) return 0;
    argument.release(); // the thread's now
    const HANDLE either[] = {play->settled, play->thread};
    return WaitForMultipleObjects(2, either, FALSE, INFINITE) == WAIT_OBJECT_0;
}

void StopPlay(Play& play) {
    play.stop = 1;
    SetEvent(play.wake);
}

void PausePlay(Play& play, int paused) {
    ResetEvent(play.settled);
    play.pause = paused;
    SetEvent(play.wake);
    const HANDLE either[] = {play.settled, play.thread};
    while (play.paused != paused) {
        if (WaitForMultipleObjects(2, either, FALSE, kSettleMs) != WAIT_OBJECT_0) break;
    }
}

void JoinPlay(Play& play) {
    WaitForSingleObject(play.thread, INFINITE);
}
