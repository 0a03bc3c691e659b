// The file layer on Windows. See file_layer.h.
//
// Locks are named mutexes, since those are released when their owner ends, however it ends. A
// mutex lets its own thread in twice, which would let a change within a change through; so the
// threads that hold one are kept in a small list. From it also comes what a thread left open that
// was ended in the middle of a change.
#include "core/platform.h"
#include "cdinfo/file_layer.h"

#include <cwchar>
#include <new>

constexpr DWORD kMaxChunk = 1u << 20; // bytes a call

struct PathLock {
    HANDLE mutex;
    HANDLE held; // the file, open so that nobody else can write to it; or null
    uint64_t name;
    DWORD thread;
};
constexpr int kMaxLocks = 8; // paths locked at the same time by this process

static struct {
    SRWLOCK guard = SRWLOCK_INIT; // guards `locks`
    PathLock locks[kMaxLocks] = {};
} s_files;

static FileResult ResultOf(DWORD error) {
    switch (error) {
    case ERROR_SUCCESS: return kFileOk;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND: return kFileMissing;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_DELETE_PENDING: return kFileBusy;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT: return kFileDenied;
    default: return kFileFailed;
    }
}

static FileResult LastResult() {
    const FileResult result = ResultOf(GetLastError());
    return result == kFileOk ? kFileFailed : result;
}

// ---- bytes

static FileResult ReadOpen(HANDLE file, std::vector<uint8_t>* bytes) {
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file, &size)) return LastResult();
    if (static_cast<uint64_t>(size.QuadPart) > kMaxFileSize) return kFileFailed;
    try {
        bytes->resize(static_cast<size_t>(size.QuadPart));
    } catch (const std::bad_alloc&) {
        return kFileFailed;
    }
    size_t done = 0;
    while (done < bytes->size()) {
        const size_t left = bytes->size() - done;
        DWORD got = 0;
        if (!ReadFile(file, bytes->data() + done,
                      left < kMaxChunk ? static_cast<DWORD>(left) : kMaxChunk, &got, nullptr))
            return LastResult();
        if (!got) return kFileFailed; // it shrank under our hands
        done += got;
    }
    return kFileOk;
}

static FileResult ReadWith(const wchar_t* path, DWORD share, std::vector<uint8_t>* bytes,
                           int* isOpen) {
    const HANDLE file = CreateFileW(path, GENERIC_READ, share, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    *isOpen = file != INVALID_HANDLE_VALUE;
    const FileResult result = *isOpen ? ReadOpen(file, bytes) : LastResult();
    if (*isOpen) CloseHandle(file);
    if (result != kFileOk) bytes->clear();
    return result;
}

// Others may read at the same time, so that two look-ups never disturb each other; nobody may
// write.
static FileResult ReadWhole(const wchar_t* path, std::vector<uint8_t>* bytes) {
    int isOpen;
    return ReadWith(path, FILE_SHARE_READ | FILE_SHARE_DELETE, bytes, &isOpen);
}

FileResult ReadUnshared(const wchar_t* path, std::vector<uint8_t>* bytes, int* isOpen) {
    return ReadWith(path, 0, bytes, isOpen);
}

static FileResult WriteWhole(const wchar_t* path, std::span<const uint8_t> bytes) {
    const HANDLE file =
        CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return LastResult();
    FileResult result = kFileOk;
    size_t done = 0;
    while (done < bytes.size() && result == kFileOk) {
        const size_t left = bytes.size() - done;
        DWORD put = 0;
        if (!WriteFile(file, bytes.data() + done,
                       left < kMaxChunk ? static_cast<DWORD>(left) : kMaxChunk, &put, nullptr))
            result = LastResult();
        else if (!put)
            result = kFileFailed;
        done += put;
    }
    if (!CloseHandle(file) && result == kFileOk) result = LastResult();
    return result;
}

static FileResult FlushPath(const wchar_t* path) {
    const HANDLE file = CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return LastResult();
    FileResult result = FlushFileBuffers(file) ? kFileOk : LastResult();
    if (!CloseHandle(file) && result == kFileOk) result = LastResult();
    return result;
}

static FileResult SizeOf(const wchar_t* path, uint64_t* bytes) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(path, GetFileExInfoStandard, &data)) return LastResult();
    *bytes = static_cast<uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    return kFileOk;
}

// ---- names

static FileResult ReplacePath(const wchar_t* path, const wchar_t* replacement,
                              const wchar_t* backup) {
    return ReplaceFileW(path, replacement, backup, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                        nullptr)
               ? kFileOk
               : LastResult();
}

static FileResult MovePath(const wchar_t* from, const wchar_t* to) {
    return MoveFileExW(from, to, MOVEFILE_WRITE_THROUGH) ? kFileOk : LastResult();
}

static FileResult RemovePath(const wchar_t* path) {
    return DeleteFileW(path) ? kFileOk : LastResult();
}

// ---- the lock of a path

// FNV-1a over the lower-case path. Two paths with one hash merely wait for each other.
static uint64_t HashPath(const wchar_t* path) {
    wchar_t name[MAX_PATH * 4];
    lstrcpynW(name, path, static_cast<int>(sizeof name / sizeof *name));
    CharLowerW(name);
    uint64_t hash = 14695981039346656037u;
    for (const wchar_t* at = name; *at; ++at)
        hash = (hash ^ *at) * 1099511628211u;
    return hash;
}

static void ClearLocked(PathLock* lock) {
    if (lock->held) CloseHandle(lock->held);
    CloseHandle(lock->mutex);
    *lock = {};
}

// 1 when noted. A note of another thread is stale once we own the mutex: that thread was ended
// while it held it. So is our own when the mutex was abandoned: thread ids are used again.
static int NoteLockLocked(uint64_t name, HANDLE mutex, int abandoned, PathLock** noted) {
    PathLock* free = nullptr;
    for (PathLock& lock : s_files.locks) {
        if (lock.mutex && lock.name == name) {
            if (lock.thread == GetCurrentThreadId() && !abandoned) return 0;
            ClearLocked(&lock);
        }
        if (!lock.mutex && !free) free = &lock;
    }
    if (!free) return 0;
    *free = {mutex, nullptr, name, GetCurrentThreadId()};
    *noted = free;
    return 1;
}

static FileResult LockPath(const wchar_t* path, void** lock) {
    *lock = nullptr;
    const uint64_t name = HashPath(path);
    wchar_t text[64];
    // Global: a second user of the machine may run the same program folder.
    wsprintfW(text, L"Global\\TonvistaStore-%08x%08x", static_cast<unsigned>(name >> 32),
              static_cast<unsigned>(name & 0xFFFFFFFF));
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, text);
    if (!mutex) return kFileBusy; // another user's, and so in use at this moment
    const DWORD wait = WaitForSingleObject(mutex, 0);
    if (wait != WAIT_OBJECT_0 && wait != WAIT_ABANDONED) {
        CloseHandle(mutex);
        return kFileBusy;
    }
    PathLock* noted = nullptr;
    AcquireSRWLockExclusive(&s_files.guard);
    const int isNoted = NoteLockLocked(name, mutex, wait == WAIT_ABANDONED, &noted);
    ReleaseSRWLockExclusive(&s_files.guard);
    if (!isNoted) {
        ReleaseMutex(mutex);
        CloseHandle(mutex);
        return kFileBusy;
    }
    *lock = noted;
    return kFileOk;
}

static void UnlockPath(void* lock) {
    if (!lock) return;
    AcquireSRWLockExclusive(&s_files.guard);
    PathLock* noted = static_cast<PathLock*>(lock);
    ReleaseMutex(noted->mutex);
    ClearLocked(noted);
    ReleaseSRWLockExclusive(&s_files.guard);
}

static FileResult HoldPath(void* lock, const wchar_t* path) {
    const HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return LastResult();
    static_cast<PathLock*>(lock)->held = file;
    return kFileOk;
}

static void LetGoPath(void* lock) {
    PathLock* noted = static_cast<PathLock*>(lock);
    if (noted->held) CloseHandle(noted->held);
    noted->held = nullptr;
}

const FileLayer& SystemFiles() {
    static const FileLayer layer = {ReadWhole,   WriteWhole, FlushPath,  SizeOf,
                                    ReplacePath, MovePath,   RemovePath, LockPath,
                                    UnlockPath,  HoldPath,   LetGoPath};
    return layer;
}
