// Papers, lines, and the list of discs. See print_layout.h.
#include "archive/print_layout.h"

#include "core/text.h"

#include <algorithm>
#include <climits>
#include <cstring>

constexpr int kLongestPaper = 500000; // five metres: what a driver says beyond that is no paper
constexpr int kMargin = 1500;         // of usual papers
constexpr int kMarginShare = 12;      // of a small paper's shorter side
constexpr int kLeastLines = 7;        // of a page, for which letters shrink
constexpr uint8_t kBandGray = 240;

// ---- papers and lines

static int Clamp(int value, int least, int most) {
    return std::max(least, std::min(value, most));
}

PrintPaper MakePaper(int width, int height, Box printable) {
    PrintPaper paper;
    paper.width = Clamp(width, 1, kLongestPaper);
    paper.height = Clamp(height, 1, kLongestPaper);
    paper.printable.left = Clamp(printable.left, 0, paper.width - 1);
    paper.printable.top = Clamp(printable.top, 0, paper.height - 1);
    paper.printable.width = Clamp(printable.width, 0, paper.width - paper.printable.left);
    paper.printable.height = Clamp(printable.height, 0, paper.height - paper.printable.top);
    return paper;
}

Box PageArea(const PrintPaper& paper) {
    const int margin = std::min(kMargin, std::min(paper.width, paper.height) / kMarginShare);
    const Box& reach = paper.printable;
    const int left = std::max(margin, reach.left), top = std::max(margin, reach.top);
    const int right = std::min(paper.width - margin, reach.left + reach.width);
    const int bottom = std::min(paper.height - margin, reach.top + reach.height);
    return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

int PageLetters(const PrintStyle& style, const Box& area) {
    return std::min(style.size, PrintSizeFor(style.font, area.height, kLeastLines));
}

void AddLine(PrintPage* page, const PrintStyle& style, const Box& box, std::string_view text,
             PrintLook look, PrintAlign align, PrintTurn turn) {
    const int along = turn == kUpright ? box.width : box.height;
    const int across = turn == kUpright ? box.height : box.width;
    if (look.size < kLeastLetters || PrintLineHeight(style.font, look.size) > across) return;
    std::string fitting = FitText(style.font, look, text, along);
    if (!fitting.empty()) page->texts.push_back({box, std::move(fitting), look, align, turn});
}

std::string PrintTime(uint32_t seconds) {
    char text[32];
    const unsigned hours = seconds / 3600, minutes = seconds / 60 % 60, rest = seconds % 60;
    if (hours)
        FormatText(text, sizeof text, "%u:%02u:%02u", hours, minutes, rest);
    else
        FormatText(text, sizeof text, "%u:%02u", minutes, rest);
    return text;
}

// The words are translated by hand: a "%d" too few or too many does no harm this way.
std::string PrintWordText(const PrintStyle& style, PrintWord word, const std::string& first,
                          const std::string& second) {
    std::string text = style.words[word];
    size_t from = 0;
    for (const std::string* value : {&first, &second}) {
        const size_t at = text.find('%', from);
        if (at == std::string::npos || at + 1 >= text.size()) break;
        text.replace(at, 2, *value);
        from = at + value->size();
    }
    return text;
}

const char* DiscArtistOf(const PrintStyle& style, const CDInfoRecord& record) {
    return IsSingleArtist(record) ? record.trackArtists[0] : style.words[kWordVarious].c_str();
}

// ---- the list's memory

static uint32_t KeepText(PrintDiscs* discs, std::string_view text) {
    const std::string clean = PrintableText(text);
    const size_t at = discs->texts.size();
    discs->texts.insert(discs->texts.end(), clean.c_str(), clean.c_str() + clean.size() + 1);
    return static_cast<uint32_t>(at);
}

void AddPrintDisc(PrintDiscs* discs, const PrintStyle& style, const CDInfoRecord& record) {
    PrintDiscs::Entry entry;
    entry.title = KeepText(discs, record.title);
    entry.artist = KeepText(discs, DiscArtistOf(style, record));
    entry.comment = KeepText(discs, record.comment);
    entry.seconds = record.totalMinutes * 60u + record.totalSeconds;
    entry.tracks = record.trackCount;
    discs->comments += discs->texts[entry.comment] != 0;
    discs->entries.push_back(entry);
}

// ---- the list's layout

// Letter sizes that a page must be wide to have the column.
static constexpr int kColumnNeeds[kListColumns] = {0, 12, 18, 25, 40};
// Shares of what the columns of fixed width leave.
static constexpr int kColumnShares[kListColumns] = {5, 4, 0, 0, 4};
static constexpr PrintWord kColumnWords[kListColumns] = {kWordTitle, kWordArtist, kWordTime,
                                                         kWordTracks, kWordComment};
static constexpr const char* kColumnSamples[kListColumns] = {"", "", "0:00:00", "000", ""};

static int HasColumn(const ListLayout& layout, const PrintDiscs& discs, int column) {
    if (column == kListComment && !discs.comments) return 0;
    return layout.area.width >= static_cast<long long>(kColumnNeeds[column]) * layout.size;
}

static void LayOutColumns(const PrintStyle& style, const PrintDiscs& discs, ListLayout* layout) {
    int rest = layout->area.width + layout->gap, shares = 0;
    for (int i = 0; i < kListColumns; ++i) {
        layout->width[i] = 0;
        if (!HasColumn(*layout, discs, i)) continue;
        shares += kColumnShares[i];
        rest -= layout->gap;
        if (kColumnShares[i]) continue;
        const PrintLook look = {layout->size, 1};
        layout->width[i] = std::max(PrintWidth(style.font, look, style.words[kColumnWords[i]]),
                                    PrintNumberWidth(style.font, look, kColumnSamples[i]));
        rest -= layout->width[i];
    }
    int left = layout->area.left;
    for (int i = 0; i < kListColumns; ++i) {
        if (!HasColumn(*layout, discs, i)) continue;
        if (kColumnShares[i])
            layout->width[i] = static_cast<int>(static_cast<long long>(std::max(0, rest)) *
                                                kColumnShares[i] / shares);
        layout->left[i] = left;
        left += layout->width[i] + layout->gap;
    }
}

static std::string_view ListText(const PrintDiscs& discs, size_t index, int column) {
    const PrintDiscs::Entry& entry = discs.entries[index];
    const uint32_t at = column == kListTitle    ? entry.title
                        : column == kListArtist ? entry.artist
                                                : entry.comment;
    return &discs.texts[at];
}

static int RowLines(const PrintStyle& style, const PrintDiscs& discs, const ListLayout& layout,
                    size_t index) {
    int lines = 1;
    const PrintLook look = {layout.size, 0};
    for (const int column : {kListTitle, kListArtist, kListComment}) {
        if (!layout.width[column] || layout.mostLines == 1) continue;
        const std::string_view text = ListText(discs, index, column);
        if (PrintWidth(style.font, look, text) <= layout.width[column]) continue;
        const auto wrapped =
            WrapText(style.font, look, text, layout.width[column], layout.mostLines);
        lines = std::max(lines, static_cast<int>(wrapped.size()));
    }
    return lines;
}

static int RowHeight(const ListLayout& layout, int lines) {
    return lines * layout.lineHeight + layout.gap / 4;
}

ListLayout LayOutList(const PrintStyle& style, const PrintDiscs& discs) {
    ListLayout layout = {};
    layout.area = PageArea(style.paper);
    layout.size = PageLetters(style, layout.area);
    if (layout.size < kLeastLetters) return layout;
    layout.lineHeight = PrintLineHeight(style.font, layout.size);
    layout.gap = layout.size;
    layout.headHeight = PrintLineHeight(style.font, layout.size * 3 / 2) + layout.gap / 2;
    layout.bodyTop =
        layout.area.top + layout.headHeight + layout.lineHeight + layout.gap / 4 + kPrintRule;
    layout.bodyHeight =
        layout.area.top + layout.area.height - layout.lineHeight - layout.gap / 2 - layout.bodyTop;
    layout.mostLines = layout.bodyHeight >= RowHeight(layout, 9) ? 3 : 1;
    if (layout.bodyHeight < RowHeight(layout, 1)) return layout;
    LayOutColumns(style, discs, &layout);
    layout.count = discs.entries.size();
    int used = INT_MAX / 2;
    for (size_t i = 0; i < layout.count; ++i) {
        const int height = RowHeight(layout, RowLines(style, discs, layout, i));
        if (used + height > layout.bodyHeight) {
            layout.starts.push_back(static_cast<uint32_t>(i));
            used = 0;
        }
        used += height;
    }
    return layout;
}

size_t ListPages(const ListLayout& layout) {
    return std::max<size_t>(1, layout.starts.size());
}

// ---- its pages

// Two texts at either end of a line, of which the right one comes first where room is short. Both
// stand on the strip's lower edge.
static void AddEnds(PrintPage* page, const PrintStyle& style, const Box& strip,
                    std::string_view left, PrintLook leftLook, std::string_view right,
                    PrintLook rightLook) {
    const int bottom = strip.top + strip.height;
    const int leftHeight = PrintLineHeight(style.font, leftLook.size);
    const int rightHeight = PrintLineHeight(style.font, rightLook.size);
    const int width = std::min(PrintWidth(style.font, rightLook, right), strip.width);
    AddLine(page, style,
            {strip.left + strip.width - width, bottom - rightHeight, width, rightHeight}, right,
            rightLook, kAlignRight);
    AddLine(page, style,
            {strip.left, bottom - leftHeight, std::max(0, strip.width - width - rightLook.size),
             leftHeight},
            left, leftLook);
}

static void AddListHead(PrintPage* page, const PrintStyle& style, const ListLayout& layout) {
    const Box& area = layout.area;
    const PrintLook large = {layout.size * 3 / 2, 1};
    AddEnds(page, style, {area.left, area.top, area.width, PrintLineHeight(style.font, large.size)},
            style.words[kWordList], large, style.date, {layout.size, 0});
    const int top = area.top + layout.headHeight;
    for (int i = 0; i < kListColumns; ++i)
        if (layout.width[i])
            AddLine(page, style, {layout.left[i], top, layout.width[i], layout.lineHeight},
                    style.words[kColumnWords[i]], {layout.size, 1},
                    kColumnShares[i] ? kAlignLeft : kAlignRight);
    page->fills.push_back(
        {{area.left, top + layout.lineHeight, area.width, kPrintRule}, kPrintRuleGray});
}

void AddPageFoot(PrintPage* page, const PrintStyle& style, const Box& area, int size,
                 std::string_view left, size_t number, size_t pages) {
    const int height = PrintLineHeight(style.font, size);
    AddEnds(page, style, {area.left, area.top + area.height - height, area.width, height}, left,
            {size, 0},
            PrintWordText(style, kWordPage, std::to_string(number), std::to_string(pages)),
            {size, 0});
}

// Lines of a cell, one below the other.
static void AddCell(PrintPage* page, const PrintStyle& style, const ListLayout& layout, int column,
                    int top, std::string_view text) {
    const PrintLook look = {layout.size, 0};
    for (const std::string& line :
         WrapText(style.font, look, text, layout.width[column], layout.mostLines)) {
        AddLine(page, style, {layout.left[column], top, layout.width[column], layout.lineHeight},
                line, look);
        top += layout.lineHeight;
    }
}

static void AddRow(PrintPage* page, const PrintStyle& style, const PrintDiscs& discs,
                   const ListLayout& layout, size_t index, int top) {
    for (const int column : {kListTitle, kListArtist, kListComment})
        if (layout.width[column])
            AddCell(page, style, layout, column, top, ListText(discs, index, column));
    const PrintDiscs::Entry& entry = discs.entries[index];
    const std::string numbers[] = {PrintTime(entry.seconds), std::to_string(entry.tracks)};
    for (const int column : {kListTime, kListTracks})
        if (layout.width[column])
            AddLine(page, style,
                    {layout.left[column], top, layout.width[column], layout.lineHeight},
                    numbers[column == kListTracks], {layout.size, 0}, kAlignRight);
}

PrintPage ListPage(const PrintStyle& style, const PrintDiscs& discs, const ListLayout& layout,
                   size_t page) {
    PrintPage made;
    if (!layout.count || page >= layout.starts.size()) return made;
    AddListHead(&made, style, layout);
    const size_t end = page + 1 < layout.starts.size() ? layout.starts[page + 1] : layout.count;
    int top = layout.bodyTop;
    for (size_t i = layout.starts[page]; i < end; ++i) {
        const int height = RowHeight(layout, RowLines(style, discs, layout, i));
        if (i % 2)
            made.fills.push_back({{layout.area.left, top, layout.area.width, height}, kBandGray});
        AddRow(&made, style, discs, layout, i, top + layout.gap / 8);
        top += height;
    }
    AddPageFoot(&made, style, layout.area, layout.size,
                PrintWordText(style, kWordDiscs, std::to_string(layout.count)), page + 1,
                layout.starts.size());
    return made;
}
