// The operations of the database, on files.
#include "tests/windows/cdinfo/crash.h"

#include <gtest/gtest.h>

#include <thread>

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
    Forget(path);
    ASSERT_TRUE(Add(path, kA, "Alias"));
    CompoundFile file;
    ASSERT_TRUE(OpenCompound(Slurp(path), &file));
    const IndexPair alias = {kB, kA};
    ASSERT_TRUE(RewriteStream(file, L"Mappings", 16, PackIndex({&alias, 1})));
    Bytes image;
    CloseCompound(&file, &image);
    Spill(path, image);
}

TEST(Texts, StringTableAgreesWithTheConstants) {
    const std::pair<UINT, const char*> cases[] = {{128, kUnknownTitle},
                                                  {129, kDefaultArtist},
                                                  {130, kTrackTitleFormat},
                                                  {134, kVariousArtists}};
    for (const auto& [id, expected] : cases) {
        char text[kStringMax];
        LoadText(id, text);
        EXPECT_STREQ(expected, text);
    }
}

TEST_F(StoreTest, NewDatabaseAsAnotherProgramSeesIt) {
    EXPECT_EQ(0u, CountEntries(path.c_str()));
    ASSERT_EQ(1, EnsureDatabase(path.c_str()));
    EXPECT_EQ(1u, CountEntries(path.c_str()));
    ASSERT_TRUE(Add(path, 1, "One"));
    ASSERT_TRUE(Add(path, 2, "Two", 100));
    ASSERT_TRUE(Add(path, 1, "Other", 40));
    ExpectTidy(path);
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

    EXPECT_EQ("Two", TitleOf(path, 2));
    auto record = std::make_unique<CDInfoRecord>();
    ASSERT_TRUE(ReadEntry(path.c_str(), 1, record.get()));
    EXPECT_STREQ("Other", record->title);
    EXPECT_STREQ("00000001", record->identityText);
    EXPECT_EQ(40, record->programCount); // the default program
    EXPECT_EQ(MakeTmsf(40, 0, 0, 1), record->program[39].start);
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

// The index is {0,0},{A,A},{B,A}: B's texts are those of A.
TEST_F(StoreTest, AliasesFollowTheIndex) {
    MakeAliasDatabase(standard);
    EXPECT_EQ(3u, CountEntries(nullptr));
    auto disc = MakeDisc(kB);
    EXPECT_EQ(1, LookUpDisc(disc.get(), nullptr));
    EXPECT_STREQ("Alias", disc->title);
    EXPECT_EQ(kB, disc->identity);
    World world = ReadWorld(standard);
    ASSERT_EQ(1u, world.entries.size());
    EXPECT_EQ(kA, world.entries.begin()->first);
    EXPECT_EQ(world.entries[kA].size(), size_t{world.entries[kA][0]}); // as its first word says
    ASSERT_EQ(1, AddOrReplace(nullptr, *MakeRecord(kB, "Shared"), 0, nullptr));
    EXPECT_EQ("Shared", TitleOf(standard, kA));
    EXPECT_EQ("-", TitleOf(standard, kB));
    const struct {
        uint32_t identity;
        uint32_t pairs;
        const char* title; // of A
    } cases[] = {{kB, 3, "Alias"}, {kA, 2, "-"}, {0, 3, "Alias"}, {0x777, 4, "Alias"}};
    for (const auto& c : cases) {
        MakeAliasDatabase(path);
        ASSERT_TRUE(Add(path, 9, "Nine"));
        EXPECT_EQ(1, DeleteEntry(path.c_str(), c.identity));
        EXPECT_EQ(c.pairs, CountEntries(path.c_str())) << c.identity;
        EXPECT_EQ(c.title, TitleOf(path, kA)) << c.identity;
        EXPECT_EQ("Nine", TitleOf(path, 9));
        ExpectTidy(path);
    }
    EXPECT_EQ(1, DeleteEntry((path + L"none").c_str(), 9));
    EXPECT_FALSE(FileExists(path + L"none"));
}

TEST_F(StoreTest, LookUpStoresANewDiscAndKeepsTypedTexts) {
    LookUpState state;
    EXPECT_EQ(0, LookUpDisc(MakeDisc(5).get(), &state));
    EXPECT_EQ(kLookUpNew, state);
    EXPECT_EQ("Unknown CD Title", TitleOf(standard, 5));
    ASSERT_TRUE(Add(standard, 5, "Typed"));
    auto disc = MakeDisc(5); // new timing is stored, the texts stay
    disc->trackStarts[3] += 75 * 60;
    EXPECT_EQ(1, LookUpDisc(disc.get(), &state));
    EXPECT_EQ(kLookUpFound, state);
    EXPECT_STREQ("Typed", disc->title);
    EXPECT_STREQ("Track 3", disc->trackTitles[2]);
    // A drive that has seen one track only must not cut the entry to that.
    EXPECT_EQ(1, LookUpDisc(MakeDisc(5, 1).get(), nullptr));
    *disc = CDInfoRecord();
    ASSERT_TRUE(ReadEntry(nullptr, 5, disc.get()));
    EXPECT_STREQ("Typed", disc->title);
    EXPECT_EQ(3, disc->trackCount);
    EXPECT_EQ(260, disc->trackSeconds[2]);
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
    EXPECT_EQ(0, AddOrReplace(nullptr, *disc, 1, nullptr)); // nor is it taken for a new disc
    EXPECT_EQ(0, DeleteEntry(nullptr, 5));
    EXPECT_EQ(0, EnsureDatabase(nullptr));
    CloseHandle(other);
    EXPECT_EQ(typed, Slurp(standard));
    ExpectTidy(standard);
    // An entry that is none, then a file that is cut off.
    CompoundFile file;
    ASSERT_TRUE(OpenCompound(Bytes(typed), &file));
    ASSERT_TRUE(WriteStream(file, L"00000005", Bytes{9, 0, 2, 'h', 'i', 101, 0x80, 0, 0}));
    Bytes image;
    CloseCompound(&file, &image);
    for (const size_t cut : {0, 512}) {
        image.resize(image.size() - cut);
        Spill(standard, image);
        EXPECT_EQ(0, LookUpDisc(disc.get(), &state));
        EXPECT_EQ(kLookUpUnread, state);
        EXPECT_STREQ("Unknown CD Title", disc->title);
        EXPECT_EQ(image, Slurp(standard));
    }
}

TEST_F(StoreTest, ChangesAreToldAndIdenticalOnesNotWritten) {
    const HWND listener =
        CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetStoreListener(listener);
    const auto heard = [&](uint32_t entry) {
        MSG message;
        return PeekMessageA(&message, listener, WM_COMMAND, WM_COMMAND, PM_REMOVE) &&
               message.wParam == kDatabaseChanged && static_cast<uint32_t>(message.lParam) == entry;
    };
    ASSERT_TRUE(Add(path, 5, "Same"));
    EXPECT_TRUE(heard(5));
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(1, Add(path, 5, "Same"));
    EXPECT_TRUE(heard(5));
    EXPECT_EQ(0, Add(path, 5, "Else")); // write-protected
    EXPECT_TRUE(heard(5));
    EXPECT_EQ("Same", TitleOf(path, 5));
    ExpectTidy(path);
    auto record = MakeRecord(8, "Too large", 100);
    record->programCount = 101;
    EXPECT_EQ(0, AddOrReplace(path.c_str(), *record, 0, nullptr));
    EXPECT_TRUE(heard(8));
    EXPECT_EQ(2u, CountEntries(path.c_str()));
    SetStoreListener(nullptr);
    DestroyWindow(listener);
}

struct OtherThread {
    std::wstring path;
    HANDLE begun = CreateEventA(nullptr, TRUE, FALSE, nullptr);
};

static DWORD WINAPI BeginAndHang(void* context) {
    const auto* other = static_cast<OtherThread*>(context);
    BeginStoreBatch(other->path.c_str());
    SetEvent(other->begun);
    Sleep(INFINITE);
    return 0;
}

TEST_F(StoreTest, OneChangeAtATime) {
    ASSERT_TRUE(Add(path, 5, "Five"));
    StoreBatch* batch = BeginStoreBatch(path.c_str());
    ASSERT_TRUE(batch);
    EXPECT_EQ(nullptr, BeginStoreBatch(path.c_str())); // not even on its own thread
    EXPECT_EQ("Five", TitleOf(path, 5));               // reading goes on
    EXPECT_EQ(INVALID_HANDLE_VALUE,                    // a writer that knows no lock
              CreateFileW(path.c_str(), GENERIC_WRITE, 7, nullptr, OPEN_EXISTING, 0, nullptr));
    CancelStoreBatch(batch);
    // Another thread, which then is ended in the middle of its change.
    OtherThread other = {path};
    HANDLE thread = CreateThread(nullptr, 0, BeginAndHang, &other, 0, nullptr);
    WaitForSingleObject(other.begun, 5000);
    EXPECT_FALSE(Add(path, 6, "Six"));
    TerminateThread(thread, 0);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    CloseHandle(other.begun);
    EXPECT_TRUE(Add(path, 7, "Seven"));
    ExpectTidy(path);
}

TEST_F(StoreTest, ABatchIsAllOrNothing) {
    ASSERT_TRUE(Add(path, 1, "One"));
    StoreBatch* batch = BeginStoreBatch(path.c_str());
    for (uint32_t id = 2; id <= 60; ++id)
        EXPECT_TRUE(BatchAdd(batch, *MakeRecord(id, "Many", 12)));
    for (const uint32_t id : {1, 30, 31})
        BatchDelete(batch, id);
    EXPECT_TRUE(BatchAdd(batch, *MakeRecord(31, "Again")));
    EXPECT_EQ("One", TitleOf(path, 1));
    ASSERT_TRUE(CommitStoreBatch(batch));
    std::vector<uint32_t> order;
    EnumerateEntries(
        nullptr, path.c_str(),
        [](const void*, size_t, uint32_t identity, void* list) {
            static_cast<std::vector<uint32_t>*>(list)->push_back(identity);
            return 0;
        },
        &order, 0, 0);
    EXPECT_EQ(58u, order.size());
    EXPECT_EQ(2u, order.front()); // the index keeps the order of adding
    EXPECT_EQ(31u, order.back());
    batch = BeginStoreBatch(path.c_str());
    BatchDelete(batch, 2);
    CancelStoreBatch(batch);
    EXPECT_EQ("Many", TitleOf(path, 2));
}

TEST_F(StoreTest, AsksBeforeReplacing) {
    EXPECT_EQ(1, AddOrReplace(path.c_str(), *MakeRecord(5, "Old"), 1, nullptr)); // no question
    for (const int answer : {IDNO, IDYES}) {
        std::thread person([&] {
            HWND box = nullptr;
            Wait([&] { return (box = FindWindowA("#32770", "Duplicate Entry - Replace?")); });
            PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(answer), 0);
        });
        EXPECT_EQ(answer == IDYES, AddOrReplace(path.c_str(), *MakeRecord(5, "New"), 1, nullptr));
        person.join();
        EXPECT_EQ(answer == IDYES ? "New" : "Old", TitleOf(path, 5));
    }
}

TEST_F(StoreTest, ProgressFromElevenPairsOn) {
    std::vector<LRESULT> seen; // where the bar stands at each call; -1: there is none
    const auto note = [](const void*, size_t, uint32_t, void* context) {
        const HWND window = FindWindowA("#32770", "Tonvista");
        const HWND bar = window ? GetDlgItem(window, IDC_READ_BAR) : nullptr;
        static_cast<std::vector<LRESULT>*>(context)->push_back(
            bar ? SendMessageA(bar, PBM_GETPOS, 0, 0) : -1);
        return 1;
    };
    for (uint32_t id = 1; id <= 9; ++id) // and the pair {0, 0}
        ASSERT_TRUE(Add(path, id, "x", 1));
    EXPECT_EQ(1, EnumerateEntries(nullptr, path.c_str(), note, &seen, 1, 0));
    EXPECT_EQ(std::vector<LRESULT>(9, -1), seen);
    ASSERT_TRUE(Add(path, 10, "x", 1));
    seen.clear();
    EXPECT_EQ(1, EnumerateEntries(nullptr, path.c_str(), note, &seen, 1, 0));
    EXPECT_EQ((std::vector<LRESULT>{2, 4, 6, 8, 10, 12, 14, 16, 18, 20}), seen);
    EXPECT_EQ(nullptr, FindWindowA("#32770", "Tonvista"));
}
