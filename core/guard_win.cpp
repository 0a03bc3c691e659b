// The hand-made exception frame. See guard_win.h.
#include "core/guard_win.h"

// The C++ half stands in a function of its own: its landing pad must lie inside the frame below.
static __attribute__((noinline)) int CallCatching(void (*function)(void*), void* argument) {
    try {
        function(argument);
        return kGuardNormal;
    } catch (...) {
        return kGuardThrow;
    }
}

#ifdef __i386__

namespace {
struct GuardFrame { // the first two members are the system's registration record
    GuardFrame* previous;
    void* handler;
    void* jump[5]; // __builtin_setjmp buffer
    DWORD code;
};
} // namespace

static GuardFrame* TopFrame() {
    GuardFrame* frame;
    __asm__ __volatile__("movl %%fs:0,%0" : "=r"(frame));
    return frame;
}
static void SetTopFrame(GuardFrame* frame) {
    __asm__ __volatile__("movl %0,%%fs:0" : : "r"(frame) : "memory");
}

// Runs the termination handlers of the frames nearer to the fault (those of system DLLs) and pops
// them. RtlUnwind does not keep ebx, esi and edi.
static void UnwindTo(GuardFrame* frame, EXCEPTION_RECORD* record) {
    int target = reinterpret_cast<int>(frame), cause = reinterpret_cast<int>(record);
    __asm__ __volatile__("pushl %%ebx\n\tpushl %%esi\n\tpushl %%edi\n\t"
                         "pushl $0\n\tpushl %1\n\tpushl $1f\n\tpushl %0\n\tcall _RtlUnwind@16\n"
                         "1:\tpopl %%edi\n\tpopl %%esi\n\tpopl %%ebx"
                         : "+a"(target), "+c"(cause)
                         :
                         : "edx", "memory", "cc");
}

extern "C" int __cdecl TonvistaGuardHandler(EXCEPTION_RECORD* record, void* at, CONTEXT*, void*) {
    constexpr DWORD kUnwinding = 0x2 | 0x4;
    if (record->ExceptionFlags & kUnwinding) return 1; // nothing to clean up here: go on searching
    auto* volatile frame = static_cast<GuardFrame*>(at);
    frame->code = record->ExceptionCode;
    UnwindTo(frame, record);
    __builtin_longjmp(frame->jump, 1);
}

__attribute__((noinline)) int GuardCall(void (*function)(void*), void* argument, DWORD* code) {
    GuardFrame frame; // must lie on this thread's stack
    GuardFrame* volatile at = &frame;
    frame.previous = TopFrame();
    frame.handler = reinterpret_cast<void*>(TonvistaGuardHandler);
    frame.code = 0;
    int result;
    if (__builtin_setjmp(frame.jump) == 0) {
        SetTopFrame(at);
        result = CallCatching(function, argument);
    } else {
        result = kGuardFault;
    }
    SetTopFrame(at->previous);
    if (code) *code = at->code;
    return result;
}

#else

// Only the 32-bit program is shipped; elsewhere a throw is caught and a fault ends the process.
int GuardCall(void (*function)(void*), void* argument, DWORD* code) {
    if (code) *code = 0;
    return CallCatching(function, argument);
}

#endif
