// The operations of the database, on files.
#include "tests/windows/cdinfo/crash.h"

#include <gtest/gtest.h>

#include "cdinfo/compound_win.h"
#include "core/commands.h"

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

// A database whose index is {0,0},{A,A},{B,A}: B's texts are those of A.
constexpr uint32_t kA = 0x00C0FFEE, kB = 0x0BADBEEF;
static void MakeAliasDatabase(const std::wstring& path) {
    ASSERT_TRUE(Add(path, kA, "Alias"));
    SetIndexPair(path, 2, {kB, kA});
}

TEST_F(StoreTest, StoresNothingWithoutContent) {
    for (const char* title : {"drive DOOR is Open", "Data CD in drive", "no tracks"}) {
        EXPECT_TRUE(Add(path, 7, title, *title == 'n' ? 0 : 3));
        EXPECT_FALSE(FileExists(path)) << title;
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
    Spill(standard, damaged);
    EXPECT_EQ(1, EnsureDatabase(nullptr));
    EXPECT_EQ(text, Slurp(standard + L".bad"));
    EXPECT_EQ(damaged, Slurp(standard + L".bad2"));
    ExpectTidy(standard);
}

TEST_F(StoreTest, AliasesFollowTheIndex) {
    MakeAliasDatabase(standard);
    EXPECT_EQ(3u, CountEntries(nullptr));
    auto disc = MakeRecord(kB);
    EXPECT_EQ(1, LookUpDisc(disc.get(), nullptr));
    EXPECT_STREQ("Alias", disc->title);
    EXPECT_EQ(kB, disc->identity);
    ASSERT_TRUE(Add(standard, kB, "Shared"));
    EXPECT_EQ("Shared", TitleOf(standard, kA));
    MakeAliasDatabase(path);
    EXPECT_EQ(1, DeleteEntry(path.c_str(), kB)); // takes nothing from A
    EXPECT_EQ("Alias", TitleOf(path, kA));
    EXPECT_EQ(1, DeleteEntry(nullptr, kA)); // and its alias with it
    EXPECT_EQ(1u, CountEntries(nullptr));
}

TEST_F(StoreTest, LookUpStoresANewDiscAndKeepsTypedTexts) {
    LookUpState state;
    EXPECT_EQ(0, LookUpDisc(MakeRecord(5).get(), &state));
    EXPECT_EQ(kLookUpNew, state);
    EXPECT_EQ("Unknown CD Title", TitleOf(standard, 5));
    const uint8_t classId[] = {0x70, 0x06, 0x9D, 0xC0, 0x7E, 0xBA, 0xD0, 0x11,
                               0xAA, 0x01, 0x00, 0xAA, 0x00, 0xBF, 0x03, 0x89};
    const Bytes file = Slurp(standard);
    EXPECT_NE(file.end(), std::search(file.begin(), file.end(), classId, classId + 16));
    ASSERT_TRUE(Add(standard, 5, "Typed"));
    auto disc = MakeRecord(5); // new timing is stored, the texts stay
    disc->trackStarts[3] += 75 * 60;
    EXPECT_EQ(1, LookUpDisc(disc.get(), &state));
    EXPECT_EQ(kLookUpFound, state);
    EXPECT_STREQ("Typed", disc->title);
    // A drive that has seen one track only must not cut the entry to that.
    EXPECT_EQ(1, LookUpDisc(MakeRecord(5, "", 1).get(), nullptr));
    *disc = CDInfoRecord();
    ASSERT_TRUE(ReadEntry(nullptr, 5, disc.get()));
    EXPECT_EQ(3, disc->trackCount);
    EXPECT_EQ(3, disc->programCount);
    EXPECT_EQ(260, disc->trackSeconds[2]);
}

TEST_F(StoreTest, LookUpNeverOverwritesWhatItCannotRead) {
    ASSERT_TRUE(Add(standard, 5, "Typed"));
    LookUpState state;
    const Bytes typed = Slurp(standard);
    // In use by another program.
    HANDLE other = CreateFileW(standard.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                               OPEN_EXISTING, 0, nullptr);
    auto disc = MakeRecord(5);
    EXPECT_EQ(0, LookUpDisc(disc.get(), &state));
    EXPECT_EQ(kLookUpUnread, state);
    EXPECT_EQ(0, AddOrReplace(nullptr, *disc, 0, nullptr));
    EXPECT_EQ(0, AddOrReplace(nullptr, *disc, 1, nullptr)); // nor is it taken for a new disc
    EXPECT_EQ(0, DeleteEntry(nullptr, 5));
    EXPECT_EQ(0, EnsureDatabase(nullptr));
    CloseHandle(other);
    EXPECT_EQ(typed, Slurp(standard));
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
    EXPECT_EQ("Same", TitleOf(path, 5));
    ExpectTidy(path);
    SetStoreListener(nullptr);
    DestroyWindow(listener);
}

static volatile LONG s_begun;

static DWORD WINAPI BeginAndHang(void* path) {
    s_begun = BeginStoreBatch(static_cast<const wchar_t*>(path)) != nullptr;
    Sleep(INFINITE);
    return 0;
}

// A change in another thread, which then is ended in the middle of it.
TEST_F(StoreTest, OneChangeAtATime) {
    ASSERT_TRUE(Add(path, 5, "Five"));
    HANDLE thread = CreateThread(nullptr, 0, BeginAndHang, path.data(), 0, nullptr);
    ASSERT_TRUE(Wait([] { return s_begun; }));
    EXPECT_FALSE(Add(path, 6, "Six"));
    EXPECT_EQ("Five", TitleOf(path, 5)); // reading goes on
    EXPECT_EQ(INVALID_HANDLE_VALUE,      // a writer that knows no lock
              CreateFileW(path.c_str(), GENERIC_WRITE, 7, nullptr, OPEN_EXISTING, 0, nullptr));
    TerminateThread(thread, 0);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    EXPECT_TRUE(Add(path, 7, "Seven"));
    ExpectTidy(path);
}
