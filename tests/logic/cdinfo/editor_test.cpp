// Two edits of one disc at once.
#include "cdinfo/editor.h"

#include "core/text.h"

#include <gtest/gtest.h>

#include <memory>

TEST(Editor, TwoEditsAtOnceBothStand) {
    auto discs = std::make_unique<CDInfoRecord[]>(3);
    CDInfoRecord &before = discs[0], &after = discs[1], &now = discs[2];
    before.trackCount = 2;
    CopyText(before.title, "Title");
    CopyText(before.trackArtists[0], "One");
    CopyText(before.trackArtists[1], "One");
    DefaultProgram(&before);
    after = now = before;
    CopyText(now.title, "Theirs");
    CopyText(now.trackArtists[1], "Two");
    CopyText(now.comment, "theirs");
    now.revision = 3;
    CopyText(after.trackTitles[0], "Ours");
    CopyText(after.comment, "ours");
    after.programCount = 1;
    after.revision = 1;
    auto twoMore = std::make_unique<CDInfoRecord>(now);
    MergeEdit(before, after, &now);
    EXPECT_STREQ("Theirs", now.title);
    EXPECT_STREQ("Ours", now.trackTitles[0]);
    EXPECT_STREQ("ours", now.comment) << "the later edit of one field";
    EXPECT_STREQ(kVariousArtists, now.discArtist);
    EXPECT_EQ(1, now.programCount);
    EXPECT_EQ(4, now.revision);
    twoMore->trackCount = 4; // another pressing: nothing to be told apart
    MergeEdit(before, after, twoMore.get());
    EXPECT_STREQ("Title", twoMore->title);
    EXPECT_EQ(2, twoMore->trackCount);
}
