// Import, export and takeover as files and the database show them afterwards.
#include "tests/windows/archive/exchange_support.h"

#include "core/settings.h"

#include <thread>

struct Exchange : testing::Test {
    const std::wstring standard = DefaultDatabasePath(), target = Scratch(L"target");
    std::string path = Narrow(target);
    size_t discs = 0;
    int steps = -1; // of an operation before it is cancelled; below 0: never
    ExchangeProgress progress = {
        [](size_t, size_t, void* left) { return --*static_cast<int*>(left) != -1 ? 1 : 0; },
        &steps};
    void SetUp() override { TearDown(); }
    void TearDown() override {
        SetStoreFiles(nullptr);
        Forget(standard);
        Forget(target);
        if (FileExists(target)) _wsystem((L"cmd /c rmdir /s /q " + target).c_str());
        DeleteRegTree(kUserRoot, kSettingsRoot);
        DeleteRegTree(kUserRoot, "Software\\Tonvue");
        DeleteFileA("C:\\windows\\CDPlayer.ini");
    }
    int Export(ExchangeForm form, uint32_t first, uint32_t last) {
        Seeds seeds = {first, last, 20};
        return ExportDiscs(form, path.c_str(), '\t', NextSeed, &seeds, progress);
    }
    int Import(ExchangeForm form) {
        return ImportDiscs(nullptr, form, path.c_str(), progress, &discs);
    }
    // Runs while somebody reads and closes the box that comes: its text.
    template <class Reading> std::string FaultOf(Reading reading) {
        std::string text;
        std::thread reader([&] {
            HWND box = nullptr;
            Wait([&] { return (box = FindWindowA("#32770", path.c_str())) != nullptr; });
            char said[300] = "";
            GetDlgItemTextA(box, 0xFFFF, said, sizeof said);
            text = said;
            PostMessageA(box, WM_COMMAND, IDOK, 0);
        });
        EXPECT_FALSE(reading());
        reader.join();
        return text;
    }
    std::string FaultOfImport() {
        return FaultOf([&] { return Import(kCdpForm); });
    }
};

TEST_F(Exchange, EveryFormThereAndBack) {
    ASSERT_TRUE(Export(kCdpForm, 1, 40));
    ASSERT_TRUE(Import(kCdpForm));
    const Discs all = DiscsOf(), texts = DiscsOf(nullptr, 0);
    ASSERT_EQ(all.size(), 40u);
    for (const ExchangeForm form : {kCueForm, kCddbForm}) {
        TearDown();
        ASSERT_TRUE(Export(form, 1, 40)) << form;
        ASSERT_TRUE(Export(form, 1, 40)) << "over its own files";
        ASSERT_TRUE(Import(form)) << form;
        EXPECT_EQ(discs, 40u) << form;
        EXPECT_EQ(DiscsOf(nullptr, 0), texts) << form;
    }
    EXPECT_EQ(DiscsOf(), all);
    // The folder within a folder, beside other things; then with a broken file.
    CreateDirectoryW((target + L"-up").c_str(), nullptr);
    MoveFileW(target.c_str(), (target + L"-up\\rock").c_str());
    MoveFileW((target + L"-up").c_str(), target.c_str());
    Spill(target + L"\\read me", Bytes(99, 'x'));
    EXPECT_TRUE(Import(kCddbForm));
    EXPECT_EQ(discs, 40u);
    Spill(target + L"\\0", Bytes({'#', ' ', 'x', 'm', 'c', 'd'}));
    EXPECT_FALSE(Import(kCddbForm));
    // Over the discs that are there CDPlayer.ini brings nothing new, and takes nothing away.
    path += ".ini";
    ASSERT_TRUE(Export(kIniForm, 1, 40));
    ASSERT_TRUE(Import(kIniForm));
    EXPECT_EQ(discs, 40u);
    EXPECT_EQ(DiscsOf(), all);
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
        EXPECT_FALSE(FileExists(standard));
    }
}

// With a pair that leads from one disc to another's entry although it has one itself.
TEST_F(Exchange, TheDatabaseIsNeverWrittenFromOrOverItself) {
    ASSERT_TRUE(Add(standard, 0xA, "A") && Add(standard, 0xB, "B"));
    SetIndexPair(standard, 2, {0xB, 0xA});
    const Bytes stored = Slurp(standard);
    path = Narrow(standard);
    EXPECT_TRUE(Import(kCdpForm));
    EXPECT_EQ(discs, 2u);
    EXPECT_TRUE(Export(kCdpForm, 6, 9));
    for (const ExchangeForm form : {kTextForm, kDelimitedForm, kIniForm})
        EXPECT_FALSE(Export(form, 1, 2)) << form;
    EXPECT_EQ(Slurp(standard), stored);
}

TEST_F(Exchange, OldFilesTellTheirFaultAndKeepWhatStandsBefore) {
    const std::string packed = PackedDisc(*MakeDisc(7, 3, "Old")).substr(8 + 8);
    Bytes file = {'T', 'O', 'N', 'V', 0, 0, 0, 0, 2, 0, 0, 0}; // version 0, two entries
    file.insert(file.end(), {static_cast<uint8_t>(packed.size()), 0, 0, 0, 0x77, 0, 0, 0});
    file.resize(file.size() + 4); // of the first, without a checksum; there is no second
    file.insert(file.end(), packed.begin(), packed.end());
    Spill(target, file);
    EXPECT_EQ(FaultOfImport(), "Failed To Read File");
    EXPECT_EQ(discs, 1u);
    EXPECT_EQ(TitleOf(standard, 0x77), "Old");
    // As every walk through a database, packed on demand; in its place they are read, too, and
    // nobody is told of a fault.
    std::string given;
    const auto take = [](const void* data, size_t length, uint32_t identity, void* to) {
        *static_cast<std::string*>(to) = std::string(static_cast<const char*>(data), length);
        return identity == 0x77 ? 1 : 0;
    };
    Spill(standard, file);
    EXPECT_FALSE(EnumerateEntries(nullptr, nullptr, take, &given, 0, 1));
    EXPECT_EQ(given, packed);
    file[8] = 1;
    Spill(target, file);
    EXPECT_TRUE(EnumerateEntries(nullptr, target.c_str(), take, &given, 0, 1));
    const auto refuse = [](const void*, size_t, uint32_t, void*) { return 0; };
    EXPECT_FALSE(EnumerateEntries(nullptr, target.c_str(), refuse, nullptr, 0, 0)) << "no message";
    file[4] = 2;
    Spill(target, file);
    EXPECT_EQ(FaultOfImport(),
              "Invalid CDP file version: This CDP file is too new for this version "
              "of Tonvue. Please check the web site for a newer version of this "
              "program.");
    // Larger than what is read: it opens, and that is all.
    const HANDLE large =
        CreateFileW(target.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    SetFilePointer(large, static_cast<LONG>(kMaxFileSize) + 1, nullptr, FILE_BEGIN);
    EXPECT_TRUE(SetEndOfFile(large));
    CloseHandle(large);
    EXPECT_EQ(FaultOfImport(), "Failed To Read File");
}

TEST_F(Exchange, TextsBeginAnewAndSheetsOfOthersStay) {
    Spill(target, Bytes(9999, 'x'));
    ASSERT_TRUE(Export(kDelimitedForm, 1, 2));
    const Bytes bytes = Slurp(target);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
              DelimitedLines(*RandomDisc(1, 20), '\t') + DelimitedLines(*RandomDisc(2, 20), '\t'));
    Forget(target);

    CreateDirectoryW(target.c_str(), nullptr);
    const std::wstring sheet = target + L"\\Somebody - T_.cue";
    Spill(sheet, Bytes(5, 'x'));
    const auto once = [](CDInfoRecord* record, void* count) {
        *record = *MakeDisc(5, 3, "T?");
        return (*static_cast<int*>(count))-- > 0 ? 1 : 0;
    };
    for (int left : {1, 1})
        ASSERT_TRUE(ExportDiscs(kCueForm, path.c_str(), 0, once, &left, progress));
    EXPECT_EQ(Slurp(sheet), Bytes(5, 'x'));
    EXPECT_TRUE(FileExists(target + L"\\Somebody - T_ [00000005].cue"));
    EXPECT_FALSE(FileExists(target + L"\\Somebody - T_ [00000005]-2.cue"));
}

TEST_F(Exchange, TakeoversAreMadeOnceAndReplaceNothing) {
    const auto takeOver = [] { // how many are marked as done
        MigrateRegistryDiscs();
        MigrateIniDiscs();
        return ReadRegDword(kUserRoot, kSettingsRoot, "CDTitlesMigrated") +
               ReadRegDword(kUserRoot, kSettingsRoot, "IniMigrated");
    };
    ASSERT_TRUE(Add(standard, 0xA, "Typed"));
    for (const std::string key : {"0000000A", "0000000B", "0000000C", "no disc"}) {
        const std::string subkey = "Software\\Tonvue\\CDTitles\\" + key;
        WriteRegString(kUserRoot, subkey.c_str(), "title", key.c_str());
        WriteRegString(kUserRoot, subkey.c_str(), "numtracks", "3");
        WriteRegString(kUserRoot, subkey.c_str(), "1", "Second");
        WriteRegString(kUserRoot, subkey.c_str(), "NoCD", key == "0000000C" ? "1" : "0");
    }
    for (const char* section : {"A", "B", "D"}) {
        WritePrivateProfileStringA(section, "numtracks", "3", "CDPlayer.ini");
        WritePrivateProfileStringA(section, "title", "Of the file", "CDPlayer.ini");
    }
    FileLayer full = SystemFiles();
    full.write = [](auto, auto) { return kFileFailed; };
    SetStoreFiles(&full);
    EXPECT_EQ(takeOver(), 0u) << "not stored, so not done";
    SetStoreFiles(nullptr);
    EXPECT_EQ(takeOver(), 2u);
    EXPECT_EQ(DiscsOf().size(), 3u);
    EXPECT_EQ(TitleOf(standard, 0xB), "0000000B");
    EXPECT_EQ(TitleOf(standard, 0xD), "Of the file");
    auto record = std::make_unique<CDInfoRecord>();
    ASSERT_TRUE(ReadEntry(nullptr, 0xA, record.get()));
    EXPECT_STREQ(record->title, "Typed");
    EXPECT_STREQ(record->trackTitles[1], "Second");
    ASSERT_TRUE(DeleteEntry(nullptr, 0xB));
    takeOver();
    EXPECT_EQ(TitleOf(standard, 0xB), "-") << "once";
}
