// What the media player makes of files that are dropped on it.
#include "media/playlist_win.h"
#include "media/player_state_win.h"
#include "tests/windows/media/drop.h"

#include <gtest/gtest.h>

static const std::string kFolder = "C:\\TonvistaDrop";

static void MakeFile(const std::string& path) {
    CloseHandle(CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
}

TEST(MediaDrop, OneFileOpensSeveralBecomeAList) {
    CreateDirectoryA(kFolder.c_str(), nullptr);
    CreateDirectoryA((kFolder + "\\songs").c_str(), nullptr);
    char before[MAX_PATH] = "";
    GetCurrentDirectoryA(MAX_PATH, before);
    SetCurrentDirectoryA(kFolder.c_str());
    const std::string one = kFolder + "\\one.wav", two = kFolder + "\\songs\\two.mp3",
                      other = kFolder + "\\songs\\two.txt", list = kFolder + "\\list.m3u",
                      songs = kFolder + "\\songs", none = kFolder + "\\none.wav",
                      tooLong = kFolder + "\\" + std::string(300, 'x') + ".wav";
    for (const std::string& path : {one, two, other})
        MakeFile(path);
    WritePlaylist({"", 0, {"one.wav", "D:\\three.wav"}}, list);
    const struct {
        std::vector<std::string> dropped;
        std::string only;
        std::vector<std::string> entries;
    } rows[] = {{{one}, one, {one}},
                {{none}, none, {}},
                {{songs}, "", {two}},
                {{one, one, none}, "", {one, one}},
                {{songs, list, one}, "", {two, one, "D:\\three.wav", one}},
                {{tooLong, none}, "", {}},
                {{}, "", {}}};
    for (const auto& row : rows) {
        const HDROP drop = DropOf(row.dropped);
        Playlist opened = {"before", 7, {}}, written = {};
        EXPECT_EQ(OnlyDroppedFile(drop), row.only) << &row - rows;
        EXPECT_EQ(OpenDroppedFiles(drop, &opened), !row.entries.empty()) << &row - rows;
        EXPECT_EQ(opened.entries, row.entries) << &row - rows;
        DragFinish(drop);
        if (row.entries.empty()) {
            EXPECT_EQ(opened.name, "before");
            continue;
        }
        EXPECT_EQ(opened.name, kFolder + "\\Default.pls");
        EXPECT_EQ(opened.position, 0u);
        ASSERT_TRUE(ReadPlaylist(opened.name, &written));
        EXPECT_EQ(written.entries, row.entries) << "kept for the next start";
    }
    for (const std::string& path : {one, two, other, list, kFolder + "\\Default.pls"})
        DeleteFileA(path.c_str());
    SetCurrentDirectoryA(before);
}
