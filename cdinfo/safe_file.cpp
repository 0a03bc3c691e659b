// See safe_file.h. What may be found beside the file, and what counts then:
//
//   file        .store-old    .store-new
//   sound       -             any           the file; the new one was never put in place
//   sound       any           any           the file; only the removal of the old one is missing
//   missing     sound         sound         the new one: a replace begins after its flush
//   missing     sound         else          the old one
//   not sound   sound         any           the old one; the file is moved aside to ".bad"
//   missing     -             any           nothing: a first creation that was cut off, and may
//                                           not have been flushed
//
// Left-overs are touched under the path's lock only, so a change that is going on in another
// process is never taken for a broken one.
#include "cdinfo/safe_file.h"

#include <cstring>

constexpr int kMaxBadFiles = 1000;

static std::wstring Beside(const SafeFile& file, const wchar_t* suffix) {
    return file.path + suffix;
}

static LoadState ReadAndCheck(const FileLayer& files, const std::wstring& path,
                              std::vector<uint8_t>* bytes, CompoundView* view) {
    const FileResult read = files.read(path.c_str(), bytes);
    if (read == kFileMissing) return kLoadAbsent;
    if (read != kFileOk) return kLoadUnreadable;
    switch (CheckCompound(*bytes, view)) {
    case kCompoundGood: return kLoadGood;
    case kCompoundDamaged: return kLoadDamaged;
    default: return kLoadForeign;
    }
}

static LoadState ReadFile(SafeFile* file) {
    file->state = ReadAndCheck(*file->files, file->path, &file->bytes, &file->view);
    if (file->state != kLoadGood) file->bytes.clear();
    return file->state;
}

static LoadState StateOf(const SafeFile& file, const wchar_t* suffix) {
    std::vector<uint8_t> bytes;
    CompoundView view;
    return ReadAndCheck(*file.files, Beside(file, suffix), &bytes, &view);
}

static int Exists(const SafeFile& file, const wchar_t* suffix) {
    uint64_t size;
    return file.files->size(Beside(file, suffix).c_str(), &size) != kFileMissing;
}

static int Move(const SafeFile& file, const wchar_t* from, const wchar_t* to) {
    return file.files->move(Beside(file, from).c_str(), Beside(file, to).c_str()) == kFileOk;
}

static void Remove(const SafeFile& file, const wchar_t* suffix) {
    file.files->remove(Beside(file, suffix).c_str());
}

// Moves a file to the first free of ".bad", ".bad2", ...
static int MoveAside(const SafeFile& file, const wchar_t* suffix) {
    for (int n = 1; n <= kMaxBadFiles; ++n) {
        const std::wstring name = n == 1 ? kBadSuffix : kBadSuffix + std::to_wstring(n);
        if (Exists(file, name.c_str())) continue;
        if (Move(file, suffix, name.c_str())) return 1;
        if (!Exists(file, name.c_str())) return 0; // the name was not the hindrance
    }
    return 0;
}

static int IsUnsound(LoadState state) {
    return state == kLoadForeign || state == kLoadDamaged;
}

// Puts right what a broken replace left, and loads what counts. The lock is held.
static LoadState SettleLocked(SafeFile* file) {
    ReadFile(file);
    if (file->state == kLoadUnreadable) return file->state;
    if (file->state == kLoadGood) {
        if (Exists(*file, kNewSuffix)) Remove(*file, kNewSuffix);
        if (Exists(*file, kOldSuffix)) Remove(*file, kOldSuffix);
        return file->state;
    }
    if (!Exists(*file, kOldSuffix)) return file->state;
    const LoadState old = StateOf(*file, kOldSuffix);
    // As long as the left-overs can't be read nobody may take the file for absent.
    if (old == kLoadUnreadable) return file->state = kLoadUnreadable;
    if (file->state == kLoadAbsent && old != kLoadAbsent) {
        const LoadState fresh = StateOf(*file, kNewSuffix);
        if (fresh == kLoadUnreadable) return file->state = kLoadUnreadable;
        if (fresh == kLoadGood || old == kLoadGood) {
            if (!Move(*file, fresh == kLoadGood ? kNewSuffix : kOldSuffix, L""))
                return file->state = kLoadUnreadable;
            return ReadFile(file);
        }
    }
    if (old != kLoadGood) {
        if (old != kLoadAbsent) MoveAside(*file, kOldSuffix);
        return file->state;
    }
    if (!MoveAside(*file, L"") || !Move(*file, kOldSuffix, L""))
        return file->state = kLoadUnreadable;
    return ReadFile(file);
}

LoadState LoadSafeFile(SafeFile* file) {
    ReadFile(file);
    if (file->state == kLoadGood || file->state == kLoadUnreadable) return file->state;
    // Missing or bad, for good or for the moment of a replace: only the lock tells.
    void* lock = nullptr;
    if (file->files->lock(file->path.c_str(), &lock) != kFileOk)
        return file->state = kLoadUnreadable;
    SettleLocked(file);
    file->files->unlock(lock);
    return file->state;
}

int BeginChange(SafeFile* file) {
    const FileLayer& files = *file->files;
    file->state = kLoadUnreadable;
    if (files.lock(file->path.c_str(), &file->lock) != kFileOk) return 0;
    const FileResult held = files.hold(file->lock, file->path.c_str());
    if (held != kFileOk && held != kFileMissing) return 0;
    SettleLocked(file);
    if (file->state == kLoadDamaged) return file->keepsBad;
    return file->state != kLoadUnreadable;
}

void EndChange(SafeFile* file) {
    if (file->lock) file->files->unlock(file->lock);
    file->lock = nullptr;
}

// 1 same, 0 different, -1 could not be read.
static int Compare(SafeFile& file, const wchar_t* suffix, std::span<const uint8_t> image) {
    std::vector<uint8_t>& bytes = file.readBack; // kept: fresh megabytes cost more than the read
    if (file.files->read(Beside(file, suffix).c_str(), &bytes) != kFileOk) return -1;
    return bytes.size() == image.size() && !std::memcmp(bytes.data(), image.data(), image.size());
}

static int WriteBeside(SafeFile& file, std::span<const uint8_t> image) {
    const std::wstring fresh = Beside(file, kNewSuffix);
    return file.files->write(fresh.c_str(), image) == kFileOk &&
           file.files->flush(fresh.c_str()) == kFileOk && Compare(file, kNewSuffix, image) == 1;
}

// After a replace that failed: 1 when it worked after all, else the old file has its name again
// if that can be had.
static int AfterFailedReplace(SafeFile& file, std::span<const uint8_t> image) {
    if (!Exists(file, L"")) {
        if (Move(file, kOldSuffix, L"")) Remove(file, kNewSuffix);
        return 0;
    }
    if (Exists(file, kOldSuffix) && Compare(file, L"", image) == 1) return 1;
    Remove(file, kNewSuffix);
    return 0;
}

static int ReplaceWithNew(SafeFile& file, std::span<const uint8_t> image) {
    const FileResult replaced = file.files->replace(
        file.path.c_str(), Beside(file, kNewSuffix).c_str(), Beside(file, kOldSuffix).c_str());
    if (replaced != kFileOk && !AfterFailedReplace(file, image)) return 0;
    file.files->letGo(file.lock); // what it holds is now the old file
    const int same = Compare(file, L"", image);
    if (same == 0) { // the disk did not keep what it had shown us
        Remove(file, L"");
        Move(file, kOldSuffix, L"");
        return 0;
    }
    // Someone may have it open just now; then the old file stays until the next opening.
    if (same == 1) Remove(file, kOldSuffix);
    return 1;
}

int PutInPlace(SafeFile* file, std::span<const uint8_t> image) {
    if (!WriteBeside(*file, image)) {
        Remove(*file, kNewSuffix);
        return 0;
    }
    if (file->state == kLoadAbsent || (IsUnsound(file->state) && file->keepsBad)) {
        if (IsUnsound(file->state) && !MoveAside(*file, L"")) {
            Remove(*file, kNewSuffix);
            return 0;
        }
        if (Move(*file, kNewSuffix, L"")) return 1;
        Remove(*file, kNewSuffix);
        return 0;
    }
    return ReplaceWithNew(*file, image);
}
