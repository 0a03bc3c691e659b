// Pages of discs: every text inside its box, by a measure of the test's own, whatever the texts and
// the paper; and nothing of a disc missing where there is room for it.
#include "tests/support/boxes.h"
#include "tests/support/print_pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>

// Letters of many widths, some of which hang over on either side.
static PrintFont OddFont() {
    PrintFont font;
    font.em = 1000;
    font.ascent = 905;
    font.descent = 212;
    for (int bold = 0; bold < 2; ++bold)
        for (int i = 0; i < 256; ++i) {
            const auto width = static_cast<int16_t>(250 + i * 37 % 700 + bold * 60);
            font.letters[bold][i] = {static_cast<int16_t>(i % 5 * 40 - 90), width,
                                     static_cast<int16_t>(i % 7 * 30 - 110)};
        }
    font.letters[0]['.'] = font.letters[1]['.'] = {20, 270, 20};
    return font;
}

static const PrintPaper kA4 = MakePaper(21000, 29700, {420, 420, 20160, 28860});
static const PrintPaper kPapers[] = {
    kA4,
    MakePaper(29700, 21000, {420, 420, 28860, 20160}),
    MakePaper(21590, 27940, {635, 635, 20320, 26670}),
    MakePaper(14800, 21000, {300, 300, 14200, 20400}),
    MakePaper(10500, 14800, {300, 1200, 9900, 13300}),
    MakePaper(6200, 2900, {150, 150, 5900, 2600}),
    MakePaper(3000, 1000, {0, 0, 3000, 1000}),
    MakePaper(1000, 20000, {0, 0, 1000, 20000}),
    MakePaper(1, 1, {0, 0, 1, 1}),
    MakePaper(-5, 2147483647, {-9, 900000, 2147483647, -1}),
};

static PrintStyle StyleOn(const PrintPaper& paper, int points = 9) {
    return MakeStyle(OddFont(), paper, points);
}

// Ink of a text, letter by letter.
static double InkWidth(const PrintFont& font, const PrintText& text) {
    double place = 0, left = 0, right = 0;
    for (const char letter : text.text) {
        const PrintLetter& one = font.letters[text.look.bold][static_cast<uint8_t>(letter)];
        left = std::min(left, place + one.before);
        place += one.width;
        right = std::max({right, place, place - one.after});
    }
    return (right - left) * text.look.size / font.em;
}

static void ExpectTidy(const PrintStyle& style, const PrintPage& page) {
    const Box reach = style.paper.printable;
    for (const PrintFill& fill : page.fills)
        EXPECT_TRUE(Inside(fill.box, reach)) << fill.box.left << " " << fill.box.top;
    for (size_t i = 0; i < page.texts.size(); ++i) {
        const PrintText& text = page.texts[i];
        EXPECT_TRUE(Inside(text.box, reach)) << text.text;
        const int along = text.turn == kUpright ? text.box.width : text.box.height;
        const int across = text.turn == kUpright ? text.box.height : text.box.width;
        EXPECT_LE(InkWidth(style.font, text), along + 0.001) << text.text;
        EXPECT_LE(1.117 * text.look.size, across + 0.001) << text.text;
        EXPECT_GE(text.look.size, kLeastLetters);
        EXPECT_FALSE(text.text.empty());
        for (const char letter : text.text)
            EXPECT_GE(static_cast<uint8_t>(letter), 32);
        for (size_t k = 0; k < i; ++k)
            ASSERT_TRUE(Apart(text.box, page.texts[k].box, 0))
                << text.text << " over " << page.texts[k].text;
    }
}

static int Count(const std::vector<PrintPage>& pages, const std::string& text) {
    int count = 0;
    for (const PrintPage& page : pages)
        for (const PrintText& one : page.texts)
            count += one.text == text;
    return count;
}

TEST(PrintLayout, TextStaysInsideWhateverItIsAndOnWhateverPaper) {
    for (const PrintPaper& paper : kPapers)
        for (const int points : {5, 9, 24})
            for (const int tracks : {0, 1, 12, 99, 100})
                for (int kind = 0; kind < kTextKinds; ++kind) {
                    SCOPED_TRACE(testing::Message() << paper.width << "x" << paper.height << " "
                                                    << points << " " << tracks << " " << kind);
                    const CDInfoRecord record =
                        MakeDisc(tracks, static_cast<DiscTexts>(kind), kind % 2 == 0);
                    const PrintStyle style = StyleOn(paper, points);
                    for (int what = 0; what < kPrintKinds; ++what)
                        for (const PrintPage& page : MakePages(static_cast<PrintKind>(what), style,
                                                               {record, record, record}))
                            ExpectTidy(style, page);
                    if (HasFatalFailure() || HasFailure()) return;
                }
}

TEST(PrintLayout, ListHasEveryDiscOnceInOrderWithHeadsOnEachPage) {
    std::vector<CDInfoRecord> records;
    for (int i = 0; i < 200; ++i) {
        records.push_back(MakeDisc(i % 12, i % 9 ? kShortTexts : kLongLines, i % 3 == 0));
        CopyText(records[i].title, ("Disc " + std::to_string(i)).c_str());
    }
    for (const PrintPaper& paper : {kPapers[0], kPapers[2], kPapers[4], kPapers[5]}) {
        const auto pages = MakePages(kPrintList, StyleOn(paper), records);
        ASSERT_GT(pages.size(), 3u);
        int next = 0;
        for (const PrintPage& page : pages) {
            EXPECT_EQ(Count({page}, "Title"), 1);
            for (const PrintText& text : page.texts)
                if (text.text == "Disc " + std::to_string(next)) ++next;
        }
        EXPECT_EQ(next, 200);
        const size_t last = pages.size();
        EXPECT_EQ(Count(pages, (std::ostringstream() << "Page " << last << " of " << last).str()),
                  1);
    }
}

TEST(PrintLayout, LongTextIsBrokenBeforeItIsCut) {
    const PrintFont font = OddFont();
    const PrintLook look = {300, 0};
    const std::string text = "Somewhere over the wide rainbow, away up high in the sky above";
    for (int width = 1500; width < 9000; width += 37) {
        const auto all = WrapText(font, look, text, width, 99);
        const auto cut = WrapText(font, look, text, width, 2);
        EXPECT_EQ(cut.back().ends_with("..."), all.size() > 2);
        if (width < PrintWidth(font, look, "Somewhere over")) continue;
        std::string together; // no word had to be broken
        for (const std::string& line : all)
            together += line + " ";
        EXPECT_EQ(together, text + " ") << width;
    }
    EXPECT_EQ(FitText(font, look, text, 10), "");
    EXPECT_EQ(PrintableText("\t a\nb\x7F "), "a b");
}

TEST(PrintLayout, PageOfADiscHasAllOfIt) {
    for (const int tracks : {1, 12, 100})
        for (const int various : {0, 1}) {
            CDInfoRecord record = MakeDisc(tracks, kShortTexts, various);
            CopyText(record.title, "A Title");
            CopyText(record.comment, "A comment");
            CopyText(record.trackComments[tracks - 1], "Last comment");
            const auto pages = MakePages(kPrintDisc, StyleOn(kA4), {record});
            EXPECT_GE(Count(pages, "A Title"), 1);
            EXPECT_EQ(Count(pages, "A comment"), 1);
            EXPECT_EQ(Count(pages, "Last comment"), 1);
            EXPECT_EQ(Count(pages, "Program"), 1);
            EXPECT_EQ(Count(pages, "T001:M000:S005 - T001:M000:S009   (00:04)"), 1);
            const int single = tracks == 1 || !various;
            EXPECT_EQ(Count(pages, "Various"), !single);
            EXPECT_EQ(Count(pages, "Artist"), !single); // the column's head
            for (int i = 2; i <= tracks; ++i)
                EXPECT_EQ(Count(pages, std::to_string(i)), 1) << i;
            DefaultProgram(&record);
            EXPECT_EQ(Count(MakePages(kPrintDisc, StyleOn(kA4), {record}), "Program"), 0);
        }
}

// Where the upright lines of that length stand.
static std::set<int> UprightLines(const PrintPage& page, int length) {
    std::set<int> places;
    for (const PrintFill& fill : page.fills)
        if (fill.box.height == length) places.insert(fill.box.left);
    return places;
}

TEST(PrintLayout, InlayIsOfTrueSizeAndComplete) {
    for (const PrintPaper& paper : {kPapers[0], kPapers[1], kPapers[2]}) {
        const PrintStyle style = StyleOn(paper);
        int reduced = 1;
        const auto pages = InlayPages(style, MakeDisc(12, kLongLines, 1), &reduced);
        ASSERT_EQ(pages.size(), 1u);
        EXPECT_EQ(reduced, 0);
        const auto front = UprightLines(pages[0], 12000), back = UprightLines(pages[0], 11800);
        ASSERT_EQ(front.size(), 2u);
        EXPECT_NEAR(*front.rbegin() - *front.begin(), 12000, 10);
        ASSERT_EQ(back.size(), 4u); // with the folds
        EXPECT_NEAR(*back.rbegin() - *back.begin(), 15000, 10);
        EXPECT_EQ(*std::next(back.begin()) - *back.begin(), 650);
        EXPECT_EQ(Count(pages, "12"), 2);
    }
    for (const int tracks : {99, 100}) {
        int reduced = 0;
        const auto pages = InlayPages(StyleOn(kA4), MakeDisc(tracks, kLongWords, 1), &reduced);
        for (int i = 1; i <= tracks; ++i)
            EXPECT_GE(Count(pages, std::to_string(i)), 1) << i;
    }
    CDInfoRecord record = MakeDisc(3, kShortTexts, 0);
    CopyText(record.title, "Name");
    int reduced = 0;
    const auto pages = InlayPages(StyleOn(kA4), record, &reduced);
    int up = 0, down = 0;
    for (const PrintText& text : pages[0].texts) {
        if (text.text != "Song 3 - Name") continue;
        up += text.turn == kReadsUp && text.box.left < 10500; // letters' tops outwards
        down += text.turn == kReadsDown && text.box.left > 10500;
    }
    EXPECT_EQ(up, 1);
    EXPECT_EQ(down, 1);
    // Smaller papers: a page each; then reduced, and it says so.
    EXPECT_EQ(
        InlayPages(StyleOn(MakePaper(16000, 16000, {0, 0, 16000, 16000})), record, &reduced).size(),
        2u);
    EXPECT_EQ(reduced, 0);
    EXPECT_EQ(InlayPages(StyleOn(kPapers[4]), record, &reduced).size(), 2u);
    EXPECT_EQ(reduced, 1);
}
