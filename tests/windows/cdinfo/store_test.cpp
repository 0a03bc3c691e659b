// The operations of the database, on files.
#include "tests/windows/cdinfo/crash.h"

#include <gtest/gtest.h>

#include "cdinfo/compound_win.h"
#include "cdinfo/compound_write.h"
#include "core/commands.h"
#include "tests/support/big_archive.h"

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
    ASSERT_TRUE(AddStoreListener(listener, 0));
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
    // Batches: the default database's, and only where they are asked for.
    while (heard(5))
        continue;
    const auto addBatch = [&](const wchar_t* to, uint32_t first, uint32_t last) {
        StoreBatch* batch = BeginStoreBatch(to);
        for (uint32_t n = first; n <= last; ++n)
            EXPECT_TRUE(BatchAdd(batch, *MakeTypedRecord(n, n)));
        EXPECT_TRUE(CommitStoreBatch(batch));
    };
    addBatch(nullptr, 1, 1);
    ASSERT_TRUE(AddStoreListener(listener, 1));
    addBatch((path + L"2").c_str(), 2, 2);
    addBatch(nullptr, 3, 3);
    addBatch(nullptr, 4, 5);
    EXPECT_TRUE(heard(3) && heard(0));
    EXPECT_FALSE(heard(0));
    RemoveStoreListener(listener);
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

// ---- many changes at once, for which the file is laid out anew

static std::vector<CompoundPart> PartsOf(const CompoundView& view) {
    std::vector<CompoundPart> parts;
    for (const CompoundStream& stream : view.streams)
        parts.push_back(CarryPart(view, stream));
    return parts;
}

static int IsLaidOutAnew(const Bytes& file) {
    CompoundView view;
    Bytes image;
    return CheckCompound(file, &view) == kCompoundGood &&
           BuildCompound(view.root, PartsOf(view), &image) && image == file;
}

// Streams of every kind that others may have put into the file, which no batch touches.
constexpr size_t kOtherSizes[] = {0, 63, 64, 4095, 4096, 39671};

static Bytes ArchiveWithOthers(uint32_t discs) {
    const Bytes base = BigArchive(discs);
    CompoundView view;
    CheckCompound(base, &view);
    auto parts = PartsOf(view);
    const Bytes content(kOtherSizes[5], 'x');
    for (const size_t size : kOtherSizes)
        parts.push_back(MakePart("o" + std::to_string(size), std::span(content).first(size)));
    Bytes image;
    view.root.stateAndTimes[4] = 5; // of creation; Wine itself drops the state
    BuildCompound(view.root, std::move(parts), &image);
    return image;
}

// Adds a hundred discs and takes ten of them out again in the next batch, with others.
static World ChangeMany(const std::wstring& path, World world, uint32_t first) {
    StoreBatch* batch = BeginStoreBatch(path.c_str());
    for (uint32_t n = 0; n < 100; ++n)
        EXPECT_TRUE(BatchAdd(batch, *MakeTypedRecord(first + n, n)));
    EXPECT_TRUE(CommitStoreBatch(batch));
    batch = BeginStoreBatch(path.c_str());
    for (uint32_t n = 0; n < 90; ++n)
        BatchDelete(batch, first + n);
    EXPECT_TRUE(CommitStoreBatch(batch));
    const World now = ReadWorld(path);
    EXPECT_EQ(world.entries.size() + 10, now.entries.size());
    EXPECT_EQ(world.pairs + 10, now.pairs);
    for (const auto& [entry, bytes] : world.entries) {
        const auto at = now.entries.find(entry);
        EXPECT_TRUE(at != now.entries.end() && at->second == bytes) << entry;
    }
    EXPECT_STREQ(MakeTypedRecord(first + 90, 90)->title, TitleOf(path, first + 90).c_str());
    return now;
}

TEST_F(StoreTest, ManyChangesAndFewTakeTurns) {
    for (const uint32_t discs : {0, 1, 70, 5000}) {
        SCOPED_TRACE(discs);
        Spill(path, ArchiveWithOthers(discs));
        World world = ReadWorld(path);
        EXPECT_EQ(discs, world.entries.size());
        EXPECT_TRUE(PlatformOpens(path, world));
        for (uint32_t round = 0; round < 2; ++round) {
            ASSERT_TRUE(Add(path, 0x70 + round, "By the platform", 90));
            EXPECT_FALSE(IsLaidOutAnew(Slurp(path)));
            EXPECT_TRUE(PlatformOpens(path, ReadWorld(path)));
            ASSERT_EQ(1, DeleteEntry(path.c_str(), 0x70 + round));
            world = ChangeMany(path, world, 0x1000 * (round + 1));
            EXPECT_TRUE(IsLaidOutAnew(Slurp(path)));
            EXPECT_TRUE(PlatformOpens(path, world));
        }
        const Bytes file = Slurp(path);
        CompoundView view;
        ASSERT_EQ(kCompoundGood, CheckCompound(file, &view));
        EXPECT_EQ(5, view.root.stateAndTimes[4]);
        for (const size_t size : kOtherSizes) {
            const auto* other = FindCompoundStream(view, "O" + std::to_string(size));
            EXPECT_TRUE(other && ReadCompoundStream(view, *other) == Bytes(size, 'x')) << size;
        }
    }
}

// A storage of somebody else's, and what is in it, outlives any change.
TEST_F(StoreTest, MoreThanStreamsIsKept) {
    CompoundFile file;
    ASSERT_TRUE(OpenCompound(BigArchive(70), &file));
    IStorage* inner = nullptr;
    ASSERT_EQ(S_OK, file.root->CreateStorage(L"Theirs", STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, 0,
                                             &inner));
    ASSERT_TRUE(WriteStream({nullptr, inner}, L"Inner", Bytes(5000, 'i')));
    inner->Release();
    Bytes image;
    CloseCompound(&file, &image);
    Spill(path, image);
    ChangeMany(path, ReadWorld(path), 0x1000);
    const Bytes now = Slurp(path), inside(512, 'i');
    EXPECT_NE(now.end(), std::search(now.begin(), now.end(), inside.begin(), inside.end()));
    CompoundView view;
    EXPECT_EQ(kCompoundGood, CheckCompound(now, &view));
    EXPECT_FALSE(view.isFlat);
}
