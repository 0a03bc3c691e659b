// Whatever stops or fails a change: the old or the new database, and no other record lost.
#include "tests/windows/cdinfo/crash.h"

#include <gtest/gtest.h>

TEST(Crash, EveryCallThatFails) {
    const std::wstring path = Scratch(L"fault.cdp");
    for (int c = kFirstCreation; c < kAllChanges; ++c) {
        const Scene scene = MakeScene(path, static_cast<Change>(c));
        ASSERT_NE(scene.before, scene.after);
        for (int variant = 0; variant < 3; ++variant) {
            const int calls = ForEachFault([&](NthCall& nth) {
                CrashPlan plan{nth, 0, variant, 77};
                EXPECT_NE(kEndBad, RunPlan(scene, plan))
                    << "change " << c << " variant " << variant << " call " << nth.failAt;
                nth = plan.calls;
            });
            EXPECT_GE(calls, 6);
        }
    }
    Forget(path);
}

TEST(Crash, EveryPointAtWhichTheDiskStops) {
    const CrashCount count = CrashEverywhere(Scratch(L"crash.cdp"), 400);
    EXPECT_EQ(0, count.bad);
    EXPECT_GT(count.old, 50);
    EXPECT_GT(count.fresh, 20);
}

// Left-overs as a broken replace may leave them, and which file counts.
TEST(Crash, OpeningTakesTheGoodLeftOver) {
    const std::wstring path = Scratch(L"left.cdp");
    const Scene scene = MakeScene(path, kReplaceDisc);
    const Bytes fresh = Slurp(path);
    const Bytes& old = scene.base;
    const Bytes cut(fresh.begin(), fresh.begin() + 1536), none;
    const struct {
        Bytes main, old, fresh;
        int isNew; // -1: nothing there
    } cases[] = {
        {old, none, cut, 0},   {old, none, fresh, 0},   {none, old, fresh, 1}, {none, old, cut, 0},
        {none, old, none, 0},  {fresh, old, none, 1},   {fresh, cut, cut, 1},  {cut, old, none, 0},
        {none, none, cut, -1}, {none, none, fresh, -1}, {none, cut, fresh, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        Forget(path);
        if (!c.main.empty()) Spill(path, c.main);
        if (!c.old.empty()) Spill(path + kOldSuffix, c.old);
        if (!c.fresh.empty()) Spill(path + kNewSuffix, c.fresh);
        const World world = ReadWorld(path);
        EXPECT_EQ(c.isNew == 1, world == scene.after);
        EXPECT_EQ(c.isNew == 0, world == scene.before);
        EXPECT_TRUE(c.main != cut || Slurp(path + L".bad") == cut);
        EXPECT_TRUE(Add(path, 0x111, "Next"));
    }
    // A left-over that can't be read now may be the good one: nothing is made in its place.
    Forget(path);
    Spill(path + kOldSuffix, old);
    HANDLE other = CreateFileW((path + kOldSuffix).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                               0, nullptr);
    EXPECT_EQ(0, Add(path, 0x111, "Next"));
    EXPECT_FALSE(FileExists(path));
    CloseHandle(other);
    EXPECT_EQ(scene.before, ReadWorld(path));
    Forget(path);
}

// Flipped bits and cut ends: every operation comes back, and a sound database stays readable.
TEST(Damage, HundredsOfDamagedDatabases) {
    const std::wstring path = DefaultDatabasePath();
    MakeBase(path, kAddDisc);
    const Bytes base = Slurp(path);
    uint32_t random = 4711;
    int sound = 0;
    for (int n = 0; n < 300; ++n) {
        Forget(path);
        Bytes bytes = base;
        if (n % 3 == 0) bytes.resize(NextRandom(random) % base.size());
        for (int flips = 0; flips < n % 8 && !bytes.empty(); ++flips) {
            // Half of them in the header, the FAT and the directory, where they hurt.
            const size_t range = flips % 2 ? bytes.size() : std::min<size_t>(bytes.size(), 3072);
            bytes[NextRandom(random) % range] ^= static_cast<uint8_t>(1 << NextRandom(random) % 8);
        }
        Spill(path, bytes);
        LookUpDisc(MakeRecord(3 * 0x01234567u).get(), nullptr);
        sound += CountEntries(nullptr) > 0;
        ReadWorld(path);
        DeleteEntry(nullptr, 5 * 0x01234567u);
        const int stored = Add(path, 0x111, "After");
        EXPECT_EQ(stored ? "After" : "-", TitleOf(path, 0x111)) << n;
        // Nothing was thrown away that was not readable.
        EXPECT_TRUE(!FileExists(path + L".bad") || Slurp(path + L".bad") == bytes) << n;
    }
    Forget(path);
    EXPECT_GT(sound, 30);
    EXPECT_LT(sound, 270);
}
