// Databases that go to or come from another compound-file tool. tests/foreign/compound.sh names
// the files in the environment; without it the tests do the same with a file of their own.
#include "tests/windows/cdinfo/crash.h"

#include <gtest/gtest.h>

#include <cstdlib>

constexpr uint32_t kSmallDisc = 0x00C0FFEE, kLargeDisc = 0x0000ABCD;

static std::wstring GivenPath(const char* variable) {
    const char* given = std::getenv(variable);
    if (!given) return Scratch(L"foreign.cdp");
    return std::wstring(given, given + std::strlen(given));
}

TEST(Foreign, WritesForOthers) {
    const std::wstring path = GivenPath("TONVISTA_DATABASE_OUT");
    Forget(path);
    ASSERT_TRUE(Add(path, kSmallDisc, "Made here"));
    auto large = MakeRecord(kLargeDisc, "Large one", 40); // too long for the small streams
    for (auto& comment : large->trackComments)
        std::memset(comment, 'c', 200);
    ASSERT_TRUE(AddOrReplace(path.c_str(), *large, 0, nullptr));
    EXPECT_EQ(3u, CountEntries(path.c_str()));
    if (!std::getenv("TONVISTA_DATABASE_OUT")) Forget(path);
}

TEST(Foreign, ReadsAndChangesWhatOthersMade) {
    const std::wstring path = GivenPath("TONVISTA_DATABASE_IN");
    if (!std::getenv("TONVISTA_DATABASE_IN")) {
        Forget(path);
        Add(path, kSmallDisc, "Made elsewhere", 2);
    }
    auto record = std::make_unique<CDInfoRecord>();
    ASSERT_TRUE(ReadEntry(path.c_str(), kSmallDisc, record.get()));
    EXPECT_STREQ("Made elsewhere", record->title);
    EXPECT_EQ(2, record->trackCount);
    const World before = ReadWorld(path);
    const auto mine = MakeTypedRecord(0x77, 7);
    ASSERT_TRUE(AddOrReplace(path.c_str(), *mine, 0, nullptr));
    World after = ReadWorld(path);
    EXPECT_EQ(before.pairs + 1, after.pairs);
    EXPECT_EQ(1u, after.entries.erase(0x77));
    EXPECT_EQ(before.entries, after.entries);
    EXPECT_TRUE(PlatformOpens(path, after));
    ASSERT_TRUE(DeleteEntry(path.c_str(), kSmallDisc));
    EXPECT_EQ("-", TitleOf(path, kSmallDisc));
    if (!std::getenv("TONVISTA_DATABASE_IN")) Forget(path);
}
