// Playlists in files, against what the platform's own functions say of them; folders, and the
// history in the settings.
#include "media/history_win.h"
#include "media/playlist_win.h"

#include "core/platform.h"
#include "core/settings.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

using Entries = std::vector<std::string>;
static const std::string kFolder = "C:\\TonvistaLists\\", kList = kFolder + "x.lst";

static void Put(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}
static std::string Bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
static std::string FileLines(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i)
        text += "File" + std::to_string(i) + "=C:\\a.mp3\r\n";
    return text;
}
static Entries KeyByKey(int count) {
    Entries entries;
    for (int k = 1; k <= count && entries.size() < kPlaylistMax; ++k) {
        char value[kMediaPathMax + 1];
        GetPrivateProfileStringA("playlist", ("File" + std::to_string(k)).c_str(), "", value,
                                 sizeof value, kList.c_str());
        if (*value) entries.push_back(value);
    }
    return entries;
}

struct PlaylistFiles : testing::Test {
    PlaylistFiles() {
        std::filesystem::remove_all(kFolder);
        std::filesystem::create_directory(kFolder);
    }
};

TEST_F(PlaylistFiles, OfTheWild) {
    const struct {
        std::string bytes;
        int count;   // of keys to compare with; 0 where the file is an M3U
        size_t held; // entries
    } lists[] = {
        {"[playlist]\r\nNumberOfEntries=3\r\nFile1=a b.mp3\r\nFile3=c.mp3\r\n", 3, 2},
        {"[PLAYLIST]\nFile02=y\nFILE2= 'b;c' \nfile1=\"a\"\nFile1=x\nnumberofentries=2\n", 2, 2},
        {"\xEF\xBB\xBF[ playlist ]\r\nFile1=\xC3\xA4\r\nFile2=\r\nNumberOfEntries=2", 2, 1},
        {"[a]\nFile1=n\n[playlist]\n;File1=n\nFile2\nFile3=c\nNumberOfEntries=3x\n[playlist]"
         "\nFile1=n",
         3, 1},
        {"[playlist]\nNumberOfEntries=600\n" + FileLines(600), 600, 512},
        {"[playlist]\nNumberOfEntries=1\nFile1=" + std::string(700, 'x') + "\nFile2=n", 1, 1},
        {"[playlist]\nNumberOfEntries=-1\nFile1=a\n\nb", 0, 3},
        {"[playlist]\nNumberOfEntries=many\n", 0, 2},
        {"#EXTM3U\r\na.mp3\r\n\r\nb", 0, 2},
        {std::string("\xFF\xFE"
                     "a\0\n\0\xE4\0",
                     8),
         0, 2},
        {"\xEF\xBB\xBF"
         "\xC3\xA4.mp3",
         0, 1},
        {"", 0, 0},
    };
    for (const auto& l : lists) {
        Put(kList, l.bytes);
        Playlist list = {.name = "old", .position = 9, .entries = {"earlier"}};
        ASSERT_EQ(ReadPlaylist(kList, &list), 1);
        EXPECT_EQ(list.entries.size(), l.held) << l.bytes.substr(0, 80);
        if (l.count) {
            EXPECT_EQ(list.entries, KeyByKey(l.count)) << l.bytes.substr(0, 80);
        }
        EXPECT_EQ(list.name, kList);
        for (const std::string& entry : list.entries)
            EXPECT_TRUE(!(entry[0] & 0x80) || entry[0] == '\xE4') << entry; // whatever the mark
    }
    Put(kList, "[playlist]\nNumberOfEntries=1000000000\nFile7=a\nFile1000000000=b\n");
    Playlist list = {};
    EXPECT_TRUE(ReadPlaylist(kList, &list)); // key by key: days
    EXPECT_EQ(list.entries, (Entries{"a", "b"}));
    for (const std::string& path : {kFolder + "none.pls", kFolder, std::string("NUL"),
                                    std::string(), std::string(400, 'x') + ".m3u"})
        EXPECT_EQ(OpenPlaylistFor(path + ".pls", &list), 0) << path;
    EXPECT_EQ(ReadPlaylist(kFolder, &list) + ReadPlaylist("NUL", &list), 0);
    EXPECT_EQ(list.entries.size(), 2u); // as it was
}

TEST_F(PlaylistFiles, WrittenAndReadAgain) {
    Playlist full = {"", 0,
                     Entries(kPlaylistMax, "C:\\" + std::string(120, 'y'))}; // not all at once
    Playlist again = {};
    for (const char* name : {"full.pls", "full.m3u"}) {
        Put(kFolder + name, std::string(200000, 'z')); // of which nothing may stay
        ASSERT_TRUE(WritePlaylist(full, kFolder + name) && ReadPlaylist(kFolder + name, &again));
        EXPECT_EQ(again.entries, full.entries) << name;
    }
    WIN32_FIND_DATAA found;
    FindClose(FindFirstFileA((kFolder + "full.m3u").c_str(), &found));
    EXPECT_STREQ(found.cFileName, "FULL.M3U");
    const HANDLE held = CreateFileA((kFolder + "full.m3u").c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                    nullptr); // so that it can't be deleted
    EXPECT_TRUE(WritePlaylist({"", 0, {"a.mp3"}}, kFolder + "full.m3u"));
    EXPECT_EQ(Bytes(kFolder + "full.m3u"), "a.mp3\r\n");
    CloseHandle(held);
    for (const char* path : {"none\\a.m3u", "none\\a.pls"})
        EXPECT_FALSE(WritePlaylist(full, kFolder + path));

    char before[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, before);
    SetCurrentDirectoryA(kFolder.c_str());
    again.position = 5;
    EXPECT_TRUE(OpenPlaylistFor("sub\\song.mp3", &again));
    EXPECT_EQ(again.name, kFolder + "Default.pls");
    EXPECT_EQ(again.position, 0u);
    EXPECT_EQ(ResolveEntry(again, again.entries[0]), kFolder + "sub\\song.mp3");
    EXPECT_NE(Bytes("Default.pls").find("NumberOfEntries=1\r\nFile1=sub\\song.mp3"),
              std::string::npos);
    EXPECT_TRUE(WritePlaylist(full, "bare.pls") &&
                ReadPlaylist("bare.pls", &again)); // found again here
    EXPECT_EQ(again.name, kFolder + "bare.pls");
    SetCurrentDirectoryA(before);
}

static int s_questions;
static int UpTo(void* limit) {
    return ++s_questions <= *static_cast<int*>(limit);
}

TEST_F(PlaylistFiles, SongsOfAFolder) {
    for (const char* name : {"a.MP3", "x.mp3.txt", "note.txt", "b.wav"})
        Put(kFolder + name, "");
    Playlist list = {"", 0, {"first", "last"}};
    int limit = 100;
    EXPECT_EQ(AddFolder(kFolder, &list, 1, UpTo, &limit), 3);
    EXPECT_EQ(list.entries, (Entries{"first", kFolder + "a.MP3", kFolder + "b.wav",
                                     kFolder + "x.mp3.txt", "last"}));
    s_questions = 0, limit = 0;
    EXPECT_EQ(AddFolder(kFolder, &list, -1, UpTo, &limit), 0);
    list.entries.resize(kPlaylistMax - 1);
    EXPECT_EQ(AddFolder(kFolder, &list, -1, nullptr, nullptr), 1);
    const std::string empty = kFolder + "My.mp3s";
    std::filesystem::create_directory(empty);
    list.entries.clear();
    for (const std::string& gone : {empty, kFolder + "none", std::string(5000, 'x')})
        EXPECT_EQ(AddFolder(gone, &list, 0, nullptr, nullptr), 0);
}

TEST(History, InTheSettings) {
    ClearHistory();
    for (int i = 0; i < 22; ++i)
        AddHistory("C:\\" + std::to_string(i) + ".pls");
    AddHistory("c:\\21.PLS");
    AddHistory(std::string(300, 'x'));
    EXPECT_EQ(ReadWindowDword(9, "HistoryPtr", 99), 1u);
    EXPECT_EQ(ListHistory()[0], "C:\\21.pls");
    RemoveHistory("c:\\1.PLS"); // leaves the count
    const uint32_t wild = 0x80000000, number = 1;
    WriteWindowDword(9, "HistoryPtr", wild), WriteWindowDword(9, "HistoryCount", wild);
    WriteWindowSetting(9, "History003", kRegSz, 5000, std::string(5000, 'x').c_str());
    WriteWindowSetting(9, "History004", kRegDword, 4, &number);
    EXPECT_EQ(ListHistory().size(), 17u);
    AddHistory("new");
    EXPECT_EQ(ListHistory()[0], "new");
    ClearHistory();
    char path[MAX_PATH];
    EXPECT_FALSE(ReadWindowSetting(9, "History020", kRegSz, sizeof path, path)); // the 21st too
    EXPECT_EQ(ReadWindowDword(9, "HistoryPtr", 99) + ListHistory().size(), 0u);
}
