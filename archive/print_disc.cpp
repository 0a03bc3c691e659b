// The page of one disc: its heading, its tracks, its program. Everything is first a run of lines,
// each a strip with texts in it, which is then cut into pages; so nothing depends on how much of
// it a paper takes. See print_layout.h.
#include "archive/print_layout.h"
#include "cdinfo/program.h"

#include <algorithm>

constexpr int kNarrow = 24; // letter sizes; narrower pages have no column for artists
constexpr int kTitleLines = 3, kArtistLines = 2, kCommentLines = 12;
constexpr int kTrackLines = 3, kTrackCommentLines = 4;

namespace {
struct Strip {
    PrintPage parts; // tops from the strip's own
    int height = 0;
    int keep = 0; // on one page with the next, where that can be
};
struct DiscFlow {
    const PrintStyle& style;
    const CDInfoRecord& record;
    Box area;
    int size, lineHeight;
    int number, length; // widths of these columns
    int artist;         // 0: none
    std::vector<Strip> strips;
};
} // namespace

static Strip* AddStrip(DiscFlow* flow, int height, int keep) {
    flow->strips.push_back({{}, height, keep});
    return &flow->strips.back();
}

static void AddGap(DiscFlow* flow, int height) {
    AddStrip(flow, height, 0);
}

// A text over the whole width, or from `indent` to `right` from it.
static void AddParagraph(DiscFlow* flow, std::string_view text, PrintLook look, int most,
                         int indent = 0, int right = 0) {
    const int width = std::max(0, flow->area.width - indent - right);
    const int height = PrintLineHeight(flow->style.font, look.size);
    for (const std::string& line :
         WrapText(flow->style.font, look, PrintableText(text), width, most))
        AddLine(&AddStrip(flow, height, 1)->parts, flow->style,
                {flow->area.left + indent, 0, width, height}, line, look);
}

static void AddHeading(DiscFlow* flow) {
    const CDInfoRecord& record = flow->record;
    AddParagraph(flow, record.title, {flow->size * 2, 1}, kTitleLines);
    AddGap(flow, flow->size / 3);
    AddParagraph(flow, DiscArtistOf(flow->style, record), {flow->size * 3 / 2, 0}, kArtistLines);
    AddGap(flow, flow->size / 2);
    const uint32_t seconds = record.totalMinutes * 60u + record.totalSeconds;
    AddParagraph(flow,
                 PrintWordText(flow->style, kWordTotal, std::to_string(record.trackCount),
                               PrintTime(seconds)),
                 {flow->size, 0}, 1);
    if (record.comment[0]) AddGap(flow, flow->lineHeight / 2);
    AddParagraph(flow, record.comment, {flow->size, 0}, kCommentLines);
    AddGap(flow, flow->lineHeight);
}

// ---- tracks

static void LayOutTracks(DiscFlow* flow) {
    const PrintFont& font = flow->style.font;
    const CDInfoRecord& record = flow->record;
    const PrintLook plain = {flow->size, 0}, bold = {flow->size, 1};
    flow->number = PrintNumberWidth(font, bold, record.trackCount > 99 ? "000" : "00") + flow->size;
    flow->length = PrintWidth(font, bold, flow->style.words[kWordTime]);
    for (int i = 0; i < record.trackCount; ++i)
        flow->length =
            std::max(flow->length, PrintWidth(font, plain, PrintTime(record.trackSeconds[i])));
    flow->length += flow->size;
    const int least = flow->size * 3; // of titles
    if (flow->area.width < flow->number + flow->length + least) flow->length = 0;
    if (flow->area.width < flow->number + least) flow->number = 0;
    const int rest = flow->area.width - flow->number - flow->length;
    const int wide = flow->area.width >= kNarrow * flow->size;
    flow->artist = wide && !IsSingleArtist(record) ? rest * 2 / 5 : 0;
}

namespace {
struct TrackTexts {
    std::string number, title, artist, length;
};
} // namespace

// One line of a track's row.
static void AddTrackLine(DiscFlow* flow, const TrackTexts& texts, PrintLook look, int keep) {
    const Box& area = flow->area;
    const int height = flow->lineHeight;
    Strip* strip = AddStrip(flow, height, keep);
    const int numberWidth = std::max(0, flow->number - flow->size);
    int left = area.left;
    AddLine(&strip->parts, flow->style, {left, 0, numberWidth, height}, texts.number, look,
            kAlignRight);
    left += flow->number;
    const int title = area.width - flow->number - flow->length - flow->artist;
    AddLine(&strip->parts, flow->style, {left, 0, std::max(0, title), height}, texts.title, look);
    left += title;
    AddLine(&strip->parts, flow->style,
            {left + flow->size, 0, std::max(0, flow->artist - flow->size), height}, texts.artist,
            look);
    left += flow->artist + flow->size;
    AddLine(&strip->parts, flow->style, {left, 0, std::max(0, flow->length - flow->size), height},
            texts.length, look, kAlignRight);
}

static void AddTrack(DiscFlow* flow, int track) {
    const CDInfoRecord& record = flow->record;
    const PrintLook look = {flow->size, 0};
    const std::string artistText = PrintableText(record.trackArtists[track]);
    const int title = flow->area.width - flow->number - flow->length - flow->artist;
    const auto titles = WrapText(flow->style.font, look, PrintableText(record.trackTitles[track]),
                                 title, kTrackLines);
    const auto artists = flow->artist ? WrapText(flow->style.font, look, artistText,
                                                 flow->artist - flow->size, kTrackLines)
                                      : std::vector<std::string>();
    const size_t lines = std::max({size_t{1}, titles.size(), artists.size()});
    for (size_t i = 0; i < lines; ++i)
        AddTrackLine(flow,
                     {i ? "" : std::to_string(track + 1), i < titles.size() ? titles[i] : "",
                      i < artists.size() ? artists[i] : "",
                      i ? "" : PrintTime(record.trackSeconds[track])},
                     look, 1);
    const PrintLook small = {flow->size * 5 / 6, 0};
    if (!flow->artist && !IsSingleArtist(record))
        AddParagraph(flow, artistText, small, 1, flow->number, flow->length);
    AddParagraph(flow, record.trackComments[track], small, kTrackCommentLines, flow->number,
                 flow->length);
    flow->strips.back().keep = 0;
    flow->strips.back().height += flow->size / 5;
}

static void AddRule(DiscFlow* flow) {
    AddStrip(flow, kPrintRule, 1)
        ->parts.fills.push_back(
            {{flow->area.left, 0, flow->area.width, kPrintRule}, kPrintRuleGray});
    AddStrip(flow, flow->size / 5, 1);
}

static void AddTracks(DiscFlow* flow) {
    LayOutTracks(flow);
    if (!flow->record.trackCount) return;
    const auto& words = flow->style.words;
    AddTrackLine(flow,
                 {"#", words[kWordTitle], flow->artist ? words[kWordArtist] : "", words[kWordTime]},
                 {flow->size, 1}, 1);
    AddRule(flow);
    for (int i = 0; i < flow->record.trackCount; ++i)
        AddTrack(flow, i);
}

// ---- program

// All tracks in their order are what plays without a program.
static int HasProgram(const CDInfoRecord& record) {
    const size_t count = std::min<size_t>(record.programCount, kMaxSegments);
    if (count != record.trackCount) return count != 0;
    for (size_t i = 0; i < count; ++i)
        if (!IsWholeTrack(record.program[i]) || TmsfTrack(record.program[i].start) != i + 1)
            return 1;
    return 0;
}

static void AddProgram(DiscFlow* flow) {
    if (!HasProgram(flow->record)) return;
    AddGap(flow, flow->lineHeight);
    AddParagraph(flow, flow->style.words[kWordProgram], {flow->size, 1}, 1);
    AddRule(flow);
    const size_t count = std::min<size_t>(flow->record.programCount, kMaxSegments);
    for (size_t i = 0; i < count; ++i) {
        char text[kSegmentTextSize];
        SegmentText(flow->record, flow->record.program[i], text, sizeof text);
        const PrintLook look = {flow->size, 0};
        Strip* strip = AddStrip(flow, flow->lineHeight, 0);
        AddLine(&strip->parts, flow->style,
                {flow->area.left, 0, std::max(0, flow->number - flow->size), flow->lineHeight},
                std::to_string(i + 1), look, kAlignRight);
        AddLine(&strip->parts, flow->style,
                {flow->area.left + flow->number, 0, std::max(0, flow->area.width - flow->number),
                 flow->lineHeight},
                PrintableText(text), look);
    }
}

// ---- pages

static void PlaceStrip(PrintPage* page, const Strip& strip, int top) {
    for (PrintFill fill : strip.parts.fills) {
        fill.box.top += top;
        page->fills.push_back(fill);
    }
    for (PrintText text : strip.parts.texts) {
        text.box.top += top;
        page->texts.push_back(std::move(text));
    }
}

// The heading of the pages after the first; returns where they go on.
static int StartPage(const DiscFlow& flow, std::vector<PrintPage>* pages) {
    pages->emplace_back();
    if (pages->size() == 1) return flow.area.top;
    const Box& area = flow.area;
    AddLine(&pages->back(), flow.style, {area.left, area.top, area.width, flow.lineHeight},
            PrintableText(flow.record.title), {flow.size, 1});
    pages->back().fills.push_back(
        {{area.left, area.top + flow.lineHeight, area.width, kPrintRule}, kPrintRuleGray});
    return area.top + flow.lineHeight + kPrintRule + flow.size / 2;
}

static std::vector<PrintPage> CutIntoPages(const DiscFlow& flow) {
    std::vector<PrintPage> pages;
    const int bottom =
        flow.area.top + flow.area.height - flow.lineHeight - flow.size / 2; // above the foot
    int top = StartPage(flow, &pages), first = top;
    for (size_t i = 0; i < flow.strips.size(); ++i) {
        int together = flow.strips[i].height;
        for (size_t k = i; flow.strips[k].keep && k + 1 < flow.strips.size(); ++k)
            together += flow.strips[k + 1].height;
        const int goesTogether = i == 0 || !flow.strips[i - 1].keep;
        const int needed =
            goesTogether && together <= bottom - first ? together : flow.strips[i].height;
        if (top + needed > bottom && top > first) first = top = StartPage(flow, &pages);
        if (top + flow.strips[i].height > bottom) continue; // higher than a page
        PlaceStrip(&pages.back(), flow.strips[i], top);
        top += flow.strips[i].height;
    }
    for (size_t i = 0; i < pages.size(); ++i)
        AddPageFoot(&pages[i], flow.style, flow.area, flow.size, flow.style.date, i + 1,
                    pages.size());
    return pages;
}

std::vector<PrintPage> DiscPages(const PrintStyle& style, const CDInfoRecord& record) {
    DiscFlow flow = {style, record, PageArea(style.paper), 0, 0, 0, 0, 0, {}};
    flow.size = PageLetters(style, flow.area);
    if (flow.size < kLeastLetters) return std::vector<PrintPage>(1);
    flow.lineHeight = PrintLineHeight(style.font, flow.size);
    AddHeading(&flow);
    AddTracks(&flow);
    AddProgram(&flow);
    return CutIntoPages(flow);
}
