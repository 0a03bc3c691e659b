// What a drive tells becomes a record, whatever it tells.
#include "cd/toc.h"

#include <gtest/gtest.h>

#include <algorithm>

TEST(Toc, LengthsLeadOutAndAnyTrackCount) {
    for (uint32_t count : {0u, 1u, 3u, 99u, 100u, 101u, UINT32_MAX}) {
        TocReading reading;
        reading.trackCount = count;
        const uint32_t tracks = std::min(count, 100u);
        for (uint32_t i = 0; i < kMaxTracks; ++i)
            reading.starts[i] = MakeMsf(i / 2, 2, i % 2 * 74); // the odd ones 74 frames later
        reading.lastLength = MakeMsf(0, 20, 74);
        CDInfoRecord record;
        ApplyToc(reading, &record);
        EXPECT_EQ(record.trackCount, tracks);
        if (!tracks) continue;
        EXPECT_EQ(record.trackStarts[0], 150u);
        EXPECT_EQ(record.trackStarts[tracks], record.trackStarts[tracks - 1] + 20 * 75 + 74);
        EXPECT_EQ(record.trackSeconds[tracks - 1], 20);
        EXPECT_EQ(record.trackSeconds[0], tracks > 1 ? 0 : 20) << "74 frames are no second";
        for (Msf& start : reading.starts)
            start = UINT32_MAX; // whatever a drive says
        reading.lastLength = UINT32_MAX;
        ApplyToc(reading, &record);
        EXPECT_EQ(record.trackCount, tracks);
    }
}
