// Pages of discs as boxes of text and shades on paper: a list, the page of one disc, a jewel case's
// inlay. Every text is one line that fits its box; what is too long was broken or cut. Lengths are
// hundredths of a millimetre from the paper's upper left corner.
#pragma once
#include "archive/print_text.h"
#include "cdinfo/record.h"
#include "ui/geometry.h"

#include <string>
#include <vector>

// Records have at most 100 tracks and 100 segments, as unpacking leaves them.
enum PrintTurn { kUpright, kReadsUp, kReadsDown };
enum PrintAlign { kAlignLeft, kAlignRight, kAlignCenter };
struct PrintText {
    Box box;
    std::string text;
    PrintLook look;
    PrintAlign align = kAlignLeft;
    PrintTurn turn = kUpright;
};
struct PrintFill {
    Box box;
    uint8_t gray; // 0 black, 255 white
};
struct PrintPage {
    std::vector<PrintFill> fills; // below the texts
    std::vector<PrintText> texts;
};

struct PrintPaper {
    int width, height;
    Box printable; // what the printer reaches
};
// A paper as it may come from a driver: its numbers are brought into order.
PrintPaper MakePaper(int width, int height, Box printable);
// The printable area less the margins that pages keep; small papers have smaller ones.
Box PageArea(const PrintPaper& paper);

// Texts that stand on pages besides those of the discs.
enum PrintWord {
    kWordList, // heading of the list
    kWordTitle,
    kWordArtist,
    kWordTime,
    kWordTracks,
    kWordComment,
    kWordPage,  // has two "%", page and pages
    kWordDiscs, // has one "%"
    kWordProgram,
    kWordTotal, // has two "%", tracks and time
    kWordVarious,
    kPrintWords
};
struct PrintStyle {
    PrintFont font;
    PrintPaper paper;
    int size; // letters of lists and pages; smaller where the paper is too small for them
    std::string words[kPrintWords];
    std::string date; // as printed
};

// ---- a list of discs

// What the list needs of each disc, in one piece of memory.
struct PrintDiscs {
    struct Entry {
        uint32_t title, artist, comment; // places in `texts`
        uint32_t seconds;
        uint16_t tracks;
    };
    std::vector<Entry> entries;
    std::vector<char> texts;
    int comments = 0; // how many have one
};
void AddPrintDisc(PrintDiscs* discs, const PrintStyle& style, const CDInfoRecord& record);

enum ListColumn { kListTitle, kListArtist, kListTime, kListTracks, kListComment, kListColumns };
struct ListLayout {
    Box area;
    int size, lineHeight, gap;
    int headHeight, bodyTop, bodyHeight;         // heading of the page; rows
    int mostLines;                               // of a row
    int left[kListColumns], width[kListColumns]; // width 0: left out
    std::vector<uint32_t> starts;                // first disc of each page
    size_t count;                                // discs; 0 too when no row has room
};
// Pages are counted at once, made one by one.
ListLayout LayOutList(const PrintStyle& style, const PrintDiscs& discs);
size_t ListPages(const ListLayout& layout); // 1 at least
PrintPage ListPage(const PrintStyle& style, const PrintDiscs& discs, const ListLayout& layout,
                   size_t page);

// ---- one disc
std::vector<PrintPage> DiscPages(const PrintStyle& style, const CDInfoRecord& record);

// ---- jewel case
constexpr int kFrontSide = 12000;
constexpr int kBackWidth = 15000, kBackHeight = 11800;
constexpr int kSpineWidth = 650; // at either side of the back

// One page with front and back, or two when the paper is too small for both. *reduced tells that
// it is too small even for one in true size.
std::vector<PrintPage> InlayPages(const PrintStyle& style, const CDInfoRecord& record,
                                  int* reduced);

// ---- shared by them

constexpr int kPrintRule = 15; // thickness of a line below headings
constexpr uint8_t kPrintRuleGray = 96;
constexpr int kLeastLetters = 20; // smaller ones are left out: no font has them
// Size of a page's letters: the style's, or what leaves room for a few lines.
int PageLetters(const PrintStyle& style, const Box& area);
// "m:ss", from one hour on "h:mm:ss".
std::string PrintTime(uint32_t seconds);
// The artist that all tracks share, or the word for several.
const char* DiscArtistOf(const PrintStyle& style, const CDInfoRecord& record);
// A word with its values put in.
std::string PrintWordText(const PrintStyle& style, PrintWord word, const std::string& first,
                          const std::string& second = "");
// One line into a box, cut to its length. What has no room is left out.
void AddLine(PrintPage* page, const PrintStyle& style, const Box& box, std::string_view text,
             PrintLook look, PrintAlign align = kAlignLeft, PrintTurn turn = kUpright);
// The area's last line: a text, and the page's number.
void AddPageFoot(PrintPage* page, const PrintStyle& style, const Box& area, int size,
                 std::string_view left, size_t number, size_t pages);
