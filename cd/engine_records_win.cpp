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
struct Edit {
    CDInfoRecord before, after;
};

struct PendingRecord {
    Edit* edit; // null: free
    uint32_t serial;
};
} // namespace

static struct {
    HANDLE slotsLock = CreateMutexA(nullptr, FALSE, nullptr);
    HANDLE storeLock = CreateMutexA(nullptr, FALSE, nullptr);
    PendingRecord slots[kMaxPending] = {};
    uint32_t serial = 0;
    Edit copy; // under storeLock: what is being stored
} s_pending;

static PendingRecord* FindSlotLocked(uint32_t identity) {
    for (PendingRecord& slot : s_pending.slots)
        if (slot.edit && slot.edit->after.identity == identity) return &slot;
    return nullptr;
}

static PendingRecord* FreeSlotLocked() {
    for (PendingRecord& slot : s_pending.slots)
        if (!slot.edit) return &slot;
    return nullptr;
}

int KeepRecord(const CDInfoRecord& before, const CDInfoRecord& record) {
    const ScopedLock lock(s_pending.slotsLock);
    if (!lock.held) return 0;
    PendingRecord* slot = FindSlotLocked(record.identity);
    if (!slot) slot = FreeSlotLocked();
    if (!slot) return 0;
    if (!slot->edit) {
        slot->edit = new (std::nothrow) Edit;
        if (!slot->edit) return 0;
        slot->edit->before = before; // a later edit is one more on the same
    }
    slot->edit->after = record;
    slot->serial = ++s_pending.serial;
    return 1;
}

int PendingRecords() {
    int count = 0;
    const ScopedLock lock(s_pending.slotsLock);
    for (const PendingRecord& slot : s_pending.slots)
        count += slot.edit != nullptr;
    return count;
}

// The store lock is held. One attempt for each kept record.
static void StoreAllStoreLocked() {
    for (PendingRecord& slot : s_pending.slots) {
        uint32_t serial = 0;
        {
            const ScopedLock lock(s_pending.slotsLock);
            if (!lock.held || !slot.edit) continue;
            s_pending.copy = *slot.edit;
            serial = slot.serial;
        }
        if (!StoreEdit(s_pending.copy.before, s_pending.copy.after)) continue;
        const ScopedLock lock(s_pending.slotsLock);
        if (!lock.held || !slot.edit) continue;
        slot.edit->before = s_pending.copy.after;
        if (slot.serial != serial) continue; // edited again meanwhile
        delete slot.edit;
        slot.edit = nullptr;
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
    if (slot) TakeEdits(record, slot->edit->after);
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

int ReadStoredEntry(CDInfoRecord* record) {
    const ScopedLock store(s_pending.storeLock, kLookUpWaitMs);
    if (!store.held) return 0;
    {
        const ScopedLock lock(s_pending.slotsLock);
        if (!lock.held || FindSlotLocked(record->identity)) return 0;
    }
    return ReadEntry(nullptr, record->identity, record);
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
