// Import, export and takeover as files and the database show them afterwards.
#include "tests/windows/archive/exchange_support.h"

#include <thread>

struct Exchange : testing::Test {
    std::wstring standard = DefaultDatabasePath();
    std::wstring target = Scratch(L"target");
    std::string path = Narrow(target);
    size_t discs = 0;
    int steps = -1; // of an operation before it is cancelled; below 0: never
    ExchangeProgress progress = {
        [](size_t, size_t, void* left) { return --*static_cast<int*>(left) != -1 ? 1 : 0; },
        &steps};
    void SetUp() override {
        SetStoreFiles(&OwnFiles());
        TearDown();
    }
    void TearDown() override {
        s_own.writeFails = 0;
        Forget(Own(standard.c_str()));
        Forget(target);
        if (FileExists(target)) _wsystem((L"cmd /c rmdir /s /q " + target).c_str());
        DeleteRegTree(kUserRoot, kSettingsRoot);
        DeleteRegTree(kUserRoot, "Software\\Tonvue");
        DeleteFileA("C:\\windows\\CDPlayer.ini");
    }
    int Export(ExchangeForm form, uint32_t first, uint32_t last, uint16_t tracks = 20) {
        Seeds seeds = {first, last, tracks};
        return ExportDiscs(form, path.c_str(), '\t', NextSeed, &seeds, progress);
    }
    int Import(ExchangeForm form) {
        return ImportDiscs(nullptr, form, path.c_str(), progress, &discs);
    }
    std::wstring FirstName() {
        WIN32_FIND_DATAW found;
        FindClose(FindFirstFileW((target + L"\\????????").c_str(), &found));
        return found.cFileName;
    }
    // Imports while somebody reads and closes the box that comes: its text.
    std::string FaultOfImport() {
        std::string text;
        std::thread reader([&] {
            HWND box = nullptr;
            Wait([&] { return (box = FindWindowA("#32770", path.c_str())) != nullptr; });
            char said[300] = "";
            GetDlgItemTextA(box, 0xFFFF, said, sizeof said);
            text = said;
            PostMessageA(box, WM_COMMAND, IDOK, 0);
        });
        EXPECT_FALSE(Import(kCdpForm));
        reader.join();
        return text;
    }
};

TEST_F(Exchange, EveryFormThereAndBack) {
    ASSERT_TRUE(ExportDiscs(kCdpForm, path.c_str(), 0, NextSeed,
                            &*std::make_unique<Seeds>(Seeds{1, 40, 20}), progress));
    ASSERT_TRUE(Import(kCdpForm));
    EXPECT_EQ(discs, 40u);
    const Discs all = DiscsOf(), texts = DiscsOf(nullptr, 0);
    ASSERT_EQ(all.size(), 40u);
    for (const ExchangeForm form : {kCddbForm, kCueForm}) {
        TearDown();
        ASSERT_TRUE(Export(form, 1, 40)) << form;
        ASSERT_TRUE(Export(form, 1, 40)) << "over its own files";
        ASSERT_TRUE(Import(form)) << form;
        EXPECT_EQ(discs, 40u) << form;
        if (form == kCddbForm) {
            EXPECT_EQ(DiscsOf(), all);
        }
        EXPECT_EQ(DiscsOf(nullptr, 0), texts) << form;
    }
    // A folder with folders of kinds in it, other things and a broken file.
    TearDown();
    ASSERT_TRUE(Export(kCddbForm, 1, 40));
    CreateDirectoryW((target + L"\\rock").c_str(), nullptr);
    MoveFileW((target + L"\\" + FirstName()).c_str(), (target + L"\\rock\\01").c_str());
    Spill(target + L"\\read me", Bytes(99, 'x'));
    EXPECT_TRUE(Import(kCddbForm));
    Spill(target + L"\\0", Bytes({'#', ' ', 'x', 'm', 'c', 'd'}));
    EXPECT_FALSE(Import(kCddbForm));
    EXPECT_EQ(DiscsOf(), all);
    // Over the discs that are there CDPlayer.ini brings nothing new, and takes nothing away.
    path += ".ini";
    ASSERT_TRUE(Export(kIniForm, 1, 40));
    ASSERT_TRUE(Import(kIniForm));
    EXPECT_EQ(discs, 40u);
    EXPECT_EQ(DiscsOf(nullptr, 0), texts);
    DeleteFileA(path.c_str());
}

TEST_F(Exchange, CdpFilesAreMergedIntoOrLeftAlone) {
    Spill(target, Bytes(100, 'x'));
    ASSERT_TRUE(Export(kCdpForm, 1, 3)) << "no compound file: replaced";
    ASSERT_TRUE(Export(kCdpForm, 3, 5));
    EXPECT_EQ(DiscsOf(target.c_str()).size(), 5u);
    const Bytes before = Slurp(target);
    steps = 1;
    EXPECT_FALSE(Export(kCdpForm, 6, 9)) << "cancelled";
    steps = -1;
    const HANDLE other =
        CreateFileW(target.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(Export(kCdpForm, 6, 9)) << "in use";
    EXPECT_EQ(FaultOfImport(), "Failed To Open old-style CDP File");
    CloseHandle(other);
    EXPECT_EQ(Slurp(target), before);

    for (const int taken : {0, 5}) { // while reading, and between reading and storing
        steps = taken;
        EXPECT_FALSE(Import(kCdpForm));
        EXPECT_FALSE(FileExists(Own(standard.c_str())));
    }
    steps = -1;
    ASSERT_TRUE(Import(kCdpForm));
    const Bytes stored = Slurp(Own(standard.c_str()));
    path = Narrow(standard);
    EXPECT_TRUE(Import(kCdpForm)) << "from itself";
    EXPECT_EQ(discs, 5u);
    EXPECT_TRUE(Export(kCdpForm, 6, 9)) << "into itself";
    for (const ExchangeForm form : {kTextForm, kDelimitedForm, kIniForm})
        EXPECT_FALSE(Export(form, 1, 2)) << form;
    EXPECT_EQ(Slurp(Own(standard.c_str())), stored);
}

TEST_F(Exchange, OldFilesTellTheirFaultAndKeepWhatStandsBefore) {
    Bytes file = {'T', 'O', 'N', 'V', 0, 0, 0, 0, 2, 0, 0, 0};
    const std::string packed = PackedDisc(*MakeDisc(7, 3, "Old")).substr(8 + 8);
    for (const uint32_t number : {static_cast<uint32_t>(packed.size()), 0x77u, 0u})
        for (int i = 0; i < 4; ++i)
            file.push_back(static_cast<uint8_t>(number >> (8 * i)));
    file.insert(file.end(), packed.begin(), packed.end());
    Spill(target, file);
    EXPECT_EQ(FaultOfImport(), "Failed To Read File");
    EXPECT_EQ(discs, 1u);
    EXPECT_EQ(TitleOf(standard, 0x77), "Old");
    file[4] = 2;
    Spill(target, file);
    EXPECT_EQ(FaultOfImport(),
              "Invalid CDP file version: This CDP file is too new for this version "
              "of Tonvue. Please check the web site for a newer version of this "
              "program.");
}

TEST_F(Exchange, TextsBeginAnewAndSheetsOfOthersStay) {
    Spill(target, Bytes(9999, 'x'));
    ASSERT_TRUE(Export(kDelimitedForm, 1, 2));
    const std::string text =
        DelimitedLines(*RandomDisc(1, 20), '\t') + DelimitedLines(*RandomDisc(2, 20), '\t');
    const Bytes bytes = Slurp(target);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), text);
    Forget(target);

    Seeds none = {1, 0, 1};
    ASSERT_TRUE(ExportDiscs(kCueForm, path.c_str(), 0, NextSeed, &none, progress));
    const std::wstring sheet = target + L"\\Somebody - T_.cue";
    Spill(sheet, Bytes(5, 'x'));
    const auto once = [](CDInfoRecord* record, void* count) {
        *record = *MakeDisc(5, 3, "T?");
        return (*static_cast<int*>(count))-- > 0 ? 1 : 0;
    };
    for (int round = 0; round < 2; ++round) {
        int count = 1;
        ASSERT_TRUE(ExportDiscs(kCueForm, path.c_str(), 0, once, &count, progress));
    }
    EXPECT_EQ(Slurp(sheet), Bytes(5, 'x'));
    EXPECT_TRUE(FileExists(target + L"\\Somebody - T_ [00000005].cue"));
    EXPECT_FALSE(FileExists(target + L"\\Somebody - T_ [00000005]-2.cue"));
}

TEST_F(Exchange, TakeoversAreMadeOnceAndReplaceNothing) {
    const auto mark = [](const char* name) { return ReadRegDword(kUserRoot, kSettingsRoot, name); };
    const auto put = [](const char* key, const char* name, const char* text) {
        WriteRegString(kUserRoot, (std::string("Software\\Tonvue\\CDTitles\\") + key).c_str(), name,
                       text);
    };
    ASSERT_TRUE(Add(standard, 0xA, "Typed"));
    for (const char* key : {"0000000A", "0000000B", "0000000C", "no disc"}) {
        put(key, "title", key);
        put(key, "numtracks", "3");
    }
    put("0000000A", "1", "Second");
    put("0000000C", "NoCD", "1");
    for (const char* section : {"A", "B", "D"}) {
        WritePrivateProfileStringA(section, "numtracks", "3", "CDPlayer.ini");
        WritePrivateProfileStringA(section, "title", "Of the file", "CDPlayer.ini");
    }
    s_own.writeFails = 1;
    MigrateRegistryDiscs();
    MigrateIniDiscs();
    EXPECT_EQ(mark("CDTitlesMigrated") + mark("IniMigrated"), 0u) << "not stored, so not done";
    s_own.writeFails = 0;
    MigrateRegistryDiscs();
    MigrateIniDiscs();
    EXPECT_EQ(mark("CDTitlesMigrated"), 1u);
    EXPECT_EQ(mark("IniMigrated"), 1u);
    EXPECT_EQ(DiscsOf().size(), 3u);
    EXPECT_EQ(TitleOf(standard, 0xA), "Typed");
    EXPECT_EQ(TitleOf(standard, 0xB), "0000000B");
    EXPECT_EQ(TitleOf(standard, 0xD), "Of the file");
    auto record = std::make_unique<CDInfoRecord>();
    ASSERT_TRUE(ReadEntry(nullptr, 0xA, record.get()));
    EXPECT_STREQ(record->trackTitles[1], "Second");
    ASSERT_TRUE(DeleteEntry(nullptr, 0xB));
    MigrateRegistryDiscs();
    MigrateIniDiscs();
    EXPECT_EQ(TitleOf(standard, 0xB), "-") << "once";
}
