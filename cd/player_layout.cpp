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
    int weights[kMaxRowParts] = {};
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

// One row of 22 buttons, or two of 11 where they would be too narrow for a number, or half higher
// than wide.
static bool TracksInTwoRows(int width, int rowHeight) {
    const int button = width / (kPlayerTrackButtons + 2);
    return button < 23 || 2 * rowHeight > 3 * button;
}

static void PlaceTracks(PlayerLayout* layout, Box area, bool twoRows) {
    layout->groups[kGroupTracks] = area;
    if (!twoRows) {
        PlaceTrackRow(layout, area, 0, kPlayerTrackButtons, true, true);
        return;
    }
    Box rows[2];
    SplitColumn(area, 2, area.height < 30 ? 1 : kPlayerGap, rows);
    PlaceTrackRow(layout, rows[0], 0, kPlayerTrackButtons / 2, true, false);
    PlaceTrackRow(layout, rows[1], kPlayerTrackButtons / 2, kPlayerTrackButtons / 2, false, true);
}

// The pie at the left end of the display: a square of its height, at most a quarter of its width,
// less a little air. Returns what is left of the display.
static Box PlacePie(PlayerLayout* layout, Box display) {
    const int side = std::min(display.height, display.width / 4);
    layout->pie =
        InsetBox({display.left, display.top + (display.height - side) / 2, side, side}, side / 24);
    TakeLeft(&display, side, kPlayerGroupGap);
    return display;
}

static void PlaceSlider(PlayerLayout* layout, Box area) {
    PlaceRow(
        layout, area,
        {{kPlayerRestart, 9}, {kPlayerTrackLock, 9}, {kPlayerSlider, 100}, {kPlayerRepeater, 9}});
}

static void PlaceTransport(PlayerLayout* layout, Box area) {
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

// Title, artist and track in lines of their own where they fit, else artist beside track or all
// three side by side. The times stand largest, at the bottom.
static void PlaceTexts(PlayerLayout* layout, Box area) {
    static constexpr int kFourLines[] = {10, 10, 10, 11}, kThreeLines[] = {9, 9, 12};
    constexpr int kFourLinesFrom = 64, kThreeLinesFrom = 40; // pixels
    Box lines[4];
    if (area.height >= kFourLinesFrom) {
        SplitColumnBy(area, kFourLines, 4, 1, lines);
        BoxOf(layout, kPlayerTitle) = lines[0];
        BoxOf(layout, kPlayerArtist) = lines[1];
        BoxOf(layout, kPlayerTrackTitle) = lines[2];
        PlaceTimes(layout, lines[3]);
    } else if (area.height >= kThreeLinesFrom) {
        SplitColumnBy(area, kThreeLines, 3, 1, lines);
        BoxOf(layout, kPlayerTitle) = lines[0];
        PlaceRow(layout, lines[1], {{kPlayerArtist, 9}, {kPlayerTrackTitle, 11}});
        PlaceTimes(layout, lines[2]);
    } else {
        SplitColumn(area, 2, 1, lines);
        PlaceRow(layout, lines[0],
                 {{kPlayerTitle, 10}, {kPlayerArtist, 7}, {kPlayerTrackTitle, 9}});
        PlaceTimes(layout, lines[1]);
    }
}

static void LayOutDisplay(PlayerLayout* layout, Box area) {
    static constexpr int kShares[] = {31, 10}; // texts and pie, slider
    Box parts[2];
    layout->groups[kGroupDisplay] = area;
    SplitColumnBy(area, kShares, 2, kPlayerRowGap, parts);
    layout->panel = parts[0];
    PlaceTexts(layout, PlacePie(layout, parts[0]));
    PlaceSlider(layout, parts[1]);
}

static void LayOutWide(PlayerLayout* layout, Box area) {
    static constexpr int kOneRow[] = {4, 1}, kTwoRows[] = {4, 2};
    static constexpr int kHalves[] = {56, 44};
    const bool twoRows = TracksInTwoRows(area.width, (area.height - kPlayerGroupGap) / 5);
    Box upperLower[2], halves[2], rows[3];
    SplitColumnBy(area, twoRows ? kTwoRows : kOneRow, 2, kPlayerGroupGap, upperLower);
    PlaceTracks(layout, upperLower[1], twoRows);
    SplitRowBy(upperLower[0], kHalves, 2, kPlayerGroupGap, halves);
    LayOutDisplay(layout, halves[0]);

    layout->groups[kGroupButtons] = halves[1];
    SplitColumn(halves[1], 3, kPlayerRowGap, rows);
    PlaceRow(layout, rows[0], {{kPlayerCaption, 20}, {kPlayerInfo, 11}, {kPlayerPower, 10}});
    PlaceRow(layout, rows[1],
             {{kPlayerRepeat, 10}, {kPlayerRandom, 10}, {kPlayerIntro, 10}, {kPlayerProgram, 11}});
    PlaceTransport(layout, rows[2]);
}

static void LayOutStacked(PlayerLayout* layout, Box area) {
    static constexpr int kOneRow[] = {29, 20, 10}, kTwoRows[] = {29, 20, 20};
    static constexpr int kShares[] = {7, 3}; // transport, caption and power
    const bool low = area.height < 120;      // too low for the groups' edges
    const int gap = low ? 2 : kPlayerRowGap, groupGap = low ? 2 : kPlayerGroupGap;
    const bool twoRows = TracksInTwoRows(area.width, (area.height - 2 * groupGap) / 6);
    Box groups[3], parts[2], rows[2], lower[2];
    SplitColumnBy(area, twoRows ? kTwoRows : kOneRow, 3, groupGap, groups);

    layout->groups[kGroupDisplay] = groups[0];
    static constexpr int kDisplay[] = {20, 9};
    SplitColumnBy(groups[0], kDisplay, 2, gap, parts);
    layout->panel = parts[0];
    PlaceTexts(layout, PlacePie(layout, parts[0]));
    PlaceSlider(layout, parts[1]);

    layout->groups[kGroupButtons] = groups[1];
    SplitColumn(groups[1], 2, gap, rows);
    PlaceRow(layout, rows[0],
             {{kPlayerRepeat, 10},
              {kPlayerRandom, 10},
              {kPlayerIntro, 10},
              {kPlayerProgram, 11},
              {kPlayerInfo, 10}});
    SplitRowBy(rows[1], kShares, 2, kPlayerGap, lower);
    PlaceTransport(layout, lower[0]);
    PlaceRow(layout, lower[1], {{kPlayerCaption, 11}, {kPlayerPower, 9}});
    PlaceTracks(layout, groups[2], twoRows);
    if (low) std::fill_n(layout->groups, static_cast<int>(kPlayerGroups), Box{});
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

// Whether a control draws an edge round its text: buttons do, indicators do not.
static bool HasEdge(int id) {
    const PlayerFont font = PlayerFontOf(id);
    return (font == kFontLabels || font == kFontTracks) && id != kPlayerCaption;
}

void PlayerFontSizes(const PlayerLayout& layout, const PlayerTextWidths& widths, int large,
                     int (&sizes)[kPlayerFonts]) {
    std::fill_n(sizes, static_cast<int>(kPlayerFonts), 1000);
    int leastTitle = kPlayerMinTitle;
    for (int i = 0; i < kPlayerControls; ++i) {
        const int id = kPlayerFirst + i;
        if (id == kPlayerSlider) continue;
        const int edge = HasEdge(id) ? kEdge : 0;
        const Box& box = layout.boxes[i];
        int size = box.height - edge; // a cell's empty top may lie under the edge
        if (PlayerFontOf(id) == kFontTitles) leastTitle = std::min(leastTitle, size);
        if (widths.width[i])
            size = std::min(size, (box.width - 2 * (edge + kTextAir)) * 1000 / widths.width[i]);
        int& smallest = sizes[PlayerFontOf(id)];
        smallest = std::min(smallest, size);
    }
    // Small letters keep their size; larger labels leave air round them unless asked not to.
    constexpr int kSmall = 14;
    for (int font = 0; font < kPlayerFonts; ++font) {
        int& size = sizes[font];
        if (!large && font != kFontTimes) size = std::min(size, std::max(kSmall, size * 4 / 5));
        size = std::max(size, kPlayerMinLetter);
    }
    sizes[kFontTitles] = std::max(sizes[kFontTitles], leastTitle);
    // One scale in the display: titles stand no higher than the times below them.
    sizes[kFontTitles] = std::min(sizes[kFontTitles], sizes[kFontTimes]);
}
