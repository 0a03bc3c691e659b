// The table of bitmap files that are being read, and their threads. See picture_reader_win.h.
#include "ui/picture_reader_win.h"

#include "core/guard_win.h"
#include "core/text.h"

#include <cstring>
#include <process.h>

constexpr DWORD kUsualFileMs = 150; // a window that opens this much later opens at once

PictureReader PictureFiles = {LoadPictureFile, kUsualFileMs};

static struct { PictureReading readings[kMostReadings]; } s_reader;

namespace {
struct OneFile {
    const char* path;
    Picture* picture;
};
} // namespace

static void ReadFileGuarded(void* argument) {
    auto* file = static_cast<OneFile*>(argument);
    file->picture = PictureFiles.Read(file->path);
}

// What the entry says besides `picture` is nobody else's while it runs.
static unsigned __stdcall ReadingThread(void* argument) {
    auto* reading = static_cast<PictureReading*>(argument);
    OneFile file = {reading->path, nullptr};
    if (GuardCall(ReadFileGuarded, &file, nullptr) != kGuardNormal) file.picture = nullptr;
    reading->Arrived(reading, file.picture);
    return 0;
}

static PictureReading* PlaceFor(const char* path) {
    PictureReading* empty = nullptr;
    for (PictureReading& reading : s_reader.readings) {
        if (reading.running && !strcmp(reading.path, path)) return &reading;
        if (!reading.running && !reading.waiting) empty = &reading;
    }
    return empty;
}

static int Start(PictureReading* reading) {
    if (!reading->ended) reading->ended = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    if (!reading->ended || !ResetEvent(reading->ended)) return 0;
    reading->started = GetTickCount();
    reading->running = 1;
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, ReadingThread, reading, 0, nullptr));
    if (!thread) reading->running = 0;
    if (thread) CloseHandle(thread);
    return reading->running;
}

PictureReading* BeginPictureReading(const char* path,
                                    void (*Arrived)(PictureReading* reading, Picture* picture)) {
    PictureReading* reading = PlaceFor(path);
    if (!reading) return nullptr;
    if (!reading->running) {
        CopyText(reading->path, path);
        reading->Arrived = Arrived;
        if (!Start(reading)) return nullptr;
    }
    ++reading->waiting;
    return reading;
}

// One that hangs already is waited for no second time.
void AwaitPictureReading(const PictureReading& reading) {
    const DWORD since = GetTickCount() - reading.started;
    WaitForSingleObject(reading.ended,
                        since < PictureFiles.waitMs ? PictureFiles.waitMs - since : 0);
}

static void ForgetUnused(PictureReading* reading) {
    if (reading->waiting || reading->running) return;
    if (reading->picture && !--reading->picture->users) FreePicture(reading->picture);
    reading->picture = nullptr;
}

void EndPictureReading(PictureReading* reading, Picture* picture) {
    if (picture) ++picture->users;
    reading->picture = picture;
    reading->running = 0;
    SetEvent(reading->ended);
    ForgetUnused(reading);
}

void LetGoOfPictureReading(PictureReading* reading) {
    --reading->waiting;
    ForgetUnused(reading);
}
