// Mapping of the shared control block. See shared_block.h.
#include "core/shared_block.h"

#include "core/platform.h"

#include <cstring>

SharedControlBlock* SharedBlock = nullptr;

constexpr DWORD kFillMs = 200; // far more than its maker needs to fill a new block in

// The view keeps the mapping alive; the handle is kept with it so that both end together.
static HANDLE s_mapping;

// Of two instances started at once the later one may find the block still empty.
static int IsOurs(volatile const SharedControlBlock* block) {
    const DWORD start = GetTickCount();
    while (!block->BlockSize && GetTickCount() - start < kFillMs)
        Sleep(1);
    return block->BlockSize == kSharedBlockSize && block->BlockVersion == kSharedBlockVersion;
}

static SharedControlBlock* MapBlock(HANDLE mapping, int isNew) {
    // Null also when a smaller block of that name stands there.
    void* view = MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, kSharedBlockSize);
    if (!view) return nullptr;
    auto* block = static_cast<SharedControlBlock*>(view);
    if (isNew) {
        std::memset(view, 0, kSharedBlockSize);
        block->BlockVersion = kSharedBlockVersion;
        MemoryBarrier(); // the size comes last: it says that the rest is there
        block->BlockSize = kSharedBlockSize;
    } else if (!IsOurs(block)) {
        UnmapViewOfFile(view);
        return nullptr;
    }
    return block;
}

static SharedControlBlock* KeepMapping(HANDLE mapping, int isNew) {
    if (!mapping) return nullptr;
    SharedControlBlock* block = MapBlock(mapping, isNew);
    if (block)
        s_mapping = mapping;
    else
        CloseHandle(mapping);
    return block;
}

SharedControlBlock* OpenSharedBlock() {
    SetLastError(ERROR_SUCCESS);
    HANDLE mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                        kSharedBlockSize, kSharedBlockName);
    return KeepMapping(mapping, GetLastError() != ERROR_ALREADY_EXISTS);
}

SharedControlBlock* OpenPresentSharedBlock() {
    return KeepMapping(OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, kSharedBlockName), 0);
}

void CloseSharedBlock(SharedControlBlock* block) {
    if (!block) return;
    UnmapViewOfFile(block);
    if (s_mapping) CloseHandle(s_mapping);
    s_mapping = nullptr;
}

static volatile LONG* Field(size_t offset) {
    if (!SharedBlock || offset > kSharedBlockSize - sizeof(LONG)) return nullptr;
    return reinterpret_cast<volatile LONG*>(reinterpret_cast<char*>(SharedBlock) + offset);
}

uint32_t SetSharedBits(size_t offset, uint32_t bits) {
    volatile LONG* field = Field(offset);
    return field ? static_cast<uint32_t>(InterlockedOr(field, static_cast<LONG>(bits))) : 0;
}

uint32_t ClearSharedBits(size_t offset, uint32_t bits) {
    volatile LONG* field = Field(offset);
    return field ? static_cast<uint32_t>(InterlockedAnd(field, static_cast<LONG>(~bits))) : 0;
}

uint32_t ExchangeShared(size_t offset, uint32_t value) {
    volatile LONG* field = Field(offset);
    return field ? static_cast<uint32_t>(InterlockedExchange(field, static_cast<LONG>(value))) : 0;
}

uint32_t ReadShared(size_t offset) {
    const volatile LONG* field = Field(offset);
    return field ? static_cast<uint32_t>(*field) : 0;
}
