// From the process's start to the console: installation, hand-over to a running instance, a start
// that did not finish last time, and what the command line changes.
#include "tests/program/harness.h"

constexpr const char* kAppPaths =
    "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\tonvista.exe";
constexpr const char* kOpenDiscFile = "Tonvista.CDPFile\\shell\\open\\command";
constexpr const char* kNotShutDown =
    "Tonvista was not properly shut down last time. Each component has been turned off and should "
    "be manually started.";

static std::string RegText(RegRoot root, const char* key, const char* name) {
    char text[512] = "(none)";
    ReadRegString(root, key, name, text, sizeof text);
    return text;
}

namespace {
class StartupTest : public ProgramTest {
protected:
    // Starts the program without waiting for a console.
    void Run(const std::string& arguments = "") {
        delete program;
        program = new Process(arguments);
        ASSERT_TRUE(program->handle);
    }
};

} // namespace

TEST_F(StartupTest, FirstStartInstallsSaysSoAndEnds) {
    DeleteRegTree(kUserRoot, kSettingsRoot);
    DeleteRegTree(kMachineRoot, kSettingsRoot);
    DeleteRegTree(kMachineRoot, kAppPaths);
    Run();
    std::string text;
    ASSERT_TRUE(AnswerBox("Tonvista Install", IDOK, &text));
    EXPECT_EQ(text, "Tonvista was successfully installed!");
    EXPECT_EQ(program->WaitEnd(), 0);
    EXPECT_EQ(RegText(kUserRoot, "Software\\Tonvista\\Saved", "Module"), ProgramPath());
    EXPECT_EQ(ReadRegDword(kMachineRoot, kSettingsRoot, "LastOK"), 1u);
    EXPECT_EQ(ReadWindowDword(1, "TaskBarIcon", 9), 1u);
    EXPECT_EQ(ReadRegDword(kUserRoot, kSettingsRoot, "CDIconShowOptions"), 31u);
    EXPECT_EQ(ReadWindowDword(1, "IndtrDrkClr", 9), 0xFF8000u) << "of a screen with many colours";
    EXPECT_EQ(ReadRegDword(kUserRoot, "Software\\Tonvista\\CDEngine", "IntroLength"), 10u);
    EXPECT_EQ(RegText(kMachineRoot, kAppPaths, ""), ProgramPath());
    EXPECT_EQ(RegText(kClassesRoot, kOpenDiscFile, ""), "\"" + ProgramPath() + "\" \"%1\"");
    Start();
    EXPECT_EQ(Close(), 0);
}

TEST_F(StartupTest, RegistrationsAreWrittenAfterAMove) {
    DeleteRegTree(kClassesRoot, "Tonvista.CDPFile");
    WriteRegString(kUserRoot, "Software\\Tonvista\\Saved", "Module", "C:\\Elsewhere\\tonvista.exe");
    Start();
    EXPECT_EQ(RegText(kClassesRoot, kOpenDiscFile, ""), "\"" + ProgramPath() + "\" \"%1\"");
    EXPECT_EQ(RegText(kUserRoot, "Software\\Tonvista\\Saved", "Module"), ProgramPath());
}

TEST_F(StartupTest, SecondInstanceHandsOverAndBringsTheConsoleBack) {
    Start();
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    const std::string longName = "C:\\a.mp3\\" + std::string(30000, 'X');
    const struct {
        std::string arguments, file;
        uint32_t set, clear;
    } cases[] = {
        {"D:\\Music\\Song.PLS", "d:\\music\\song.pls", kCommandOpenFile, kCommandPlayCd},
        {"/pplay e:", "", kCommandPlayCd | kCommandNoUi, 0},
        {longName, "c:\\a.mp3\\" + std::string(250, 'x'), kCommandOpenFile, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.substr(0, 40));
        Command(FindConsole(), kConsoleMinimizeAll);
        ASSERT_TRUE(WaitUntil([] { return IsIconic(FindConsole()); }));
        peer.block->CommandFlags = kCommandNoUi; // of an earlier request
        Process second(c.arguments);
        EXPECT_EQ(second.WaitEnd(), 1);
        EXPECT_TRUE(WaitUntil([] { return !IsIconic(FindConsole()); }, 2500));
        // A file may have been taken already: by the player, which came on for it.
        const uint32_t kept = ~uint32_t{kCommandOpenFile}, flags = peer.block->CommandFlags & kept;
        EXPECT_EQ(flags & (c.set | c.clear | kCommandNew), c.set & kept);
        EXPECT_TRUE(WaitUntil([&] { return c.file.empty() || FindComponent("MediaUI"); }));
        if (!c.file.empty()) {
            const std::string file(peer.block->CommandFile, sizeof peer.block->CommandFile);
            // A name that fills the field has no NUL.
            EXPECT_EQ(file.substr(0, strnlen(file.c_str(), file.size())), c.file);
        }
        EXPECT_TRUE(!(c.set & kCommandPlayCd) || peer.block->CommandDrive == '-');
    }
    EXPECT_TRUE(program->Runs());
}

TEST_F(StartupTest, AStartThatDiedStartsNothingAndSaysSo) {
    // Where the value is kept: machine-wide, or with a user who may not write there.
    for (const RegRoot root : {kMachineRoot, kUserRoot}) {
        SCOPED_TRACE(root);
        SwitchOn("CDEngineOn");
        SwitchOn("CDPlayerUI");
        WriteRegDword(root, kSettingsRoot, "LastOK", kRegDword, 0);
        Run();
        std::string text;
        ASSERT_TRUE(AnswerBox("Possible Error Condition", IDOK, &text));
        EXPECT_EQ(text, kNotShutDown);
        EXPECT_TRUE(
            WaitUntil([] { return FindConsole() && ReadWindowDword(1, "CDPlayerUI", 9) == 0; }));
        EXPECT_LT(AnswerTime(FindConsole()), kPatienceMs);
        EXPECT_EQ(ReadWindowDword(1, "CDEngineOn", 9), 0u);
        EXPECT_FALSE(FindCdEngine() || FindComponent("CDPlayerUI"));
        EXPECT_EQ(Close(), 0);
        EXPECT_EQ(ReadRegDword(kMachineRoot, kSettingsRoot, "LastOK"), 1u);
        EXPECT_FALSE(RegValueExists(kUserRoot, kSettingsRoot, "LastOK"));
    }
}

TEST_F(StartupTest, PlayWithoutUserInterfaceShowsNothing) {
    SwitchOn("CDEngineOn");
    SwitchOn("CDPlayerUI");
    Run("/pplay");
    ASSERT_TRUE(WaitUntil([] { return FindCdEngine() && FindConsole(); }));
    ASSERT_TRUE(WaitUntil([] { return ReadLastOk() == 1 && AnswerTime(FindConsole()) < 1000; }));
    EXPECT_FALSE(IsWindowVisible(FindConsole()));
    EXPECT_FALSE(FindComponent("CDPlayerUI"));
    EXPECT_EQ(ReadWindowDword(1, "CDPlayerUI", 9), 1u) << "it comes back at the next usual start";
    Process second("");
    EXPECT_EQ(second.WaitEnd(), 1);
    EXPECT_TRUE(WaitUntil([] { return IsWindowVisible(FindConsole()) != 0; }, 2500));
}

// Another program may have made the block, and holds it while this one comes and goes.
TEST_F(StartupTest, TheBlockThatWasThereIsFilledOrRefused) {
    const struct {
        DWORD size;
        uint32_t version, hold, wantHold; // wantHold 0: refused
    } cases[] = {{kSharedBlockSize, kSharedBlockVersion, 0, 5},
                 {kSharedBlockSize, kSharedBlockVersion, 51, 5},
                 {kSharedBlockSize, kSharedBlockVersion + 1, 1, 0},
                 {64, kSharedBlockVersion, 1, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.size << " " << c.version << " " << c.hold);
        HANDLE mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                            c.size, kSharedBlockName);
        auto* block = static_cast<SharedControlBlock*>(
            MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, c.size));
        ASSERT_TRUE(block);
        block->BlockSize = kSharedBlockSize;
        block->BlockVersion = c.version;
        block->HoldLimit = c.hold;
        if (!c.wantHold) {
            Run();
            EXPECT_EQ(program->WaitEnd(), 0);
            EXPECT_EQ(block->HoldLimit, c.hold);
        } else {
            block->Reserved448[7] = 0x5A;
            Start();
            EXPECT_EQ(block->HoldLimit, c.wantHold);
            EXPECT_TRUE(block->BuildYear == 2006 && block->BuildMonthDay == 204);
            EXPECT_TRUE(block->BandCentres[0] == 150.0f && block->BandCentres[15] == 18000.0f);
            EXPECT_EQ(block->Reserved448[7], 0x5A) << "of the visuals host";
            EXPECT_EQ(block->RunningFlags, kRunningInstance);
            EXPECT_EQ(Close(), 0);
            EXPECT_EQ(block->RunningFlags, 0u);
        }
        UnmapViewOfFile(block);
        CloseHandle(mapping);
    }
}
