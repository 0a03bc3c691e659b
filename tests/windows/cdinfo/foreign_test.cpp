// Databases that go to or come from another compound-file tool. tests/foreign/compound.sh names
// the file in the environment; without it there is no such test.
#include "tests/windows/cdinfo/crash.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/big_archive.h"

constexpr uint32_t kSmallDisc = 0x00C0FFEE, kLargeDisc = 0x0000ABCD;

static std::wstring s_given;

static void WriteForOthers() {
    ASSERT_TRUE(Add(s_given, kSmallDisc, "Made here"));
    auto large = MakeRecord(kLargeDisc, "Large one", 40); // too long for the small streams
    for (auto& comment : large->trackComments)
        std::memset(comment, 'c', 200);
    ASSERT_TRUE(AddOrReplace(s_given.c_str(), *large, 0, nullptr));
}

// Two batches, each laid out anew; the second one carries the first one's discs over.
static void WriteManyForOthers() {
    for (const uint32_t first : {1, 4901}) {
        StoreBatch* batch = BeginStoreBatch(s_given.c_str());
        for (uint32_t n = first; n <= (first == 1 ? 4900u : 5000u); ++n)
            ASSERT_TRUE(BatchAdd(batch, *BigRecord(n)));
        ASSERT_TRUE(CommitStoreBatch(batch));
    }
}

static void ReadAndChangeTheirs() {
    auto record = std::make_unique<CDInfoRecord>();
    ASSERT_TRUE(ReadEntry(s_given.c_str(), kSmallDisc, record.get()));
    EXPECT_STREQ("Made elsewhere", record->title);
    ASSERT_TRUE(Add(s_given, 0x77, "Mine"));
    const World after = ReadWorld(s_given);
    EXPECT_EQ(2u, after.entries.size());
    EXPECT_TRUE(PlatformOpens(s_given, after));
    ASSERT_TRUE(DeleteEntry(s_given.c_str(), kSmallDisc));
}

template <auto kBody> struct Foreign : testing::Test {
    void TestBody() override { kBody(); }
};

template <auto kBody> static int Register(const char* variable, const char* name) {
    const char* given = std::getenv(variable);
    if (!given) return 0;
    s_given.assign(given, given + std::strlen(given));
    testing::RegisterTest("Foreign", name, nullptr, nullptr, __FILE__, __LINE__,
                          []() -> testing::Test* { return new Foreign<kBody>; });
    return 1;
}

static const int s_writing = Register<WriteForOthers>("TONVISTA_DATABASE_OUT", "Write");
static const int s_many = Register<WriteManyForOthers>("TONVISTA_DATABASE_MANY", "WriteMany");
static const int s_reading = Register<ReadAndChangeTheirs>("TONVISTA_DATABASE_IN", "Read");
