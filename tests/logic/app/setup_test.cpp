// Folders as users type them, and the version resource.
#include "app/setup.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

static std::string Read(const std::string& typed) {
    char folder[kPathSize];
    return ReadFolder(typed.c_str(), folder) ? folder : "-";
}

TEST(Setup, FoldersAsTheyAreTyped) {
    const struct {
        std::string typed, read;
    } cases[] = {
        {" \"C:/Some Place/Tonvista\\\" ", "C:\\Some Place\\Tonvista"},
        {"d:\\", "d:\\"},
        {"\\\\server\\share", "\\\\server\\share"},
        {"C:", "-"},
        {"", "-"},
        {"Tonvista", "-"},
        {"\\Tonvista", "-"},
        {"\\\\server", "-"},
        {"C:\\a|b", "-"},
        {"C:\\a:b", "-"},
        {"C:\\" + std::string(192, 'x'), "C:\\" + std::string(192, 'x')},
        {"C:\\" + std::string(193, 'x'), "-"}, // no room for the manual's pages
        {std::string(100000, '\\'), "-"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Read(c.typed), c.read) << c.typed.substr(0, 40);
    const struct {
        const char *chosen, *own;
    } chosen[] = {{"C:\\", "C:\\Tonvista"}, {"D:\\tonVISTA", "D:\\tonVISTA"}};
    for (const auto& c : chosen) {
        char folder[kPathSize];
        OwnFolderIn(c.chosen, folder);
        EXPECT_STREQ(folder, c.own);
    }
}

TEST(Setup, PathsApartAndTogether) {
    char folder[kPathSize], path[kPathSize];
    const struct {
        const char *path, *folder;
    } cases[] = {{"C:\\a b\\t.exe", "C:\\a b"}, {"C:\\t.exe", "C:\\"}, {"t.exe", ""}};
    for (const auto& c : cases) {
        FolderOfPath(c.path, folder);
        EXPECT_STREQ(folder, c.folder);
        if (!*folder) continue;
        JoinPath(folder, "t.exe", path);
        EXPECT_STREQ(path, c.path);
    }
    const std::string longFolder = "C:\\" + std::string(252, 'x'); // 255 characters
    EXPECT_TRUE(JoinPath(longFolder.c_str(), "abc", path));
    EXPECT_FALSE(JoinPath(longFolder.c_str(), "abcd", path));
    EXPECT_STREQ(path, "");
}

TEST(Setup, OnlyItsOwnFilesAreEverDeleted) {
    for (const char* name : {"CDInfo.CDP", "cdinfo.cdp.store-new", "CDInfo.CDP.store-old",
                             "CDInfo.CDP.bad", "CDInfo.CDP.bad12"})
        EXPECT_TRUE(IsDatabaseFile(name)) << name;
    for (const char* name : {"CDInfo.CDP.bak", "CDInfo.CDPx", "CDInfo.CDP.bad copy",
                             "CDInfo.CDP.store-new2", "CDInfo.CD", ""})
        EXPECT_FALSE(IsDatabaseFile(name)) << name;
    EXPECT_TRUE(IsManualFile("Index.HTML") && IsManualFile("style.css"));
    EXPECT_FALSE(IsManualFile("own.html") || IsManualFile("index.htm"));
}

TEST(Setup, VersionOfAResourceOfAnyLength) {
    std::vector<uint8_t> bytes(56, 0);
    const uint8_t fixed[] = {0xBD, 4, 0xEF, 0xFE, 0, 0, 1, 0, 2, 0, 1, 0, 9, 0, 30, 0};
    std::copy(fixed, fixed + sizeof fixed, bytes.begin() + 40);
    char text[32];
    for (size_t size = 0; size <= bytes.size(); ++size) {
        ReadVersion(std::vector<uint8_t>(bytes.begin(), bytes.begin() + size).data(), size, text);
        EXPECT_STREQ(text, size == bytes.size() ? "1.2.30" : "");
    }
}
