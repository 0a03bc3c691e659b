// Records on their way into the database. What somebody typed is kept here until it is stored,
// whatever becomes of the disc, the drive or the engine meanwhile: this state lives as long as the
// program.
//
// Two locks. `slotsLock` guards the slots and is held for moments. `storeLock` lets one thread at a
// time look up or store, so that a look-up, which writes back what it has read, can't put old texts
// over new ones; a window's thread waits for it only briefly and leaves the rest to the engine.
#include "cd/engine_parts_win.h"
#include "cd/toc.h"
#include "cdinfo/store.h"

#include <new>

constexpr int kMaxPending = 64; // discs edited while the database could not be written
constexpr DWORD kLookUpWaitMs = 3000;
constexpr DWORD kFlushMs = 2000; // at the program's end
constexpr DWORD kFlushPauseMs = 100;

namespace {
struct PendingRecord {
    CDInfoRecord* record; // null: free
    uint32_t serial;
};
} // namespace

static struct {
    HANDLE slotsLock = CreateMutexA(nullptr, FALSE, nullptr);
    HANDLE storeLock = CreateMutexA(nullptr, FALSE, nullptr);
    PendingRecord slots[kMaxPending] = {};
    uint32_t serial = 0;
    CDInfoRecord copy; // under storeLock: what is being stored
} s_pending;

static PendingRecord* FindSlotLocked(uint32_t identity) {
    for (PendingRecord& slot : s_pending.slots)
        if (slot.record && slot.record->identity == identity) return &slot;
    return nullptr;
}

static PendingRecord* FreeSlotLocked() {
    for (PendingRecord& slot : s_pending.slots)
        if (!slot.record) return &slot;
    return nullptr;
}

int KeepRecord(const CDInfoRecord& record) {
    const ScopedLock lock(s_pending.slotsLock);
    if (!lock.held) return 0;
    PendingRecord* slot = FindSlotLocked(record.identity);
    if (!slot) slot = FreeSlotLocked();
    if (!slot) return 0;
    if (!slot->record) slot->record = new (std::nothrow) CDInfoRecord;
    if (!slot->record) return 0;
    *slot->record = record;
    slot->serial = ++s_pending.serial;
    return 1;
}

int PendingRecords() {
    int count = 0;
    const ScopedLock lock(s_pending.slotsLock);
    for (const PendingRecord& slot : s_pending.slots)
        count += slot.record != nullptr;
    return count;
}

// The store lock is held. One attempt for each kept record.
static void StoreAllStoreLocked() {
    for (PendingRecord& slot : s_pending.slots) {
        uint32_t serial = 0;
        {
            const ScopedLock lock(s_pending.slotsLock);
            if (!lock.held || !slot.record) continue;
            s_pending.copy = *slot.record;
            serial = slot.serial;
        }
        if (!AddOrReplace(nullptr, s_pending.copy, 0, nullptr)) continue;
        const ScopedLock lock(s_pending.slotsLock);
        if (!lock.held || !slot.record || slot.serial != serial) continue; // edited again meanwhile
        delete slot.record;
        slot.record = nullptr;
    }
}

void StorePendingRecords(DWORD waitMs) {
    const ScopedLock store(s_pending.storeLock, waitMs);
    if (store.held) StoreAllStoreLocked();
}

static int TakePendingEdits(CDInfoRecord* record) {
    const ScopedLock lock(s_pending.slotsLock);
    if (!lock.held) return 0;
    const PendingRecord* slot = FindSlotLocked(record->identity);
    if (slot) TakeEdits(record, *slot->record);
    return slot != nullptr;
}

// What the next look-up of a disc without a program gives: otherwise a disc that is new, or whose
// program was cleared, would not play at all in programmed play.
static void GiveProgram(CDInfoRecord* record) {
    if (!record->programCount) DefaultProgram(record);
}

int FillFromDatabase(CDInfoRecord* record) {
    const ScopedLock store(s_pending.storeLock, kLookUpWaitMs);
    if (!store.held) {
        ApplyDefaults(record);
        const int edited = TakePendingEdits(record);
        GiveProgram(record);
        return edited;
    }
    if (PendingRecords()) StoreAllStoreLocked();
    LookUpState state = kLookUpFound;
    LookUpDisc(record, &state);
    // Kept records that could still not be stored, or came this moment, are newer than the file.
    const int edited = TakePendingEdits(record);
    if (edited) StoreAllStoreLocked();
    GiveProgram(record);
    return edited || state != kLookUpUnread;
}

int FlushCdRecords() {
    const DWORD start = GetTickCount();
    for (;;) {
        StorePendingRecords(kFlushPauseMs);
        if (!PendingRecords()) return 1;
        if (GetTickCount() - start >= kFlushMs) return 0;
        Sleep(kFlushPauseMs);
    }
}
