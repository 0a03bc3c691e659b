// The windows that hear of changes of the database. See store.h.
#include "core/platform.h"
#include "cdinfo/store_parts_win.h"

#include "core/commands.h"

namespace {
struct Listener {
    HWND window;
    int batches;
};
} // namespace

static struct {
    SRWLOCK lock = SRWLOCK_INIT; // held for moments
    Listener slots[4] = {};
} s_listeners;

int AddStoreListener(StoreWindow window, int batches) {
    Listener* place = nullptr;
    AcquireSRWLockExclusive(&s_listeners.lock);
    for (Listener& slot : s_listeners.slots) {
        if (slot.window == window)
            place = &slot;
        else if (!place && !IsWindow(slot.window)) // never used, or its thread has died
            place = &slot;
    }
    if (place) *place = {window, batches};
    ReleaseSRWLockExclusive(&s_listeners.lock);
    return place != nullptr;
}

void RemoveStoreListener(StoreWindow window) {
    AcquireSRWLockExclusive(&s_listeners.lock);
    for (Listener& slot : s_listeners.slots)
        if (slot.window == window) slot = {};
    ReleaseSRWLockExclusive(&s_listeners.lock);
}

void TellStoreListeners(uint32_t entry, int byBatch) {
    AcquireSRWLockShared(&s_listeners.lock);
    for (const Listener& slot : s_listeners.slots)
        if (slot.window && (slot.batches || !byBatch))
            PostMessageA(slot.window, WM_COMMAND, kDatabaseChanged, static_cast<LPARAM>(entry));
    ReleaseSRWLockShared(&s_listeners.lock);
}
