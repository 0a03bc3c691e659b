// A disk that stops in the middle of a call, or fails one call and goes on: a file layer over the
// system's, and what must hold of a database afterwards. Used by the tests and by the benchmark.
#pragma once
#include "tests/windows/cdinfo/support.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include <objbase.h>

#include "tests/support/nth_call.h"

// ---- the disk

struct CrashPlan {
    NthCall calls;
    int dies = 0;        // after the hit every call fails; otherwise only the hit one
    int variant = 0;     // how far the call gets that is hit
    uint32_t random = 1; // where a write is cut, which sectors a lost cache takes with it
};

static struct {
    CrashPlan* plan;
    int dead;
    std::wstring dirty; // written and not yet flushed
} s_disk;

inline uint32_t NextRandom(uint32_t& state) {
    state = state * 1664525u + 1013904223u;
    return state >> 8;
}

// Sectors that were in the cache only: each is there or not.
inline void LoseSectors(const std::wstring& path) {
    Bytes bytes = Slurp(path);
    for (size_t at = 0; at + 512 <= bytes.size(); at += 512) {
        if (NextRandom(s_disk.plan->random) % 3 == 0) std::memset(bytes.data() + at, 0, 512);
    }
    Spill(path, bytes);
}

// 1 when the call is to fail; `isHit` tells the one during which the disk stops.
inline int Fails(int* isHit) {
    *isHit = 0;
    if (s_disk.dead) return 1;
    if (!FailsNow(s_disk.plan->calls)) return 0;
    *isHit = s_disk.plan->dies;
    s_disk.dead = s_disk.plan->dies;
    if (s_disk.dead && !s_disk.dirty.empty()) LoseSectors(s_disk.dirty);
    return 1;
}

// A call that works or fails; the disk may stop behind one that `kMayBeDone` in every other
// variant.
template <auto Call, int kMayBeDone = 0, class... Arguments>
void FailOrCall(FileLayer& disk, FileResult (*FileLayer::*)(Arguments...)) {
    disk.*Call = [](Arguments... arguments) {
        int hit;
        if (!Fails(&hit)) return (SystemFiles().*Call)(arguments...);
        if (kMayBeDone && hit && s_disk.plan->variant % 2) (SystemFiles().*Call)(arguments...);
        return kFileFailed;
    };
}

inline FileLayer CrashingDisk() {
    FileLayer disk = SystemFiles();
    FailOrCall<&FileLayer::read>(disk, &FileLayer::read);
    FailOrCall<&FileLayer::size>(disk, &FileLayer::size);
    FailOrCall<&FileLayer::lock>(disk, &FileLayer::lock);
    FailOrCall<&FileLayer::hold>(disk, &FileLayer::hold);
    FailOrCall<&FileLayer::move, 1>(disk, &FileLayer::move);
    FailOrCall<&FileLayer::remove, 1>(disk, &FileLayer::remove);
    disk.write = [](const wchar_t* path, std::span<const uint8_t> bytes) {
        int hit;
        if (!Fails(&hit)) {
            s_disk.dirty = path;
            return SystemFiles().write(path, bytes);
        }
        if (!hit && !s_disk.plan->variant) return kFileFailed;
        const size_t cut = NextRandom(s_disk.plan->random) % (bytes.size() + 1);
        SystemFiles().write(path, bytes.first(cut));
        // A disk that lies: less is there than it says.
        return !hit && s_disk.plan->variant == 2 ? kFileOk : kFileFailed;
    };
    disk.flush = [](const wchar_t* path) {
        int hit;
        if (Fails(&hit)) return kFileFailed;
        s_disk.dirty.clear();
        return SystemFiles().flush(path);
    };
    disk.replace = [](const wchar_t* path, const wchar_t* fresh, const wchar_t* backup) {
        int hit;
        if (!Fails(&hit)) {
            if (s_disk.dirty == fresh) s_disk.dirty = path;
            return SystemFiles().replace(path, fresh, backup);
        }
        // Refused, stopped half-way, or done without the caller hearing of it.
        if (s_disk.plan->variant % 3 == 1) SystemFiles().move(path, backup);
        if (s_disk.plan->variant % 3 == 2) SystemFiles().replace(path, fresh, backup);
        return kFileFailed;
    };
    return disk;
}

// ---- what the database holds

struct World {
    uint32_t pairs = 0;
    std::map<uint32_t, Bytes> entries;
    bool operator==(const World&) const = default;
};

inline World ReadWorld(const std::wstring& path) {
    World world;
    world.pairs = CountEntries(path.c_str());
    if (!world.pairs) return world; // nor an old-style file that would complain
    EnumerateEntries(
        nullptr, path.c_str(),
        [](const void* data, size_t length, uint32_t identity, void* context) {
            const auto* bytes = static_cast<const uint8_t*>(data);
            static_cast<World*>(context)->entries[identity] = Bytes(bytes, bytes + length);
            return 1;
        },
        &world, 0, 1);
    return world;
}

// A record as somebody might have typed it, another for each seed.
inline std::unique_ptr<CDInfoRecord> MakeTypedRecord(uint32_t identity, uint32_t seed) {
    auto record = MakeRecord(identity, "", static_cast<uint16_t>(3 + identity % 14));
    FormatText(record->title, kTextSize, "Title %u of disc %08X", seed, identity);
    for (int i = 0; i < record->trackCount; ++i)
        FormatText(record->trackTitles[i], kTextSize, "Song %d, take %u", i + 1, seed);
    return record;
}

// ---- changes, and what may be found after each was hit

constexpr uint32_t kFollowUp = 0x5EED5EED;

enum Change { kFirstCreation, kAddDisc, kReplaceDisc, kDeleteDisc, kAllChanges };

inline void MakeBase(const std::wstring& path, Change change) {
    Forget(path);
    if (change == kFirstCreation) return;
    StoreBatch* batch = BeginStoreBatch(path.c_str());
    for (uint32_t n = 1; n <= 14; ++n)
        BatchAdd(batch, *MakeTypedRecord(n * 0x01234567u, n));
    CommitStoreBatch(batch);
}

inline int MakeChange(const std::wstring& path, Change change) {
    const uint32_t known = 5 * 0x01234567u;
    if (change == kDeleteDisc) return DeleteEntry(path.c_str(), known);
    const uint32_t disc = change == kReplaceDisc ? known : 0xABCDEF01u;
    return AddOrReplace(path.c_str(), *MakeTypedRecord(disc, 99), 0, nullptr);
}

struct Scene {
    std::wstring path;
    Change change;
    Bytes base; // the file before; empty: none
    World before, after;
};

inline Scene MakeScene(const std::wstring& path, Change change) {
    Scene scene{path, change, {}, {}, {}};
    MakeBase(path, change);
    scene.base = Slurp(path);
    scene.before = ReadWorld(path);
    MakeChange(path, change);
    scene.after = ReadWorld(path);
    return scene;
}

// The platform's own view: it opens, and an entry can be read.
inline int PlatformOpens(const std::wstring& path, const World& world) {
    if (!FileExists(path)) return world.pairs == 0;
    IStorage* root = nullptr;
    if (FAILED(StgOpenStorage(path.c_str(), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, nullptr, 0,
                              &root)))
        return 0;
    int good = 1;
    for (const auto& [identity, bytes] : world.entries) {
        wchar_t name[16];
        wsprintfW(name, L"%08X", static_cast<unsigned>(identity));
        IStream* stream = nullptr;
        Bytes read(bytes.size());
        root->OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream);
        if (stream) stream->Read(read.data(), static_cast<ULONG>(read.size()), nullptr);
        good &= stream && read == bytes;
        if (stream) stream->Release();
    }
    root->Release();
    return good;
}

enum CrashEnd { kEndBad = 0, kEndOld, kEndNew };

// Runs the change with the plan, then opens the database as after a restart. Bad: neither the old
// nor the new state, another record lost, a result that lies, or a database that takes no more.
inline CrashEnd RunPlan(const Scene& scene, CrashPlan& plan) {
    Forget(scene.path);
    if (!scene.base.empty()) Spill(scene.path, scene.base);
    const FileLayer disk = CrashingDisk();
    s_disk = {&plan, 0, {}};
    SetStoreFiles(&disk);
    const int result = MakeChange(scene.path, scene.change);
    SetStoreFiles(nullptr);

    World world = ReadWorld(scene.path);
    const CrashEnd end = world == scene.after ? kEndNew : world == scene.before ? kEndOld : kEndBad;
    if (end == kEndBad || (result && end == kEndOld)) return kEndBad;
    if (!result && end == kEndNew && !plan.dies) return kEndBad; // "not stored", and yet it is
    if (!PlatformOpens(scene.path, world) || !Add(scene.path, kFollowUp, "Next")) return kEndBad;
    World next = ReadWorld(scene.path);
    if (next.entries.erase(kFollowUp) != 1 || next.entries != world.entries) return kEndBad;
    if (FileExists(scene.path + kNewSuffix) || FileExists(scene.path + kOldSuffix)) return kEndBad;
    return end;
}

struct CrashCount {
    int images = 0, bad = 0, old = 0, fresh = 0;
};

// Stops the disk at every call of every change, in every variant, then again with other cuts until
// so many images have been looked at.
inline CrashCount CrashEverywhere(const std::wstring& path, int images) {
    CrashCount count;
    for (int c = kFirstCreation; c < kAllChanges; ++c) {
        const Scene scene = MakeScene(path, static_cast<Change>(c));
        const int share = images * (c + 1) / kAllChanges;
        for (int round = 0; count.images < share; ++round) {
            for (int at = 1; count.images < share; ++at) {
                CrashPlan plan{{at, 0}, 1, round, static_cast<uint32_t>(round * 7919 + at + 1)};
                const CrashEnd end = RunPlan(scene, plan);
                if (plan.calls.count < at) break; // the change makes fewer calls
                ++count.images;
                count.old += end == kEndOld;
                count.fresh += end == kEndNew;
                if (end == kEndBad && !count.bad++)
                    std::printf("bad: change %d, call %d, round %d\n", c, at, round);
            }
        }
    }
    Forget(path);
    return count;
}
