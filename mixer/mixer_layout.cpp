// Rows are cut from areas and controls from rows; the columns' rows are chosen by weighing what the
// names lose against what the sliders lose. See mixer_layout.h.
#include "mixer/mixer_layout.h"

#include <algorithm>
#include <initializer_list>

static constexpr int kOneRowFrom = 580;  // content width from which the header fits into one row
static constexpr int kTwoRowsFrom = 420; // or into two
static constexpr int kLowBelow = 90;     // content height without room for the groups' edges
static constexpr int kEdge = 2;          // a button's raised edge, in pixels
static constexpr int kNameAir = 3;     // of a button's height: its edge, and the shift of its label
static constexpr int kTextAir = 1;     // kept free between text and edge at either side
static constexpr int kColumnMax = 116; // pixels; wider columns fall apart
static constexpr int kSliderMax = 26;  // width of a slider
static constexpr int kSliderGap = 2;   // between a name and its slider

struct RowPart {
    int id, weight;
};

static Box& BoxOf(MixerLayout* layout, int id) {
    return layout->fixed[MixerFixedIndex(id)];
}

static void PlaceRow(MixerLayout* layout, Box area, std::initializer_list<RowPart> parts) {
    constexpr int kMaxParts = 11;
    int weights[kMaxParts] = {}, count = 0;
    Box boxes[kMaxParts];
    for (const RowPart& part : parts)
        weights[count++] = part.weight;
    SplitRowBy(area, weights, count, kMixerGap, boxes);
    count = 0;
    for (const RowPart& part : parts)
        BoxOf(layout, part.id) = boxes[count++];
}

// ---- header

// Weights follow the labels' widths: "Headphones" and "Telephone" need the most.
static constexpr RowPart kRecord = {700, 46}, kListen = {701, 44}, kHeadphones = {702, 70},
                         kVoice = {703, 40}, kTelephone = {704, 64}, kLine = {705, 34},
                         kMonitor = {706, 50}, kDigital = {707, 44};
static constexpr RowPart kCaption = {kMixerCaption, 76}, kConfigure = {kMixerConfigure, 46},
                         kPower = {kMixerPower, 44};

static int HeaderRows(int width) {
    if (width >= kOneRowFrom) return 1;
    return width >= kTwoRowsFrom ? 2 : 3;
}

static int HeaderHeight(int rows, int height, int gap) {
    static constexpr int kShare[] = {23, 14, 11}; // percent of the height, a row
    constexpr int kLeast = 12, kMost = 30;
    return rows * std::clamp(height * kShare[rows - 1] / 100, kLeast, kMost) + (rows - 1) * gap;
}

static void LayOutHeader(MixerLayout* layout, Box area, int rowCount, int gap) {
    Box rows[3];
    layout->groups[kMixerHeader] = area;
    SplitColumn(area, rowCount, gap, rows);
    if (rowCount == 1) {
        PlaceRow(layout, rows[0],
                 {kCaption, kRecord, kListen, kHeadphones, kVoice, kTelephone, kLine, kMonitor,
                  kDigital, kConfigure, kPower});
        return;
    }
    PlaceRow(layout, rows[0], {{kMixerCaption, 110}, kConfigure, kPower});
    if (rowCount == 2) {
        PlaceRow(layout, rows[1],
                 {kRecord, kListen, kHeadphones, kVoice, kTelephone, kLine, kMonitor, kDigital});
        return;
    }
    PlaceRow(layout, rows[1], {kRecord, kListen, kHeadphones, kVoice});
    PlaceRow(layout, rows[2], {kTelephone, kLine, kMonitor, kDigital});
}

// ---- columns

// Height of a name's button in a column.
static int NameHeight(int columnHeight) {
    return std::min(std::clamp(columnHeight * 26 / 100, 12, 24), columnHeight);
}

static void CutColumn(Box column, int nameHeight, Box* name, Box* slider) {
    *name = {column.left, column.top, column.width, nameHeight};
    const int width = std::min(column.width, kSliderMax);
    const int taken = std::min(nameHeight + kSliderGap, column.height);
    *slider = {column.left + (column.width - width) / 2, column.top + taken, width,
               column.height - taken};
}

// The cells of `columns` columns in `rows` rows, in the middle of the area.
static Grid ColumnGrid(Box area, int columns, int rows) {
    constexpr int kNarrow = 20; // columns that need the gaps themselves
    const int across = (columns + rows - 1) / rows;
    const int gap = area.width / across < kNarrow ? 1 : kMixerGap;
    const int width = std::min(area.width, across * (kColumnMax + gap) - gap);
    area.left += (area.width - width) / 2;
    area.width = width;
    return {area, across, rows, gap};
}

int MixerNameRoom(int buttonWidth) {
    return buttonWidth - 2 * (kEdge + kTextAir);
}

int EnoughMixerNames(int fitting, int columns) {
    return 4 * fitting >= 3 * columns;
}

// The largest letters, at most `most`, at which enough names fit.
static int NameLetter(const int* names, int columns, int room, int most) {
    for (int letter = most; letter > kMixerMinName; --letter) {
        int fitting = 0;
        for (int i = 0; i < columns; ++i)
            fitting += names[i] * letter <= room * 1000;
        if (EnoughMixerNames(fitting, columns)) return letter;
    }
    return kMixerMinName;
}

// What an arrangement costs: pixels that the names lack at their smallest, letters smaller than
// comfortable, sliders shorter than comfortable. The factors are a matter of taste, tried on 1 to
// 24 sources at sizes from 292 by 92 to 1592 by 500.
static int ArrangementCost(const Grid& grid, const int* names, int columns) {
    constexpr int kGoodLetter = 13, kGoodSlider = 48, kLeastSlider = 16, kLeastWidth = 16;
    constexpr int kMostLacking = 30; // one long name does not rule the others
    const Box cell = GridCell(grid, 0, 0);
    Box name, slider;
    CutColumn(cell, NameHeight(cell.height), &name, &slider);
    const int room = std::max(MixerNameRoom(cell.width), 0);
    const int letter =
        NameLetter(names, columns, room, std::min(kGoodLetter, name.height - kNameAir));
    int lacking = 0;
    for (int i = 0; i < columns; ++i)
        lacking += std::clamp(names[i] * kMixerMinName / 1000 - room, 0, kMostLacking);
    int cost = 4 * lacking / columns + 8 * (kGoodLetter - letter);
    cost += std::max(kGoodSlider - slider.height, 0);
    if (slider.width < kLeastWidth) cost += 100;
    if (slider.height < kLeastSlider) cost += 1000;
    return cost;
}

static void LayOutColumns(MixerLayout* layout, Box area, const int* names, int columns) {
    constexpr int kMaxRows = 6;
    int best = 1, least = 0;
    for (int rows = 1; rows <= std::min(kMaxRows, columns); ++rows) {
        const int cost = ArrangementCost(ColumnGrid(area, columns, rows), names, columns);
        if (rows == 1 || cost < least) {
            best = rows;
            least = cost;
        }
    }
    if (columns <= 0) return;
    const Grid grid = ColumnGrid(area, columns, best);
    // One height for all: rows differ by a pixel where they don't divide evenly.
    const int nameHeight = NameHeight(area.height / best);
    for (int i = 0; i < columns; ++i)
        CutColumn(GridCell(grid, i % grid.columns, i / grid.columns), nameHeight,
                  &layout->buttons[i], &layout->sliders[i]);
}

static void LayOutMessage(MixerLayout* layout, Box area) {
    constexpr int kLineMax = 22;
    const int height = std::min(area.height, 2 * kLineMax);
    Box lines[2];
    SplitColumn({area.left, area.top + (area.height - height) / 2, area.width, height}, 2, 0,
                lines);
    BoxOf(layout, kMixerMessage1) = lines[0];
    BoxOf(layout, kMixerMessage2) = lines[1];
}

// ---- masters

constexpr int kButtonName = 19; // pixels

static void LayOutMasters(MixerLayout* layout, Box area) {
    static constexpr int kWeights[] = {46, 42, 34};
    static constexpr struct {
        int name, slider;
    } kIds[] = {{kMixerMaster, kMixerVolume},
                {kMixerTrebleLabel, kMixerTreble},
                {kMixerBassLabel, kMixerBass}};
    Box columns[3];
    layout->groups[kMixerMasters] = area;
    SplitRowBy(area, kWeights, 3, kMixerGap, columns);
    // "Master" is a button: its edges take room that the labels beside it don't need.
    const int name = std::max(NameHeight(area.height), std::min(kButtonName, area.height / 3));
    for (int i = 0; i < 3; ++i)
        CutColumn(columns[i], name, &BoxOf(layout, kIds[i].name), &BoxOf(layout, kIds[i].slider));
}

static int MastersWidth(int width) {
    return std::min(std::min(90 + width / 9, 240), width / 2);
}

MixerLayout LayOutMixer(int width, int height, const MixerTextWidths& widths, int columns) {
    MixerLayout layout = {};
    columns = std::clamp(columns, 0, kMixerColumns);
    Box area = InsetBox({0, 0, std::max(width, 0), std::max(height, 0)}, kMixerMargin);
    layout.edges = area.height >= kLowBelow;
    const int gap = layout.edges ? kMixerGap : kSliderGap;
    const int groupGap = layout.edges ? kMixerGroupGap : 2 * kSliderGap;
    const int rows = HeaderRows(area.width);
    const int head = std::min(HeaderHeight(rows, area.height, gap), area.height);
    LayOutHeader(&layout, {area.left, area.top, area.width, head}, rows, gap);
    const int gone = std::min(head + groupGap, area.height);
    area.top += gone;
    area.height -= gone;

    const int masters = MastersWidth(area.width);
    Box sources =
        TakeLeft(&area, std::max(area.width - masters - kMixerGroupGap, 0), kMixerGroupGap);
    layout.groups[kMixerSources] = sources;
    LayOutMasters(&layout, area);
    LayOutColumns(&layout, sources, widths.names, columns);
    LayOutMessage(&layout, sources);
    return layout;
}

// ---- letters

MixerFont MixerFontOf(int fixedId) {
    if (fixedId == kMixerMessage1 || fixedId == kMixerMessage2) return kMixerFontMessage;
    const int isMaster =
        fixedId == kMixerMaster || fixedId == kMixerTrebleLabel || fixedId == kMixerBassLabel;
    return isMaster ? kMixerFontMasters : kMixerFontButtons;
}

// The largest size at which a text of that width fits the box, or less.
static void Limit(int* size, Box box, int width) {
    *size = std::min(*size, box.height - kEdge);
    if (width) *size = std::min(*size, MixerNameRoom(box.width) * 1000 / width);
}

void MixerLetterSizes(const MixerLayout& layout, const MixerTextWidths& widths, int columns,
                      int large, int (&sizes)[kMixerFonts]) {
    // Larger letters leave a fifth free, for air.
    static constexpr int kSmall[] = {12, 14, 14, 14, 14};
    static constexpr int kLeast[] = {kMixerMinLetter, kMixerMinName, kMixerMinName, kMixerMinLetter,
                                     kMixerMinLetter};
    std::fill_n(sizes, static_cast<int>(kMixerFonts), 1000);
    for (int i = 0; i < kMixerFixed; ++i) {
        const int id = MixerFixedId(i);
        if (id == kMixerVolume || id == kMixerTreble || id == kMixerBass) continue;
        Limit(&sizes[MixerFontOf(id)], layout.fixed[i], widths.fixed[i]);
    }
    columns = std::clamp(columns, 0, kMixerColumns);
    if (columns) {
        const Box& box = layout.buttons[0];
        sizes[kMixerFontNames] = NameLetter(widths.names, columns, MixerNameRoom(box.width),
                                            std::max(box.height - kNameAir, kMixerMinName));
    }
    for (int font = 0; font < kMixerFonts; ++font) {
        int& size = sizes[font];
        if (!large) size = std::min(size, std::max(kSmall[font], size * 4 / 5));
        size = std::max(size, kLeast[font]);
    }
    sizes[kMixerFontLongNames] = sizes[kMixerFontNames];
    for (int i = 0; i < columns; ++i)
        Limit(&sizes[kMixerFontLongNames], layout.buttons[i], widths.names[i]);
    sizes[kMixerFontLongNames] = std::max(sizes[kMixerFontLongNames], kMixerMinName);
}
