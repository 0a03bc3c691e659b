// Old-style CDP files: each fault, and how many entries stand before it.
#include "cdinfo/old_style.h"

#include <gtest/gtest.h>

#include <vector>

struct OldFile {
    std::vector<uint8_t> bytes;
    OldFile(std::initializer_list<uint32_t> head) {
        for (const uint32_t number : head)
            Number(number);
    }
    OldFile& Number(uint32_t value) {
        for (int i = 0; i < 4; ++i)
            bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
        return *this;
    }
    OldFile& Entry(uint32_t identity, uint32_t checksum, std::vector<uint8_t> data) {
        Number(static_cast<uint32_t>(data.size())).Number(identity).Number(checksum);
        bytes.insert(bytes.end(), data.begin(), data.end());
        return *this;
    }
};

TEST(OldStyle, FaultsAndWhatStandsBeforeThem) {
    constexpr uint32_t kMagic = 0x564E4F54, kSixSum = 0x08040201; // the first word alone
    const std::vector<uint8_t> six = {1, 2, 4, 8, 0x55, 0x66};
    const struct {
        const char* why;
        OldFile file;
        CdpFault fault;
        uint32_t read;
    } cases[] = {
        {"empty", {}, kCdpShort, 0},
        {"another file", {kMagic + 1, 9, 0}, kCdpBadMagic, 0},
        {"version 2", {kMagic, 2, 0}, kCdpTooNew, 0},
        {"eight bytes", {kMagic, 1}, kCdpShort, 0},
        {"65537", {kMagic, 1, 65537}, kCdpBadCount, 0},
        {"65536 announced", {kMagic, 1, 65536}, kCdpShort, 0},
        {"none", {kMagic, 0, 0}, kCdpGood, 0},
        {"six bytes", OldFile{kMagic, 1, 1}.Entry(7, kSixSum, six), kCdpGood, 1},
        {"missing bytes count as 0", OldFile{kMagic, 1, 1}.Entry(7, 0x0201, {1, 2}), kCdpGood, 1},
        {"all words", OldFile{kMagic, 1, 1}.Entry(7, 0x0E0E0A0A, {8, 2, 8, 2, 2, 8, 6, 12, 9}),
         kCdpGood, 1},
        {"version 0 with a sum", OldFile{kMagic, 0, 2}.Entry(7, 0, six).Entry(8, 1, six),
         kCdpBadChecksum, 1},
        {"wrong sum", OldFile{kMagic, 1, 2}.Entry(7, kSixSum, six).Entry(8, 0, six),
         kCdpBadChecksum, 1},
        {"39672 bytes", {kMagic, 1, 1, 39672, 7, 0}, kCdpBadSize, 0},
        {"39671 that are not there", {kMagic, 1, 1, 39671, 7, 0}, kCdpShort, 0},
        {"cut in the second", OldFile{kMagic, 0, 2}.Entry(7, 0, six).Number(6), kCdpShort, 1},
        {"one more than announced", OldFile{kMagic, 0, 1}.Entry(7, 0, six).Entry(8, 0, six),
         kCdpGood, 1},
    };
    for (const auto& c : cases) {
        CdpReader reader;
        CdpEntry entry;
        CdpFault fault = OpenCdp(c.file.bytes, &reader);
        uint32_t read = 0;
        while (fault == kCdpGood && ReadCdpEntry(&reader, &entry, &fault))
            EXPECT_EQ(entry.identity, 7 + read++) << c.why;
        EXPECT_EQ(fault, c.fault) << c.why;
        EXPECT_EQ(read, c.read) << c.why;
    }
}
