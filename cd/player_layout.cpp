// Rows are cut from areas and controls from rows; every length is shared by weights, so that a
// wider or higher window grows evenly. See player_layout.h.
#include "cd/player_layout.h"

#include <algorithm>
#include <initializer_list>

static constexpr int kStackedBelow = 480; // content width from which the wide arrangement fits
static constexpr int kEdge = 2;           // a button's raised edge, in pixels
static constexpr int kTextAir = 1;        // kept free between text and edge at either side
static constexpr int kMaxRowParts = 22;

struct RowPart {
    int id, weight;
};

static Box& BoxOf(PlayerLayout* layout, int id) {
    return layout->boxes[id - kPlayerFirst];
}

// Places controls side by side across `area`.
static void PlaceRow(PlayerLayout* layout, Box area, std::initializer_list<RowPart> parts) {
    int weights[kMaxRowParts];
    Box boxes[kMaxRowParts];
    int count = 0;
    for (const RowPart& part : parts)
        weights[count++] = part.weight;
    SplitRowBy(area, weights, count, kPlayerGap, boxes);
    count = 0;
    for (const RowPart& part : parts)
        BoxOf(layout, part.id) = boxes[count++];
}

// A row of track buttons, with the paging buttons before and after them.
static void PlaceTrackRow(PlayerLayout* layout, Box area, int first, int count, bool previous,
                          bool next) {
    Box boxes[kMaxRowParts];
    const int parts = count + previous + next;
    SplitRow(area, parts, kPlayerGap, boxes);
    if (previous) BoxOf(layout, kPlayerPreviousPage) = boxes[0];
    for (int i = 0; i < count; ++i)
        BoxOf(layout, kPlayerTrack1 + first + i) = boxes[i + previous];
    if (next) BoxOf(layout, kPlayerNextPage) = boxes[parts - 1];
}

// One row of 22 buttons, or two of 11 where a single row would stand half higher than wide.
static bool TracksInTwoRows(int width, int rowHeight) {
    return 2 * rowHeight > 3 * width / (kPlayerTrackButtons + 2);
}

static void PlaceTracks(PlayerLayout* layout, Box area, bool twoRows) {
    layout->groups[kGroupTracks] = area;
    if (!twoRows) {
        PlaceTrackRow(layout, area, 0, kPlayerTrackButtons, true, true);
        return;
    }
    Box rows[2];
    SplitColumn(area, 2, kPlayerGap, rows);
    PlaceTrackRow(layout, rows[0], 0, kPlayerTrackButtons / 2, true, false);
    PlaceTrackRow(layout, rows[1], kPlayerTrackButtons / 2, kPlayerTrackButtons / 2, false, true);
}

// The pie at the left end of the display: a square of its height, at most a quarter of its width.
// Returns what is left of the display.
static Box PlacePie(PlayerLayout* layout, Box display) {
    const int side = std::min(display.height, display.width / 4);
    layout->pie = {display.left, display.top + (display.height - side) / 2, side, side};
    TakeLeft(&display, side, kPlayerGroupGap);
    return display;
}

static void PlaceSlider(PlayerLayout* layout, Box area) {
    layout->groups[kGroupSlider] = area;
    PlaceRow(
        layout, area,
        {{kPlayerRestart, 9}, {kPlayerTrackLock, 9}, {kPlayerSlider, 100}, {kPlayerRepeater, 9}});
}

static void PlaceTransport(PlayerLayout* layout, Box area) {
    layout->groups[kGroupTransport] = area;
    PlaceRow(layout, area,
             {{kPlayerPlay, 10},
              {kPlayerBack, 10},
              {kPlayerForward, 10},
              {kPlayerPause, 11},
              {kPlayerStop, 10},
              {kPlayerEject, 10}});
}

static void PlaceTimes(PlayerLayout* layout, Box area) {
    PlaceRow(layout, area, {{kPlayerTrackTime, 52}, {kPlayerDiscTime, 20}, {kPlayerDriveTime, 28}});
}

static void LayOutDisplay(PlayerLayout* layout, Box area) {
    static constexpr int kShares[] = {31, 9}; // texts and pie, slider
    static constexpr int kLineShares[] = {10, 10, 11};
    Box parts[2], lines[3];
    SplitColumnBy(area, kShares, 2, kPlayerGroupGap, parts);
    layout->groups[kGroupDisplay] = parts[0];
    SplitColumnBy(PlacePie(layout, parts[0]), kLineShares, 3, kPlayerGap, lines);
    BoxOf(layout, kPlayerTitle) = lines[0];
    PlaceRow(layout, lines[1], {{kPlayerArtist, 9}, {kPlayerTrackTitle, 11}});
    PlaceTimes(layout, lines[2]);
    PlaceSlider(layout, parts[1]);
}

static void LayOutWide(PlayerLayout* layout, Box area) {
    static constexpr int kOneRow[] = {4, 1}, kTwoRows[] = {4, 2};
    static constexpr int kHalves[] = {57, 43};
    static constexpr int kButtonShares[] = {10, 10, 11};
    const bool twoRows = TracksInTwoRows(area.width, (area.height - kPlayerGroupGap) / 5);
    Box upperLower[2], halves[2], rows[3];
    SplitColumnBy(area, twoRows ? kTwoRows : kOneRow, 2, kPlayerGroupGap, upperLower);
    PlaceTracks(layout, upperLower[1], twoRows);
    SplitRowBy(upperLower[0], kHalves, 2, kPlayerGroupGap, halves);
    LayOutDisplay(layout, halves[0]);

    SplitColumnBy(halves[1], kButtonShares, 3, kPlayerGroupGap, rows);
    layout->groups[kGroupCaption] = rows[0];
    PlaceRow(layout, rows[0], {{kPlayerCaption, 20}, {kPlayerInfo, 11}, {kPlayerPower, 10}});
    layout->groups[kGroupModes] = rows[1];
    PlaceRow(layout, rows[1],
             {{kPlayerRepeat, 10}, {kPlayerRandom, 10}, {kPlayerIntro, 10}, {kPlayerProgram, 11}});
    PlaceTransport(layout, rows[2]);
}

static void LayOutStacked(PlayerLayout* layout, Box area) {
    static constexpr int kOneRow[] = {20, 8, 10, 10, 10}, kTwoRows[] = {20, 8, 10, 10, 20};
    static constexpr int kShares[] = {7, 3}; // transport, caption and power
    const int gap = area.height < 120 ? kPlayerGap : kPlayerGroupGap;
    const bool twoRows = TracksInTwoRows(area.width, (area.height - 4 * gap) / 6);
    Box rows[5], lines[2], parts[2];
    SplitColumnBy(area, twoRows ? kTwoRows : kOneRow, 5, gap, rows);

    layout->groups[kGroupDisplay] = rows[0];
    SplitColumn(PlacePie(layout, rows[0]), 2, kPlayerGap, lines);
    PlaceRow(layout, lines[0], {{kPlayerTitle, 10}, {kPlayerArtist, 7}, {kPlayerTrackTitle, 9}});
    PlaceTimes(layout, lines[1]);
    PlaceSlider(layout, rows[1]);
    layout->groups[kGroupModes] = rows[2];
    PlaceRow(layout, rows[2],
             {{kPlayerRepeat, 10},
              {kPlayerRandom, 10},
              {kPlayerIntro, 10},
              {kPlayerProgram, 11},
              {kPlayerInfo, 10}});
    SplitRowBy(rows[3], kShares, 2, gap, parts);
    PlaceTransport(layout, parts[0]);
    layout->groups[kGroupCaption] = parts[1];
    PlaceRow(layout, parts[1], {{kPlayerCaption, 11}, {kPlayerPower, 9}});
    PlaceTracks(layout, rows[4], twoRows);
}

PlayerLayout LayOutPlayer(int width, int height) {
    PlayerLayout layout = {};
    const Box area = InsetBox({0, 0, std::max(width, 0), std::max(height, 0)}, kPlayerMargin);
    if (area.width < kStackedBelow)
        LayOutStacked(&layout, area);
    else
        LayOutWide(&layout, area);
    return layout;
}

PlayerFont PlayerFontOf(int id) {
    if (id <= kPlayerTrackTitle) return kFontTitles;
    if (id == kPlayerTrackTime || id == kPlayerDiscTime || id == kPlayerDriveTime)
        return kFontTimes;
    if (id >= kPlayerTrack1 && id < kPlayerTrack1 + kPlayerTrackButtons) return kFontTracks;
    if (id == kPlayerNextPage || id == kPlayerPreviousPage) return kFontTracks;
    return kFontLabels;
}

// Pixels between a control's text and its border: buttons have an edge, indicators none.
static int TextInset(int id) {
    const PlayerFont font = PlayerFontOf(id);
    const bool button = (font == kFontLabels || font == kFontTracks) && id != kPlayerCaption;
    return button ? kEdge : 0;
}

void PlayerFontSizes(const PlayerLayout& layout, const PlayerTextWidths& widths, int large,
                     int (&sizes)[kPlayerFonts]) {
    std::fill_n(sizes, static_cast<int>(kPlayerFonts), 1000);
    for (int i = 0; i < kPlayerControls; ++i) {
        const int id = kPlayerFirst + i;
        if (id == kPlayerSlider) continue;
        const int inset = TextInset(id);
        const Box& box = layout.boxes[i];
        int size = box.height - 2 * inset;
        if (widths.width[i])
            size = std::min(size, (box.width - 2 * (inset + kTextAir)) * 1000 / widths.width[i]);
        int& smallest = sizes[PlayerFontOf(id)];
        smallest = std::min(smallest, size);
    }
    // Small letters keep their size; larger ones leave air round them unless asked not to.
    constexpr int kSmall = 14;
    for (int& size : sizes) {
        if (!large) size = std::min(size, std::max(kSmall, size * 4 / 5));
        size = std::max(size, kPlayerMinLetter);
    }
    // One scale in the display: titles stand no higher than the times below them.
    sizes[kFontTitles] = std::min(sizes[kFontTitles], sizes[kFontTimes]);
}
