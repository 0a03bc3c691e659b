// A mutex held for the length of a scope. A wait can time out, so every user asks `held`.
#pragma once
#include "core/platform.h"

constexpr DWORD kLockWaitMs = 3000;

struct [[nodiscard]] ScopedLock {
    explicit ScopedLock(HANDLE m, DWORD waitMs = kLockWaitMs) : mutex(m), held(0) {
        if (!mutex) return;
        const DWORD result = WaitForSingleObject(mutex, waitMs);
        // Abandoned: its owner was terminated. What it guards is then zeroed or still whole.
        held = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
    }
    ~ScopedLock() {
        if (held) ReleaseMutex(mutex);
    }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

    HANDLE mutex;
    int held;
};
