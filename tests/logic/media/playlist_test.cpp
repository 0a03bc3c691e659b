// Playlists of the wild as bytes, and the record.
#include "media/playlist.h"

#include <gtest/gtest.h>

using Entries = std::vector<std::string>;

static std::string Repeat(const std::string& text, int times) {
    std::string all;
    while (times-- > 0)
        all += text;
    return all;
}

TEST(Playlist, M3uOfTheWild) {
    const std::string x(259, 'x');
    const struct {
        std::string bytes;
        Entries entries;
    } lists[] = {
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\nb", {"a", "b"}},
        {"#EXTM3U\r\n a \r\n",
         {"#EXTM3U", " a "}}, // comments and blanks are entries like any other
        {"a\r\n\r\nb\r\n", {"a"}},
        {"\na", {}},
        {"", {}},
        {"a\rb\r\r\nc\r", {"a\rb\r", "c\r"}}, // only before LF a CR ends a line
        {x + "\r\n" + x + "yz\n" + x + x + "\nb", {x, x, "yz", x, x, "b"}},
        {std::string("a\0b\nc\n", 6), {"a", "c"}},
        {Repeat("a\n", 600), Entries(kPlaylistMax, "a")},
        {Repeat("a", 259 * 600), Entries(kPlaylistMax, std::string(259, 'a'))},
    };
    for (const auto& l : lists) {
        Playlist list = {.name = "", .position = 0, .entries = {"earlier"}};
        ParseM3u(l.bytes.data(), l.bytes.size(), &list);
        EXPECT_EQ(list.entries, l.entries) << l.bytes.substr(0, 60);
    }
}

TEST(Playlist, RecordAndNames) {
    Playlist list = {};
    const char* const paths[] = {"c", "a", "b", "d", "e"};
    const int places[] = {7, 0, 1, 3, -1};
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(InsertEntry(&list, paths[i], places[i]));
    EXPECT_EQ(list.entries, (Entries{"a", "b", "c", "d", "e"}));
    EXPECT_TRUE(InsertEntry(&list, std::string(300, 'z'), 0));
    EXPECT_EQ(list.entries[0].size(), size_t{kMediaPathMax});
    while (list.entries.size() < kPlaylistMax)
        EXPECT_TRUE(InsertEntry(&list, "f", -1));
    EXPECT_FALSE(InsertEntry(&list, "g", 0));

    EXPECT_TRUE(IsSongPath("c:\\x.mp3.txt") && IsSongPath("d:\\My.Wavs\\y") && !IsSongPath("mp3"));
    EXPECT_TRUE(IsPlaylistPath("a.m3u8") && IsPlaylistPath("a.Pls") && !IsPlsPath("a.m3u"));

    list.name = "C:\\Lists\\My.m3u";
    const char* const resolved[][2] = {
        {"a.mp3", "C:\\Lists\\a.mp3"},
        {"..\\a", "C:\\Lists\\..\\a"},
        {"D:a", "D:a"},
        {"\\a", "\\a"},
        {"//host/a", "//host/a"},
        {"1:a", "C:\\Lists\\1:a"},
        {"http://h/a", "http://h/a"},
        {"", ""},
    };
    for (const auto& [entry, path] : resolved)
        EXPECT_EQ(ResolveEntry(list, entry), path);
    EXPECT_EQ(ResolveEntry({"bare.m3u", 0, {}}, "a.mp3"), "a.mp3");
}
