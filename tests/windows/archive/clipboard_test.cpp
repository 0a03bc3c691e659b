// Discs over the system's clipboard, and other programs' data under the same name.
#include "archive/clipboard_win.h"

#include "tests/support/big_archive.h"

#include <gtest/gtest.h>

static void PutBytes(const std::vector<uint8_t>& bytes) {
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    memcpy(GlobalLock(memory), bytes.data(), bytes.size());
    GlobalUnlock(memory);
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    SetClipboardData(RegisterClipboardFormatA("CDP_Info"), memory);
    CloseClipboard();
}

TEST(Clipboard, CarriesDiscsAndRefusesGarbage) {
    const HWND window =
        CreateWindowA("STATIC", "", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    std::vector<uint8_t> block, taken;
    ASSERT_TRUE(AppendToDiscBlock(*BigRecord(1), &block));
    EXPECT_TRUE(PutDiscsOnClipboard(window, block));
    EXPECT_TRUE(ClipboardHasDiscs());
    EXPECT_TRUE(TakeDiscsFromClipboard(window, &taken));
    EXPECT_EQ(taken, block);

    auto cut = block;
    cut.resize(cut.size() / 2);
    for (const auto& bytes : {cut, std::vector<uint8_t>(1), std::vector<uint8_t>(100000, 0xFF)}) {
        PutBytes(bytes);
        EXPECT_TRUE(ClipboardHasDiscs()) << "the format alone is seen";
        EXPECT_FALSE(TakeDiscsFromClipboard(window, &taken));
        EXPECT_TRUE(taken.empty());
    }
    ASSERT_TRUE(OpenClipboard(window));
    EmptyClipboard();
    CloseClipboard();
    EXPECT_FALSE(ClipboardHasDiscs());
    EXPECT_FALSE(TakeDiscsFromClipboard(window, &taken));
    DestroyWindow(window);
}
