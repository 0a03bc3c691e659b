// Changes that a person made in the manager, on their way into the default database. A thread of
// its own puts them in place, one after the other, so that no window waits for a large file; what
// could not be stored when its window went is tried again for a minute.
#pragma once
#include "cdinfo/record.h"
#include "core/platform.h"

#include <cstdint>
#include <memory>
#include <vector>

// One change of the database: a record to store, or discs to delete.
struct StoreChange {
    uint32_t id = 0;                           // given by QueueChange
    std::unique_ptr<CDInfoRecord> before, put; // an edit; afterwards `put` is what was stored
    std::vector<uint32_t> deletes;
    int good = 0; // it is in place
};

// Posted to `window` as WM_COMMAND `notice`: lParam the change's id each time it is further, at
// most some 20 times a second, and once at its end, when TakeChange gives it back. A window that
// goes meanwhile calls AbandonChanges. `window` may be null from the start. The id; 0 when there is
// no memory.
uint32_t QueueChange(HWND window, UINT notice, StoreChange&& change);
// How many of its discs the change with this id has worked through.
size_t ChangeProgress(uint32_t id);
// 1 and the change once it has ended.
int TakeChange(uint32_t id, StoreChange* change);
// Nobody will take what was queued for this window: it goes on without one.
void AbandonChanges(HWND window);
// At the program's end: waits until nothing is left to store, at most that long. 1 when nothing is.
int FinishChanges(DWORD waitMs);
