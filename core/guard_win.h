// Faults stay where they happen. GuardCall runs a function so that neither a system exception
// (access violation, division by zero, ...) nor a C++ throw leaves it. GCC has no __try; the frame
// at fs:[0] is made by hand and has the meaning of __except (EXCEPTION_EXECUTE_HANDLER).
#pragma once
#include "core/platform.h"

enum GuardResult { kGuardNormal = 0, kGuardFault = 1, kGuardThrow = 2 };

// *code (may be null) receives the exception code of a fault, else 0. A system exception runs no
// destructors between the fault and the guard; a throw does.
int GuardCall(void (*function)(void*), void* argument, DWORD* code);
