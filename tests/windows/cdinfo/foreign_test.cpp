// Databases that go to or come from another compound-file tool. tests/foreign/compound.sh names
// the files in the environment; they are not run without it.
#include "tests/windows/cdinfo/crash.h"

#include <gtest/gtest.h>

#include <cstdlib>

constexpr uint32_t kSmallDisc = 0x00C0FFEE, kLargeDisc = 0x0000ABCD;

static std::wstring GivenPath(const char* variable) {
    const char* given = std::getenv(variable);
    return std::wstring(given, given + (given ? std::strlen(given) : 0));
}

TEST(DISABLED_Foreign, WritesForOthers) {
    const std::wstring path = GivenPath("TONVISTA_DATABASE_OUT");
    ASSERT_TRUE(Add(path, kSmallDisc, "Made here"));
    auto large = MakeRecord(kLargeDisc, "Large one", 40); // too long for the small streams
    for (auto& comment : large->trackComments)
        std::memset(comment, 'c', 200);
    ASSERT_TRUE(AddOrReplace(path.c_str(), *large, 0, nullptr));
}

TEST(DISABLED_Foreign, ReadsAndChangesWhatOthersMade) {
    const std::wstring path = GivenPath("TONVISTA_DATABASE_IN");
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
}
