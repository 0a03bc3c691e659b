// Text on paper: how wide it is, and how it is cut or broken so that it stays inside its box.
// Widths come from a table of the font's letters, so that pages are computed without a device,
// quickly, and come out alike on screen and printer: drawing puts each letter where it was
// computed.
//
// All lengths on paper are hundredths of a millimetre. A letter is one byte.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct PrintLetter {
    int16_t before, width, after; // ink starts `before` right of its place and ends `after` left of
                                  // the next one's; negative: it hangs over
};
struct PrintFont {
    PrintLetter letters[2][256]; // plain and bold, in units of which `em` make the letters' size
    int em;                      // above 0
    int ascent, descent;         // of a line, in the same units
};

struct PrintLook {
    int size; // hundredths of a millimetre from line to line without leading (the em)
    int bold;
};
constexpr int PointsToPaper(int points) {
    return (points * 2540 + 36) / 72;
}

// What can be printed of a text: control characters become blanks, none at either end.
std::string PrintableText(std::string_view text);

// From the first letter's ink to the last one's, overhangs included, rounded up.
int PrintWidth(const PrintFont& font, PrintLook look, std::string_view text);
// By how much the first letters' ink hangs over to the left, rounded up.
int PrintOverhang(const PrintFont& font, PrintLook look, std::string_view text);
// Place of letter `index` (up to the text's length) right of the first one's, not rounded.
double PrintAdvance(const PrintFont& font, PrintLook look, std::string_view text, size_t index);
// What numbers of the sample's form need at most: each "0" in it stands for any digit.
int PrintNumberWidth(const PrintFont& font, PrintLook look, std::string_view sample);
int PrintLineHeight(const PrintFont& font, int size);
// The largest size of letters of which `lines` fit into the height.
int PrintSizeFor(const PrintFont& font, int height, int lines);

// The text, or as much of it as fits with "..." behind it; nothing where not even a dot fits.
std::string FitText(const PrintFont& font, PrintLook look, std::string_view text, int width);
// Lines that fit, broken at blanks and, where a word is too long, inside it; the last one of
// `most` is cut. An empty text has no lines.
std::vector<std::string> WrapText(const PrintFont& font, PrintLook look, std::string_view text,
                                  int width, int most);
