// Discs that go to or come from other people's programs. tests/foreign/exchange.sh names the file
// or folder in the environment; without it there are no such tests.
#include "tests/windows/archive/exchange_support.h"

#include <cstdlib>

struct ForeignExchange : testing::Test {
    const char* given = std::getenv("TONVISTA_EXCHANGE");
    void TestBody() override {
        Forget(DefaultDatabasePath());
        if (std::getenv("TONVISTA_EXPORT"))
            Write();
        else
            TakeOver();
        Forget(DefaultDatabasePath());
    }
    // Sheets of one disc with several artists into the folder.
    void Write() {
        int left = 1;
        const auto source = [](CDInfoRecord* record, void* count) {
            *record = *MakeDisc(0xC0FFEE, 3, "Made \"here\"");
            CopyText(record->trackArtists[1], "Caf\xE9 Noir");
            CopyText(record->trackTitles[2], "The third = one; 'really'");
            CompleteRecord(record);
            return (*static_cast<int*>(count))-- > 0 ? 1 : 0;
        };
        ASSERT_TRUE(ExportDiscs(kCueForm, given, 0, source, &left, {}));
    }
    // Imports the file, and tells what came by the delimited lines in "<file>.csv".
    void TakeOver() {
        const std::string path = given;
        size_t discs;
        ASSERT_TRUE(
            ImportDiscs(nullptr, path.ends_with(".cue") ? kCueForm : kCdpForm, given, {}, &discs));
        std::string lines;
        const auto collect = [](const CDInfoRecord& record, void* to) {
            *static_cast<std::string*>(to) += DelimitedLines(record, ',');
            return 1;
        };
        const std::string own = Narrow(DefaultDatabasePath());
        ASSERT_TRUE(ReadDiscs(nullptr, kCdpForm, own.c_str(), collect, &lines, {}));
        Spill(WidenAscii(path + ".csv"),
              {reinterpret_cast<const uint8_t*>(lines.data()), lines.size()});
    }
    static std::wstring WidenAscii(const std::string& text) { return {text.begin(), text.end()}; }
};

static const int s_foreign =
    std::getenv("TONVISTA_EXCHANGE") &&
    testing::RegisterTest("ForeignExchange", "Run", nullptr, nullptr, __FILE__, __LINE__,
                          []() -> testing::Test* { return new ForeignExchange; });
