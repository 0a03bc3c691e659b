// Changes to a playlist in the editor, and the texts of its dialogs.
#include "media/moves.h"

#include "media/lengths.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

// Entries of one letter each; the current one is a capital.
static Playlist Letters(const std::string& letters) {
    Playlist list = {};
    list.position = 99;
    for (const char c : letters) {
        if (c < 'a') list.position = static_cast<uint32_t>(list.entries.size());
        list.entries.emplace_back(1, c < 'a' ? static_cast<char>(c + 32) : c);
    }
    return list;
}
static std::string Written(const Playlist& list) {
    std::string letters;
    for (size_t i = 0; i < list.entries.size(); ++i)
        letters +=
            i == list.position ? static_cast<char>(list.entries[i][0] - 32) : list.entries[i][0];
    return letters;
}
static EntryMarks Bits(const std::string& marks) {
    EntryMarks bits;
    for (const char c : marks)
        bits.push_back(c == 'x');
    return bits;
}

TEST(PlaylistMoves, RowsAndTheCurrentEntryStayTogether) {
    enum { kRise, kSink, kDrop, kRemove };
    const struct {
        int what, gap;
        const char *list, *marks, *after, *marksAfter;
    } cases[] = {
        {kRise, 0, "abCde", "..xx.", "aCdbe", ".xx.."},
        {kRise, 0, "Abc", "x.x", "Acb", "xx."},
        {kSink, 0, "Abcd", "xx..", "cAbd", ".xx."},
        {kSink, 0, "abcd", "x.x.", "badc", ".x.x"},
        {kDrop, 0, "abcD", ".x.x", "bDac", "xx.."},
        {kDrop, 4, "Abcd", "x.x.", "bdAc", "..xx"},
        {kDrop, 1, "abc", "x..", "", ""},
        {kDrop, -7, "abC", "..x", "Cab", "x.."},
        {kDrop, 999, "Abc", "x..", "bcA", "..x"},
        {kRemove, 0, "abCde", "x..x.", "bCe", ""},
        {kRemove, 0, "abCde", "..x..", "abDe", ""},
        {kRemove, 0, "abC", "..x", "aB", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.list) + " " + c.marks + " " + std::to_string(c.what));
        Playlist list = Letters(c.list);
        EntryMarks marks = Bits(c.marks);
        const int changed = c.what == kRemove ? RemoveEntries(&list, marks)
                            : c.what == kDrop
                                ? DropEntries(&list, &marks, c.gap)
                                : MoveEntries(&list, &marks, c.what == kRise ? -1 : 1);
        EXPECT_EQ(changed, *c.after != 0);
        EXPECT_EQ(Written(list), changed ? c.after : c.list);
        if (*c.marksAfter) {
            EXPECT_EQ(marks, Bits(c.marksAfter));
        }
    }
    Playlist list = Letters("aB");
    RemoveEntries(&list, {1, 1});
    EXPECT_EQ(list.position, 0u);
}

TEST(PlaylistMoves, InsertedInOrderWithinTheLimits) {
    for (const auto& [index, after] : std::initializer_list<std::pair<int, const char*>>{
             {1, "axyB"}, {0, "xyaB"}, {2, "aBxy"}, {-1, "aBxy"}, {700, "aBxy"}}) {
        Playlist list = Letters("aB");
        const InsertTally tally =
            InsertPaths(&list, {"x", "", std::string(kMediaPathMax + 1, 'z'), "y"}, index);
        EXPECT_EQ(Written(list), after);
        EXPECT_EQ(tally.added, 2);
        EXPECT_EQ(tally.tooLong, 1);
    }
    Playlist list = {};
    list.entries.assign(kPlaylistMax - 1, "a");
    const InsertTally tally = InsertPaths(&list, {"x", "y", "z"}, 3);
    EXPECT_EQ(tally.added, 1);
    EXPECT_EQ(tally.full, 2);
    EXPECT_EQ(list.entries[3], "x");
}

TEST(PlaylistMoves, AnotherFolderMakesEntriesWhole) {
    const Playlist list = {"C:\\Lists\\x.m3u", 1, {"a.mp3", "D:\\b.mp3", "..\\c.wav"}};
    EXPECT_EQ(ListForFile(list, "c:\\LISTS\\y.m3u").entries, list.entries);
    const Playlist moved = ListForFile(list, "D:\\y.pls");
    EXPECT_EQ(moved.entries[0], "C:\\Lists\\a.mp3");
    EXPECT_EQ(moved.entries[1], "D:\\b.mp3");
    EXPECT_EQ(moved.entries[2], "C:\\Lists\\..\\c.wav");
    EXPECT_EQ(moved.name, "D:\\y.pls");
}

TEST(PlaylistTexts, LengthsAndNames) {
    EXPECT_EQ(TotalText(59), "PlayList: 59 Seconds");
    EXPECT_EQ(TotalText(60), "PlayList: 01:00");
    EXPECT_EQ(TotalText(512LL * 100000000), "PlayList: 853333333:20");
    for (const double none : {-1.0, 0.0, std::nan(""), -HUGE_VAL})
        EXPECT_EQ(WholeSeconds(none), 0);
    EXPECT_EQ(WholeSeconds(HUGE_VAL), 100000000);
    EXPECT_EQ(LengthText(-1) + LengthText(0) + LengthText(std::nan("")) + LengthText(.5) +
                  LengthText(754.9),
              "--0:0012:34");
    const struct {
        const char *path, *folder, *title;
    } paths[] = {{"C:\\m\\a.b.mp3", "C:\\m", "a.b"},
                 {"C:a.mp3", "C:", "a"},
                 {"\\a", "\\", "a"},
                 {".mp3", "", ".mp3"},
                 {"", "", ""}};
    for (const auto& p : paths) {
        EXPECT_EQ(FolderOf(p.path), p.folder);
        EXPECT_EQ(PlainTitle(p.path), p.title);
    }
}

TEST(PlaylistTexts, TheAnswerOfAFileDialog) {
    using Paths = std::vector<std::string>;
    const struct {
        std::string answer;
        Paths files;
        const char* folder;
    } cases[] = {
        {std::string("C:\\m\0a b.mp3\0c.wav\0\0x", 20),
         {"C:\\m\\a b.mp3", "C:\\m\\c.wav"},
         "C:\\m"},
        {std::string("C:\\\0a.mp3\0b.mp3\0\0", 18), {"C:\\a.mp3", "C:\\b.mp3"}, "C:"},
        {std::string("C:\\m\0a.mp3", 10), {"C:\\m\\a.mp3"}, "C:\\m"}, // no end
        {std::string("\0\0", 2), {}, ""},
    };
    for (const auto& c : cases) {
        std::string folder;
        EXPECT_EQ(ChosenFiles(c.answer.data(), c.answer.size(), &folder), c.files);
        EXPECT_EQ(folder, c.folder);
    }
}
