// Drawing of pages. See print_draw_win.h.
#include "archive/print_draw_win.h"

#include "core/text.h"

#include <algorithm>
#include <cmath>

constexpr int kEm = 1000;              // pixels at which letters are measured
constexpr double kPaperPerInch = 2540; // hundredths of a millimetre
constexpr int kLongestLine = 256;

// ---- the font's letters

static HFONT MakeFont(const char* face, int pixels, int bold, int tenthsOfDegrees) {
    LOGFONTA font = {};
    font.lfHeight = -pixels;
    font.lfWeight = bold ? FW_BOLD : FW_NORMAL;
    font.lfEscapement = font.lfOrientation = tenthsOfDegrees;
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfOutPrecision = OUT_TT_PRECIS; // a bitmap font is neither turned nor made this large
    font.lfQuality = ANTIALIASED_QUALITY;
    CopyText(font.lfFaceName, face);
    return CreateFontIndirectA(&font);
}

static int16_t Units(int value) {
    return static_cast<int16_t>(std::max(-kEm * 8, std::min(value, kEm * 8)));
}

static void MeasureLetters(HDC dc, PrintLetter (&letters)[256]) {
    ABC widths[256];
    INT plain[256];
    if (GetCharABCWidthsA(dc, 0, 255, widths)) {
        for (int i = 0; i < 256; ++i) {
            const int advance = widths[i].abcA + static_cast<int>(widths[i].abcB) + widths[i].abcC;
            letters[i] = {Units(widths[i].abcA), Units(advance), Units(widths[i].abcC)};
        }
    } else if (GetCharWidth32A(dc, 0, 255, plain)) {
        for (int i = 0; i < 256; ++i)
            letters[i] = {0, Units(plain[i]), 0};
    }
}

void LoadPrintFont(const char* face, PrintFont* font) {
    *font = {};
    font->em = kEm;
    font->ascent = kEm;
    for (auto& weight : font->letters)
        std::fill(std::begin(weight), std::end(weight), PrintLetter{0, kEm, 0});
    const HDC dc = CreateCompatibleDC(nullptr);
    if (!dc) return;
    for (int bold = 0; bold < 2; ++bold) {
        const HFONT made = MakeFont(face, kEm, bold, 0);
        const HGDIOBJ old = SelectObject(dc, made);
        TEXTMETRICA metrics;
        MeasureLetters(dc, font->letters[bold]);
        if (GetTextMetricsA(dc, &metrics)) {
            font->ascent = std::max<int>(bold ? font->ascent : 0, metrics.tmAscent);
            font->descent = std::max<int>(font->descent, metrics.tmDescent);
        }
        SelectObject(dc, old);
        DeleteObject(made);
    }
    DeleteDC(dc);
    font->ascent = std::max(font->ascent, 1);
}

// ---- the paper

static int ToPaper(int pixels, int perInch) {
    return static_cast<int>(std::lround(pixels * kPaperPerInch / std::max(1, perInch)));
}

void ReadDevicePaper(HDC dc, PrintPaper* paper, DeviceScale* scale) {
    const int perInchX = GetDeviceCaps(dc, LOGPIXELSX), perInchY = GetDeviceCaps(dc, LOGPIXELSY);
    const int wide = GetDeviceCaps(dc, HORZRES), high = GetDeviceCaps(dc, VERTRES);
    const int printer =
        GetDeviceCaps(dc, TECHNOLOGY) == DT_RASPRINTER && GetDeviceCaps(dc, PHYSICALWIDTH) > 0;
    const int left = printer ? GetDeviceCaps(dc, PHYSICALOFFSETX) : 0;
    const int top = printer ? GetDeviceCaps(dc, PHYSICALOFFSETY) : 0;
    *paper = MakePaper(ToPaper(printer ? GetDeviceCaps(dc, PHYSICALWIDTH) : wide, perInchX),
                       ToPaper(printer ? GetDeviceCaps(dc, PHYSICALHEIGHT) : high, perInchY),
                       {ToPaper(left, perInchX), ToPaper(top, perInchY), ToPaper(wide, perInchX),
                        ToPaper(high, perInchY)});
    *scale = {perInchX / kPaperPerInch, perInchY / kPaperPerInch, -left, -top};
}

// ---- drawing

static RECT ToPixels(const Box& box, const DeviceScale& scale) {
    const auto x = [&](int length) { return scale.left + std::lround(length * scale.x); };
    const auto y = [&](int length) { return scale.top + std::lround(length * scale.y); };
    return {x(box.left), y(box.top), x(box.left + box.width), y(box.top + box.height)};
}

static void DrawFill(HDC dc, const PrintFill& fill, const DeviceScale& scale) {
    RECT area = ToPixels(fill.box, scale);
    area.right = std::max(area.right, area.left + 1); // a thin line stays in sight
    area.bottom = std::max(area.bottom, area.top + 1);
    const HBRUSH brush = CreateSolidBrush(RGB(fill.gray, fill.gray, fill.gray));
    FillRect(dc, &area, brush);
    DeleteObject(brush);
}

namespace {
// A page has few kinds of letters.
struct Fonts {
    struct Made {
        int size, bold, turn;
        HFONT font;
    };
    std::vector<Made> made;
    const char* face;
};
} // namespace

static HFONT FontFor(Fonts* fonts, const PrintText& text, const DeviceScale& scale) {
    for (const Fonts::Made& made : fonts->made)
        if (made.size == text.look.size && made.bold == text.look.bold && made.turn == text.turn)
            return made.font;
    static constexpr int kAngles[] = {0, 900, 2700}; // by PrintTurn
    const int pixels = std::max(1, static_cast<int>(std::lround(text.look.size * scale.y)));
    const HFONT font = MakeFont(fonts->face, pixels, text.look.bold, kAngles[text.turn]);
    fonts->made.push_back({text.look.size, text.look.bold, text.turn, font});
    return font;
}

// Where the first letter's base line starts, on paper.
static POINT StartOf(const PrintText& text, const PrintFont& font) {
    const Box& box = text.box;
    const int along = text.turn == kUpright ? box.width : box.height;
    const int across = text.turn == kUpright ? box.height : box.width;
    const int spare = along - PrintWidth(font, text.look, text.text);
    const int inset = text.align == kAlignRight    ? spare
                      : text.align == kAlignCenter ? spare / 2
                                                   : 0;
    const int begin = inset + PrintOverhang(font, text.look, text.text);
    const int line =
        (across - PrintLineHeight(font, text.look.size)) / 2 +
        static_cast<int>(static_cast<long long>(font.ascent) * text.look.size / font.em);
    switch (text.turn) {
    case kReadsUp: return {box.left + line, box.top + box.height - begin};
    case kReadsDown: return {box.left + box.width - line, box.top + begin};
    default: return {box.left + begin, box.top + line};
    }
}

static void DrawPrintText(HDC dc, const PrintText& text, const PrintFont& font,
                          const DeviceScale& scale) {
    const int length = std::min(static_cast<int>(text.text.size()), kLongestLine);
    const double along = text.turn == kUpright ? scale.x : scale.y;
    INT steps[kLongestLine];
    long place = 0;
    for (int i = 0; i < length; ++i) {
        const long next = std::lround(PrintAdvance(font, text.look, text.text, i + 1) * along);
        steps[i] = static_cast<INT>(next - place);
        place = next;
    }
    const POINT start = StartOf(text, font);
    const RECT clip = ToPixels(text.box, scale);
    ExtTextOutA(dc, scale.left + std::lround(start.x * scale.x),
                scale.top + std::lround(start.y * scale.y), ETO_CLIPPED, &clip, text.text.c_str(),
                length, steps);
}

void DrawPrintPage(HDC dc, const PrintPage& page, const PrintFont& font, const char* face,
                   const DeviceScale& scale) {
    const int saved = SaveDC(dc);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, RGB(0, 0, 0));
    SetTextAlign(dc, TA_BASELINE | TA_LEFT | TA_NOUPDATECP);
    for (const PrintFill& fill : page.fills)
        DrawFill(dc, fill, scale);
    Fonts fonts = {{}, face};
    for (const PrintText& text : page.texts) {
        SelectObject(dc, FontFor(&fonts, text, scale));
        DrawPrintText(dc, text, font, scale);
    }
    RestoreDC(dc, saved);
    for (const Fonts::Made& made : fonts.made)
        DeleteObject(made.font);
}
