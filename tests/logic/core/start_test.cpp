// What a start is asked for (command line) and where a saved window may stand.
#include "core/command_line.h"
#include "core/placement.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

static StartRequest Parse(std::vector<std::string> words) {
    std::vector<const char*> pointers;
    for (const auto& word : words)
        pointers.push_back(word.c_str());
    StartRequest request = EmptyStartRequest();
    ParseWords(static_cast<int>(pointers.size()), pointers.data(), &request);
    return request;
}

TEST(CommandLine, PlaySwallowsTheNextWordAndNeverTakesItsLetter) {
    for (const char* word : {"/play", "-PLAY", "/pplay"}) {
        const StartRequest r = Parse({"tonvista.exe", word, "e:", "song.mp3"});
        EXPECT_EQ(r.PlayRequested, 1u) << word;
        EXPECT_EQ(r.PlayDriveLetter, '-') << word;
        EXPECT_EQ(r.PPlay, word[2] == 'p' ? 1u : 0u) << word;
        EXPECT_STREQ(r.MediaFilePath, "song.mp3") << word;
    }
    EXPECT_EQ(Parse({"/play", "song.mp3"}).MediaFileGiven, 0u);
    EXPECT_EQ(Parse({"/play"}).PlayRequested, 1u);
}

TEST(CommandLine, SwitchesAndMediaFiles) {
    const StartRequest all = Parse({"-Install", "/NODEFCD", "-nodefmed", "/noeng", "/reg",
                                    "/target", "C:\\Some Place", "unknown", "/target"});
    EXPECT_EQ(all.InstallRequested, 1u);
    EXPECT_EQ(all.InstallUIRequested, 0u);
    EXPECT_EQ(all.ClaimDefaultCDPlayer + all.ClaimDefaultMediaPlayer, 0u);
    EXPECT_EQ(all.NoEngines + all.RegisterShellRequested, 2u);
    EXPECT_STREQ(all.TargetPath, "C:\\Some Place") << "copied whole, case kept";
    EXPECT_STREQ(Parse({"a.wav", "Song.PLS"}).MediaFilePath, "song.pls") << "the later one counts";
    EXPECT_EQ(Parse({"C:\\My.MP3s\\list.txt"}).MediaFileGiven, 1u);
    EXPECT_EQ(Parse({"readme.txt"}).MediaFileGiven, 0u);
}

TEST(CommandLine, WordsOfAnyLengthAreCut) {
    const std::string longWord(100000, 'X');
    const StartRequest r =
        Parse({longWord, longWord + ".mp3", "/target", longWord, "a.mp3" + longWord});
    EXPECT_EQ(std::string(r.TargetPath), std::string(259, 'X'));
    EXPECT_EQ(std::string(r.MediaFilePath), "a.mp3" + std::string(254, 'x'));
}

TEST(Placement, KeepsTwentyPixelsInSight) {
    const Bounds screen = {0, 0, 1280, 1024};
    const struct {
        int32_t x, y, width, height, wantX, wantY;
    } cases[] = {{100, 100, 500, 200, 100, 100},
                 {5000, 5000, 500, 200, 1260, 1004},
                 {INT32_MIN, INT32_MIN, 500, 200, 20 - 500, 20 - 200},
                 {INT32_MIN, 10, INT32_MIN, 200, INT32_MAX, 10}};
    for (const auto& c : cases) {
        WindowPlacement p = DefaultPlacement(2);
        p.X = c.x, p.Y = c.y, p.Width = c.width, p.Height = c.height;
        ClampPlacement(&p, screen);
        EXPECT_EQ(p.X, c.wantX) << c.x;
        EXPECT_EQ(p.Y, c.wantY) << c.y;
        EXPECT_EQ(p.Width, c.width) << "the size is never changed";
    }
}

TEST(CommandLine, WordsThatTogetherNameAMediaFile) {
    const auto Exists = [](const char* path) -> int {
        return !strcmp(path, "c:\\my songs\\one two.mp3") || !strcmp(path, "a.wav b.wav") ||
               !strcmp(path, "readme two") || !strcmp(path, "tonvista.exe a.wav");
    };
    const struct {
        std::vector<const char*> words;
        const char* path;
    } rows[] = {{{"C:\\My", "Songs\\One", "two.mp3"}, "c:\\my songs\\one two.mp3"},
                {{"/noeng", "C:\\My", "Songs\\One", "two.mp3"}, "c:\\my songs\\one two.mp3"},
                {{"C:\\My", "Songs\\other", "two.mp3"}, "two.mp3"},
                {{"a.wav", "b.wav"}, "a.wav b.wav"},
                {{"readme", "two"}, ""}};
    for (const auto& row : rows) {
        std::vector<const char*> words = row.words;
        words.insert(words.begin(), "tonvista.exe");
        words.push_back(nullptr); // skipped, as when it stands alone
        StartRequest request = EmptyStartRequest();
        ParseWords(static_cast<int>(words.size()), words.data(), &request);
        JoinMediaWords(static_cast<int>(words.size()), words.data(), Exists, &request);
        EXPECT_STREQ(request.MediaFilePath, row.path);
    }
    const std::string half(140, 'x');
    const char* const words[] = {"", half.c_str(), half.c_str(), ".mp3"};
    StartRequest request = EmptyStartRequest();
    JoinMediaWords(
        4, words, [](const char*) { return 1; }, &request);
    EXPECT_EQ(request.MediaFilePath, half + " .mp3") << "what has room";
}
