// The operations of the database, on files.
#include "tests/windows/cdinfo/crash.h"

#include <gtest/gtest.h>

#include "cdinfo/compound_win.h"
#include "core/commands.h"
#include "core/strings_win.h"
#include "resources/ids.h"

struct StoreTest : testing::Test {
    std::wstring path = Scratch(L"store.cdp");
    std::wstring standard = DefaultDatabasePath();
    void SetUp() override { TearDown(); }
    void TearDown() override {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        Forget(path);
        Forget(standard);
    }
    // Nothing may be left beside a database after an operation.
    void ExpectTidy(const std::wstring& file) {
        EXPECT_FALSE(FileExists(file + kNewSuffix));
        EXPECT_FALSE(FileExists(file + kOldSuffix));
    }
};

// A database whose index is {0,0},{A,A},{B,A}.
constexpr uint32_t kA = 0x00C0FFEE, kB = 0x0BADBEEF;
static void MakeAliasDatabase(const std::wstring& path) {
    ASSERT_TRUE(Add(path, kA, "Alias"));
    CompoundFile file;
    ASSERT_TRUE(OpenCompound(Slurp(path), &file));
    const IndexPair alias = {kB, kA};
    ASSERT_TRUE(RewriteStream(file, L"Mappings", 16, PackIndex({&alias, 1})));
    Bytes image;
    CloseCompound(&file, &image);
    Spill(path, image);
}

struct Listed {
    std::vector<std::pair<uint32_t, std::string>> entries;
    std::vector<size_t> lengths;
};
static int NoteRecord(const void* data, size_t length, uint32_t identity, void* context) {
    auto* listed = static_cast<Listed*>(context);
    listed->entries.emplace_back(identity, static_cast<const CDInfoRecord*>(data)->title);
    listed->lengths.push_back(length);
    return 0; // ignored
}
static int NoteRaw(const void* data, size_t length, uint32_t identity, void* context) {
    auto* listed = static_cast<Listed*>(context);
    const auto* bytes = static_cast<const uint8_t*>(data);
    listed->entries.emplace_back(identity, "");
    listed->lengths.push_back(length);
    EXPECT_EQ(length, static_cast<size_t>(bytes[0] | bytes[1] << 8));
    return 0;
}
static Listed List(const std::wstring& path, int raw = 0) {
    Listed listed;
    EXPECT_EQ(1,
              EnumerateEntries(nullptr, path.c_str(), raw ? NoteRaw : NoteRecord, &listed, 0, raw));
    return listed;
}

TEST(Texts, StringTableAgreesWithTheConstants) {
    char text[kStringMax];
    const struct {
        UINT id;
        const char* text;
    } cases[] = {{128, kUnknownTitle},
                 {129, kDefaultArtist},
                 {130, kTrackTitleFormat},
                 {134, kVariousArtists}};
    for (const auto& c : cases) {
        LoadText(c.id, text);
        EXPECT_STREQ(c.text, text);
    }
}

TEST_F(StoreTest, NewDatabaseHasClassIndexAndEntry) {
    EXPECT_EQ(0u, CountEntries(path.c_str()));
    ASSERT_EQ(1, EnsureDatabase(path.c_str()));
    EXPECT_EQ(1u, CountEntries(path.c_str()));
    ASSERT_TRUE(Add(path, 0x1234ABCD, "First"));
    ExpectTidy(path);
    // Looked at by the platform, as another program would.
    IStorage* root = nullptr;
    ASSERT_EQ(S_OK, StgOpenStorage(path.c_str(), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, nullptr,
                                   0, &root));
    STATSTG stat;
    ASSERT_EQ(S_OK, root->Stat(&stat, STATFLAG_NONAME));
    root->Release();
    OLECHAR name[64];
    StringFromGUID2(stat.clsid, name, 64);
    EXPECT_STREQ(L"{C09D0670-BA7E-11D0-AA01-00AA00BF0389}", name);
    EXPECT_TRUE(PlatformOpens(path, ReadWorld(path)));
}

TEST_F(StoreTest, ReplacesAndKeepsOthers) {
    ASSERT_TRUE(Add(path, 1, "One"));
    ASSERT_TRUE(Add(path, 2, "Two", 100));
    ASSERT_TRUE(Add(path, 1, "Other", 40));
    EXPECT_EQ(3u, CountEntries(path.c_str()));
    EXPECT_EQ("Other", TitleOf(path, 1));
    EXPECT_EQ("Two", TitleOf(path, 2));
    auto record = std::make_unique<CDInfoRecord>();
    ASSERT_TRUE(ReadEntry(path.c_str(), 1, record.get()));
    EXPECT_EQ(1u, record->identity);
    EXPECT_STREQ("00000001", record->identityText);
    EXPECT_EQ(40, record->programCount); // the default program
    EXPECT_EQ(MakeTmsf(40, 3, 20, 0), record->program[39].stop);
    EXPECT_EQ(40 * 200 / 60, record->totalMinutes);
}

TEST_F(StoreTest, StoresNothingWithoutContent) {
    const struct {
        const char* title;
        const char* artist;
        uint16_t tracks;
    } cases[] = {
        {"drive DOOR is Open", "x", 3}, {"Data CD in drive", "x", 1}, {"", "", 3}, {"x", "x", 0}};
    for (const auto& c : cases) {
        auto record = MakeRecord(7, c.title, c.tracks);
        CopyText(record->trackArtists[0], c.artist);
        EXPECT_EQ(1, AddOrReplace(path.c_str(), *record, 0, nullptr)) << c.title;
        EXPECT_FALSE(FileExists(path));
    }
}

TEST_F(StoreTest, ARecordThatCannotBePackedChangesNothing) {
    ASSERT_TRUE(Add(path, 7, "Small"));
    const Bytes before = Slurp(path);
    auto record = MakeRecord(7, "Large", 100);
    record->programCount = 101;
    EXPECT_EQ(0, AddOrReplace(path.c_str(), *record, 0, nullptr));
    SetIdentity(record.get(), 8); // nor does the index get a pair
    EXPECT_EQ(0, AddOrReplace(path.c_str(), *record, 0, nullptr));
    EXPECT_EQ(before, Slurp(path));
}

TEST_F(StoreTest, AliasesAreReadThroughTheIndex) {
    MakeAliasDatabase(standard);
    EXPECT_EQ(3u, CountEntries(nullptr));
    auto disc = MakeDisc(kB);
    LookUpState state;
    EXPECT_EQ(1, LookUpDisc(disc.get(), &state));
    EXPECT_EQ(kLookUpFound, state);
    EXPECT_STREQ("Alias", disc->title);
    EXPECT_EQ(kB, disc->identity);
    const Listed listed = List(standard);
    ASSERT_EQ(1u, listed.entries.size());
    EXPECT_EQ(kA, listed.entries[0].first);
    EXPECT_EQ(1u, List(standard, 1).entries.size());
    // B's texts go where A's are.
    ASSERT_EQ(1, AddOrReplace(nullptr, *MakeRecord(kB, "Shared"), 0, nullptr));
    EXPECT_EQ("Shared", TitleOf(standard, kA));
    EXPECT_EQ("-", TitleOf(standard, kB));
}

TEST_F(StoreTest, DeletesPairsAndStreams) {
    MakeAliasDatabase(path);
    ASSERT_TRUE(Add(path, 9, "Nine"));
    EXPECT_EQ(1, DeleteEntry(path.c_str(), kB)); // only the pair {B, A}
    EXPECT_EQ(3u, CountEntries(path.c_str()));
    EXPECT_EQ("Alias", TitleOf(path, kA));
    Forget(path);
    MakeAliasDatabase(path);
    ASSERT_TRUE(Add(path, 9, "Nine"));
    EXPECT_EQ(1, DeleteEntry(path.c_str(), kA));
    EXPECT_EQ(2u, CountEntries(path.c_str()));
    EXPECT_EQ("-", TitleOf(path, kA));
    EXPECT_EQ("Nine", TitleOf(path, 9));
    const Bytes before = Slurp(path);
    EXPECT_EQ(1, DeleteEntry(path.c_str(), 0x777)); // not there
    EXPECT_EQ(before, Slurp(path));
    EXPECT_EQ(1, DeleteEntry((path + L"none").c_str(), 9));
    EXPECT_FALSE(FileExists(path + L"none"));
    ExpectTidy(path);
}

TEST_F(StoreTest, LookUpStoresANewDiscAndKeepsTypedTexts) {
    auto disc = MakeDisc(5);
    LookUpState state;
    EXPECT_EQ(0, LookUpDisc(disc.get(), &state));
    EXPECT_EQ(kLookUpNew, state);
    EXPECT_STREQ("Unknown CD Title", disc->title);
    EXPECT_STREQ("Track 3", disc->trackTitles[2]);
    EXPECT_EQ("Unknown CD Title", TitleOf(standard, 5));
    ASSERT_TRUE(Add(standard, 5, "Typed"));
    EXPECT_EQ(1, LookUpDisc(disc.get(), &state));
    EXPECT_STREQ("Typed", disc->title);
    // New timing is stored, the texts stay.
    disc = MakeDisc(5);
    disc->trackStarts[3] += 75 * 60;
    EXPECT_EQ(1, LookUpDisc(disc.get(), nullptr));
    auto read = std::make_unique<CDInfoRecord>();
    ASSERT_TRUE(ReadEntry(nullptr, 5, read.get()));
    EXPECT_STREQ("Typed", read->title);
    EXPECT_EQ(260, read->trackSeconds[2]);
    // A drive that has seen one track only must not cut the entry to that.
    EXPECT_EQ(1, LookUpDisc(MakeDisc(5, 1).get(), nullptr));
    *read = CDInfoRecord();
    ASSERT_TRUE(ReadEntry(nullptr, 5, read.get()));
    EXPECT_EQ(3, read->trackCount);
}

TEST_F(StoreTest, LookUpNeverOverwritesWhatItCannotRead) {
    ASSERT_TRUE(Add(standard, 5, "Typed"));
    LookUpState state;
    const Bytes typed = Slurp(standard);
    // In use by another program.
    HANDLE other = CreateFileW(standard.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                               OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, other);
    auto disc = MakeDisc(5);
    EXPECT_EQ(0, LookUpDisc(disc.get(), &state));
    EXPECT_EQ(kLookUpUnread, state);
    EXPECT_EQ(0, AddOrReplace(nullptr, *disc, 0, nullptr));
    EXPECT_EQ(0, DeleteEntry(nullptr, 5));
    EXPECT_EQ(0, EnsureDatabase(nullptr));
    EXPECT_EQ(0u, CountEntries(nullptr));
    CloseHandle(other);
    EXPECT_EQ(typed, Slurp(standard));
    ExpectTidy(standard);
    // An entry that is not one.
    CompoundFile file;
    ASSERT_TRUE(OpenCompound(Bytes(typed), &file));
    ASSERT_TRUE(WriteStream(file, L"00000005", Bytes{9, 0, 2, 'h', 'i', 101, 0x80, 0, 0}));
    Bytes image;
    CloseCompound(&file, &image);
    Spill(standard, image);
    EXPECT_EQ(0, LookUpDisc(disc.get(), &state));
    EXPECT_EQ(kLookUpUnread, state);
    EXPECT_STREQ("Unknown CD Title", disc->title);
    EXPECT_EQ(image, Slurp(standard));
    // A damaged file.
    image.resize(image.size() - 512);
    Spill(standard, image);
    EXPECT_EQ(0, LookUpDisc(disc.get(), &state));
    EXPECT_EQ(kLookUpUnread, state);
    EXPECT_EQ(image, Slurp(standard));
}

TEST_F(StoreTest, EveryChangeButAnIdenticalOneIsWrittenAndAllAreTold) {
    const HWND listener =
        CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetStoreListener(listener);
    const auto heard = [&](uint32_t entry) {
        MSG message;
        if (!PeekMessageA(&message, listener, WM_COMMAND, WM_COMMAND, PM_REMOVE)) return 0;
        return message.wParam == kDatabaseChanged && static_cast<uint32_t>(message.lParam) == entry
                   ? 1
                   : -1;
    };
    ASSERT_TRUE(Add(path, 5, "Same"));
    EXPECT_EQ(1, heard(5));
    const auto stamp = [&] {
        WIN32_FILE_ATTRIBUTE_DATA data = {};
        GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
        return std::pair(data.ftLastWriteTime.dwLowDateTime, data.ftLastWriteTime.dwHighDateTime);
    };
    const auto before = stamp();
    Sleep(30);
    ASSERT_TRUE(Add(path, 5, "Same"));
    EXPECT_EQ(before, stamp());
    EXPECT_EQ(1, heard(5));
    ASSERT_TRUE(Add(path, 5, "Else"));
    EXPECT_NE(before, stamp());
    EXPECT_EQ(1, heard(5));
    EXPECT_EQ(0, heard(5));
    SetStoreListener(nullptr);
    DestroyWindow(listener);
}

TEST_F(StoreTest, OnlyTheDefaultDatabaseIsMovedAside) {
    const Bytes text = {'n', 'o', 't', ' ', 'm', 'i', 'n', 'e'};
    Spill(path, text);
    EXPECT_TRUE(Add(path, 5, "New"));
    EXPECT_EQ("New", TitleOf(path, 5));
    EXPECT_FALSE(FileExists(path + L".bad"));
    Bytes damaged = Slurp(path);
    damaged.resize(1536);
    Spill(path, damaged);
    EXPECT_FALSE(Add(path, 6, "No"));
    EXPECT_EQ(damaged, Slurp(path));

    Spill(standard, text);
    EXPECT_TRUE(Add(standard, 5, "New"));
    EXPECT_EQ(text, Slurp(standard + L".bad"));
    Spill(standard, damaged);
    EXPECT_EQ(1, EnsureDatabase(nullptr));
    EXPECT_EQ(1u, CountEntries(nullptr));
    EXPECT_EQ(text, Slurp(standard + L".bad"));
    EXPECT_EQ(damaged, Slurp(standard + L".bad2"));
    ExpectTidy(standard);
}

TEST_F(StoreTest, WriteProtectedStaysAsItIs) {
    ASSERT_TRUE(Add(path, 5, "Kept"));
    const Bytes before = Slurp(path);
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(0, Add(path, 5, "Changed"));
    EXPECT_EQ(before, Slurp(path));
    ExpectTidy(path);
    EXPECT_EQ("Kept", TitleOf(path, 5));
}

static DWORD WINAPI AddSix(void* path) {
    return static_cast<DWORD>(Add(*static_cast<std::wstring*>(path), 6, "Six"));
}

struct Hanging {
    std::wstring path;
    HANDLE begun;
};

static DWORD WINAPI BeginAndHang(void* context) {
    const auto* hanging = static_cast<Hanging*>(context);
    BeginStoreBatch(hanging->path.c_str());
    SetEvent(hanging->begun);
    Sleep(INFINITE);
    return 0;
}

TEST_F(StoreTest, OneChangeAtATime) {
    ASSERT_TRUE(Add(path, 5, "Five"));
    StoreBatch* batch = BeginStoreBatch(path.c_str());
    ASSERT_TRUE(batch);
    EXPECT_EQ(nullptr, BeginStoreBatch(path.c_str())); // not even on its own thread
    EXPECT_EQ(0, Add(path, 6, "Six"));
    EXPECT_EQ("Five", TitleOf(path, 5)); // reading goes on
    // Another thread, and a writer that knows no lock.
    HANDLE thread = CreateThread(nullptr, 0, AddSix, &path, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    DWORD result = 9;
    GetExitCodeThread(thread, &result);
    CloseHandle(thread);
    EXPECT_EQ(0u, result);
    EXPECT_EQ(INVALID_HANDLE_VALUE,
              CreateFileW(path.c_str(), GENERIC_WRITE, 7, nullptr, OPEN_EXISTING, 0, nullptr));
    CancelStoreBatch(batch);
    EXPECT_TRUE(Add(path, 6, "Six"));
}

TEST_F(StoreTest, AThreadThatIsEndedInAChangeLeavesNoLock) {
    ASSERT_TRUE(Add(path, 5, "Five"));
    Hanging hanging = {path, CreateEventA(nullptr, TRUE, FALSE, nullptr)};
    HANDLE thread = CreateThread(nullptr, 0, BeginAndHang, &hanging, 0, nullptr);
    WaitForSingleObject(hanging.begun, 5000);
    EXPECT_FALSE(Add(path, 6, "Six"));
    TerminateThread(thread, 0);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    CloseHandle(hanging.begun);
    EXPECT_TRUE(Add(path, 7, "Seven"));
    EXPECT_TRUE(Add(path, 8, "Eight"));
    ExpectTidy(path);
}

TEST_F(StoreTest, ABatchIsAllOrNothing) {
    ASSERT_TRUE(Add(path, 1, "One"));
    StoreBatch* batch = BeginStoreBatch(path.c_str());
    ASSERT_TRUE(batch);
    for (uint32_t id = 2; id <= 60; ++id)
        EXPECT_TRUE(BatchAdd(batch, *MakeRecord(id, "Many", 12)));
    BatchDelete(batch, 1);
    BatchDelete(batch, 30);
    EXPECT_EQ("One", TitleOf(path, 1));
    ASSERT_TRUE(CommitStoreBatch(batch));
    const Listed listed = List(path);
    ASSERT_EQ(58u, listed.entries.size());
    EXPECT_EQ(2u, listed.entries.front().first); // the index keeps the order of adding
    EXPECT_EQ(60u, listed.entries.back().first);
    batch = BeginStoreBatch(path.c_str());
    BatchDelete(batch, 2);
    CancelStoreBatch(batch);
    EXPECT_EQ("Many", TitleOf(path, 2));
}

static DWORD WINAPI AnswerQuestion(void* answer) {
    for (int i = 0; i < 500; ++i) {
        const HWND box = FindWindowA("#32770", "Duplicate Entry - Replace?");
        if (box) {
            PostMessageA(box, WM_COMMAND, reinterpret_cast<WPARAM>(answer), 0);
            return 0;
        }
        Sleep(10);
    }
    return 1;
}

TEST_F(StoreTest, AsksBeforeReplacing) {
    EXPECT_EQ(1, AddOrReplace(path.c_str(), *MakeRecord(5, "Old"), 1, nullptr)); // no question
    for (const int answer : {IDNO, IDYES}) {
        HANDLE thread =
            CreateThread(nullptr, 0, AnswerQuestion,
                         reinterpret_cast<void*>(static_cast<INT_PTR>(answer)), 0, nullptr);
        EXPECT_EQ(answer == IDYES, AddOrReplace(path.c_str(), *MakeRecord(5, "New"), 1, nullptr));
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
        EXPECT_EQ(answer == IDYES ? "New" : "Old", TitleOf(path, 5));
    }
}

static int FindProgress(const void*, size_t, uint32_t, void* context) {
    const HWND window = FindWindowA("#32770", "Tonvista");
    const HWND bar = window ? GetDlgItem(window, IDC_READ_BAR) : nullptr;
    static_cast<std::vector<LRESULT>*>(context)->push_back(bar ? SendMessageA(bar, PBM_GETPOS, 0, 0)
                                                               : -1);
    return 1;
}

TEST_F(StoreTest, ProgressFromElevenPairsOn) {
    for (const uint32_t discs : {9u, 10u}) { // and the pair {0, 0}
        Forget(path);
        for (uint32_t id = 1; id <= discs; ++id)
            ASSERT_TRUE(Add(path, id, "x", 1));
        std::vector<LRESULT> seen;
        EXPECT_EQ(1, EnumerateEntries(nullptr, path.c_str(), FindProgress, &seen, 1, 0));
        ASSERT_EQ(discs, seen.size());
        EXPECT_EQ(discs == 9 ? -1 : 2, seen.front()); // {0, 0} has been stepped over
        EXPECT_EQ(discs == 9 ? -1 : 20, seen.back());
        EXPECT_EQ(nullptr, FindWindowA("#32770", "Tonvista"));
    }
}
