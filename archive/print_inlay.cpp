// A jewel case's inlay: the front, and the back with its two spines, in true size with marks where
// to cut and to fold. See print_layout.h.
#include "archive/print_layout.h"

#include <algorithm>

constexpr int kLegible = 176; // five points
constexpr int kLargestTrack = 350;
constexpr int kLargestTitle = 900, kSmallestTitle = 350;
constexpr int kMostColumns = 4;
constexpr int kFewLetters = 5; // widths of a letter's size that a title takes at least, about twice
                               // as many letters
constexpr int kFrontLetters = 16; // the same where the front has a list at all
constexpr int kPanelGap = 1000;   // between front and back, with their marks
constexpr int kMark = 350, kMarkGap = 100, kLine = 10;
constexpr uint8_t kLineGray = 160;

namespace {
// Where a panel stands, and by how much it is reduced.
struct Panel {
    Box box;
    double scale;
};
struct TrackList {
    int columns, size;
    int artists; // with the artists of tracks
};
} // namespace

static Box Shrink(const Box& box, int x, int y) {
    return {box.left + x, box.top + y, std::max(0, box.width - 2 * x),
            std::max(0, box.height - 2 * y)};
}

// ---- paragraphs that shrink

// Puts the text into the top of the area in letters as large as let it fit, and takes that off the
// area. At the least size it is cut.
static void AddShrunk(PrintPage* page, const PrintStyle& style, Box* area, std::string_view text,
                      int largest, int smallest, int bold, int most, PrintAlign align) {
    const std::string clean = PrintableText(text);
    std::vector<std::string> lines;
    int size = largest;
    for (;; size -= std::max(1, size / 16)) {
        size = std::max(size, smallest);
        lines = WrapText(style.font, {size, bold}, clean, area->width, most + 1);
        const int height = PrintLineHeight(style.font, size) * static_cast<int>(lines.size());
        if (static_cast<int>(lines.size()) <= most && height <= area->height) break;
        if (size > smallest) continue;
        lines = WrapText(style.font, {size, bold}, clean, area->width, most);
        break;
    }
    const int height = PrintLineHeight(style.font, size);
    for (const std::string& line : lines) {
        if (height > area->height) return;
        AddLine(page, style, {area->left, area->top, area->width, height}, line, {size, bold},
                align);
        area->top += height;
        area->height -= height;
    }
}

// ---- the tracks

static std::string TrackText(const CDInfoRecord& record, int track, int artists) {
    std::string title = PrintableText(record.trackTitles[track]);
    if (!artists) return title;
    const std::string artist = PrintableText(record.trackArtists[track]);
    return artist.empty() ? title : artist + " - " + title;
}

static int Rows(const PrintStyle& style, int height, int size) {
    return height / std::max(1, PrintLineHeight(style.font, size));
}

static int NumberWidth(const PrintStyle& style, const CDInfoRecord& record, int size) {
    return PrintNumberWidth(style.font, {size, 0}, record.trackCount > 99 ? "000" : "00") +
           size / 2;
}

// Enough that a length is not taken for the next column's.
static int ColumnGap(int size) {
    return 2 * size;
}

static int ColumnWidth(const Box& area, int columns, int size) {
    return (area.width - (columns - 1) * ColumnGap(size)) / columns;
}

// What a title has beside number and length.
static int TitleWidth(const PrintStyle& style, const CDInfoRecord& record, const Box& area,
                      int columns, int size) {
    return ColumnWidth(area, columns, size) - NumberWidth(style, record, size) -
           PrintNumberWidth(style.font, {size, 0}, "00:00") - size / 2;
}

static int AllTitlesFit(const PrintStyle& style, const CDInfoRecord& record, int width, int size,
                        int artists) {
    for (int i = 0; i < record.trackCount; ++i)
        if (PrintWidth(style.font, {size, 0}, TrackText(record, i, artists)) > width) return 0;
    return 1;
}

// The largest letters in which every title fits as a whole, in as few columns as that takes. 0:
// there are none.
static int ChooseWhole(const PrintStyle& style, const CDInfoRecord& record, const Box& area,
                       int artists, TrackList* list) {
    for (int size = kLargestTrack; size >= kLegible; size -= 6)
        for (int columns = 1; columns <= kMostColumns; ++columns) {
            if (Rows(style, area.height, size) * columns < record.trackCount) continue;
            const int width = TitleWidth(style, record, area, columns, size);
            if (!AllTitlesFit(style, record, width, size, artists)) continue;
            *list = {columns, size, artists};
            return 1;
        }
    return 0;
}

// Where titles have to be cut, small letters show most of them. Columns as many as hold all
// tracks, or as the width takes.
static int ChooseCut(const PrintStyle& style, const CDInfoRecord& record, const Box& area,
                     int least, TrackList* list) {
    const int rows = Rows(style, area.height, kLegible);
    *list = {1, kLegible, 0};
    while (list->columns < kMostColumns && rows * list->columns < record.trackCount &&
           TitleWidth(style, record, area, list->columns + 1, kLegible) >= kLegible * kFewLetters)
        ++list->columns;
    return rows * list->columns >= record.trackCount &&
           TitleWidth(style, record, area, list->columns, kLegible) >= least;
}

// All that is there if it fits, else titles alone, else what of them fits. 0: some tracks do not,
// or less than `least` of a title.
static int FindList(const PrintStyle& style, const CDInfoRecord& record, const Box& area, int least,
                    TrackList* list) {
    if (!IsSingleArtist(record) && ChooseWhole(style, record, area, 1, list)) return 1;
    return ChooseWhole(style, record, area, 0, list) || ChooseCut(style, record, area, least, list);
}

static void AddTrackRow(PrintPage* page, const PrintStyle& style, const CDInfoRecord& record,
                        const TrackList& list, const Box& box, int track) {
    const PrintLook look = {list.size, 0};
    const int number = NumberWidth(style, record, list.size);
    const std::string time = PrintTime(record.trackSeconds[track]);
    const int length =
        std::min(PrintWidth(style.font, look, time), std::max(0, box.width - number));
    AddLine(page, style, {box.left, box.top, std::max(0, number - list.size / 2), box.height},
            std::to_string(track + 1), look, kAlignRight);
    AddLine(page, style,
            {box.left + number, box.top, std::max(0, box.width - number - length - list.size / 2),
             box.height},
            TrackText(record, track, list.artists), look);
    AddLine(page, style, {box.left + box.width - length, box.top, length, box.height}, time, look,
            kAlignRight);
}

static void AddTrackList(PrintPage* page, const PrintStyle& style, const CDInfoRecord& record,
                         const Box& area, const TrackList& list) {
    const int line = PrintLineHeight(style.font, list.size);
    const int most = Rows(style, area.height, list.size);
    const int tracks = std::min<int>(record.trackCount, kMaxTracks);
    const int rows = std::min(most, (tracks + list.columns - 1) / list.columns);
    const int width = ColumnWidth(area, list.columns, list.size);
    if (rows <= 0 || width <= 0) return;
    const int shown = std::min(tracks, rows * list.columns);
    const int height = std::min(area.height / rows, line * 3 / 2); // airy where there is room
    for (int i = 0; i < shown; ++i) {
        const Box box = {area.left + i / rows * (width + ColumnGap(list.size)),
                         area.top + i % rows * height, width, line};
        if (i + 1 == shown && shown < tracks)
            AddLine(page, style, box, "...", {list.size, 0});
        else
            AddTrackRow(page, style, record, list, box, i);
    }
}

// ---- panels

// A line as far as the printer reaches.
static void AddThin(PrintPage* page, const PrintStyle& style, int left, int top, int width,
                    int height) {
    const Box& reach = style.paper.printable;
    const int right = std::min(left + width, reach.left + reach.width);
    const int bottom = std::min(top + height, reach.top + reach.height);
    left = std::max(left, reach.left);
    top = std::max(top, reach.top);
    if (right > left && bottom > top)
        page->fills.push_back({{left, top, right - left, bottom - top}, kLineGray});
}

// The lines along which it is cut, and marks outside of them.
static void AddCutLines(PrintPage* page, const PrintStyle& style, const Box& box) {
    const int ends = kMark + kMarkGap;
    for (const int x : {box.left, box.left + box.width - kLine}) {
        AddThin(page, style, x, box.top, kLine, box.height);
        AddThin(page, style, x, box.top - ends, kLine, kMark);
        AddThin(page, style, x, box.top + box.height + kMarkGap, kLine, kMark);
    }
    for (const int y : {box.top, box.top + box.height - kLine}) {
        AddThin(page, style, box.left, y, box.width, kLine);
        AddThin(page, style, box.left - ends, y, kMark, kLine);
        AddThin(page, style, box.left + box.width + kMarkGap, y, kMark, kLine);
    }
}

static void AddFront(PrintPage* page, const PrintStyle& style, const CDInfoRecord& record,
                     const Panel& panel) {
    AddCutLines(page, style, panel.box);
    const auto scaled = [&](int length) { return static_cast<int>(length * panel.scale); };
    Box area = Shrink(panel.box, scaled(700), scaled(800));
    AddShrunk(page, style, &area, record.title, scaled(kLargestTitle), scaled(kSmallestTitle), 1, 3,
              kAlignCenter);
    AddShrunk(page, style, &area, DiscArtistOf(style, record), scaled(550), scaled(250), 0, 2,
              kAlignCenter);
    Box rest = {area.left, area.top + scaled(700), area.width,
                std::max(0, area.height - scaled(700))};
    TrackList list;
    if (record.trackCount && FindList(style, record, rest, kLegible * kFrontLetters, &list)) {
        AddThin(page, style, area.left + area.width / 3, area.top + scaled(350), area.width / 3,
                scaled(20));
        AddTrackList(page, style, record, rest, list);
        return;
    }
    // Title and artist alone stand a little above the middle.
    for (PrintText& text : page->texts)
        text.box.top += area.height * 2 / 5;
}

static void AddSpines(PrintPage* page, const PrintStyle& style, const CDInfoRecord& record,
                      const Panel& panel) {
    const auto scaled = [&](int length) { return static_cast<int>(length * panel.scale); };
    const std::string artist = PrintableText(DiscArtistOf(style, record));
    const std::string title = PrintableText(record.title);
    const std::string text =
        artist.empty() || title.empty() ? artist + title : artist + " - " + title;
    const Box& box = panel.box;
    const int width = scaled(kSpineWidth), inset = scaled(400);
    const int length = std::max(0, box.height - 2 * inset);
    int size = std::min(scaled(380), PrintSizeFor(style.font, width, 1));
    while (size > scaled(kLegible) && PrintWidth(style.font, {size, 1}, text) > length)
        size -= 4;
    const int right = box.left + box.width - width;
    AddLine(page, style, {box.left, box.top + inset, width, length}, text, {size, 1}, kAlignCenter,
            kReadsUp);
    AddLine(page, style, {right, box.top + inset, width, length}, text, {size, 1}, kAlignCenter,
            kReadsDown);
    for (const int fold : {box.left + width, right})
        AddThin(page, style, fold, box.top, kLine, box.height);
}

static void AddBack(PrintPage* page, const PrintStyle& style, const CDInfoRecord& record,
                    const Panel& panel) {
    const auto scaled = [&](int length) { return static_cast<int>(length * panel.scale); };
    AddCutLines(page, style, panel.box);
    AddSpines(page, style, record, panel);
    Box area = Shrink(panel.box, scaled(kSpineWidth + 500), scaled(500));
    AddShrunk(page, style, &area, record.title, scaled(500), scaled(250), 1, 2, kAlignLeft);
    AddShrunk(page, style, &area, DiscArtistOf(style, record), scaled(400), scaled(220), 0, 1,
              kAlignLeft);
    const uint32_t seconds = record.totalMinutes * 60u + record.totalSeconds;
    const int foot = PrintLineHeight(style.font, scaled(250));
    Box rest = {area.left, area.top + scaled(300), area.width,
                std::max(0, area.height - scaled(500) - foot)};
    TrackList list;
    FindList(style, record, rest, 0, &list);
    AddTrackList(page, style, record, rest, list);
    AddLine(page, style, {area.left, area.top + area.height - foot, area.width, foot},
            PrintWordText(style, kWordTotal, std::to_string(record.trackCount), PrintTime(seconds)),
            {scaled(250), 0}, kAlignRight);
}

// ---- sheets

// In the middle of the place, in true size or as large as it can be.
static Panel PlacePanel(const Box& place, int width, int height) {
    Panel panel;
    panel.scale = std::min({1.0, static_cast<double>(place.width) / width,
                            static_cast<double>(place.height) / height});
    const int wide = static_cast<int>(width * panel.scale);
    const int high = static_cast<int>(height * panel.scale);
    panel.box = {place.left + (place.width - wide) / 2, place.top + (place.height - high) / 2, wide,
                 high};
    return panel;
}

// Both on one sheet, one above the other or side by side; 0: no room.
static int PlaceBoth(const Box& reach, Panel* front, Panel* back) {
    Box places[2] = {reach, reach};
    if (reach.width >= kBackWidth && reach.height >= kFrontSide + kBackHeight + kPanelGap) {
        const int spare = reach.height - kFrontSide - kBackHeight - kPanelGap;
        places[0].height = kFrontSide;
        places[0].top += spare / 2;
        places[1].top = places[0].top + kFrontSide + kPanelGap;
        places[1].height = kBackHeight;
    } else if (reach.height >= kFrontSide && reach.width >= kFrontSide + kBackWidth + kPanelGap) {
        const int spare = reach.width - kFrontSide - kBackWidth - kPanelGap;
        places[0].width = kFrontSide;
        places[0].left += spare / 2;
        places[1].left = places[0].left + kFrontSide + kPanelGap;
        places[1].width = kBackWidth;
    } else {
        return 0;
    }
    *front = PlacePanel(places[0], kFrontSide, kFrontSide);
    *back = PlacePanel(places[1], kBackWidth, kBackHeight);
    return 1;
}

std::vector<PrintPage> InlayPages(const PrintStyle& style, const CDInfoRecord& record,
                                  int* reduced) {
    const Box& reach = style.paper.printable;
    Panel front, back;
    const int both = PlaceBoth(reach, &front, &back);
    if (!both) {
        front = PlacePanel(reach, kFrontSide, kFrontSide);
        back = PlacePanel(reach, kBackWidth, kBackHeight);
    }
    *reduced = front.scale < 1 || back.scale < 1;
    std::vector<PrintPage> pages(both ? 1 : 2);
    AddFront(&pages[0], style, record, front);
    AddBack(&pages.back(), style, record, back);
    return pages;
}
