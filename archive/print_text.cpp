// Measuring, cutting and breaking. See print_text.h.
#include "archive/print_text.h"

#include <algorithm>

static const PrintLetter& LetterOf(const PrintFont& font, PrintLook look, char letter) {
    return font.letters[look.bold ? 1 : 0][static_cast<uint8_t>(letter)];
}

static int RoundedUp(long long units, const PrintFont& font, PrintLook look) {
    return static_cast<int>((units * look.size + font.em - 1) / font.em);
}

std::string PrintableText(std::string_view text) {
    std::string clean(text);
    for (char& letter : clean)
        if (static_cast<uint8_t>(letter) < ' ' || letter == 127) letter = ' ';
    const size_t first = clean.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return clean.substr(first, clean.find_last_not_of(' ') - first + 1);
}

namespace {
// Of a text so far, in the font's units; all relative to the first letter's place.
struct Ink {
    long long place = 0, left = 0, right = 0;
};
} // namespace

static void AddLetter(Ink* ink, const PrintLetter& letter) {
    ink->left = std::min(ink->left, ink->place + letter.before);
    ink->place += letter.width;
    ink->right = std::max({ink->right, ink->place, ink->place - letter.after});
}

static Ink InkOf(const PrintFont& font, PrintLook look, std::string_view text) {
    Ink ink;
    for (const char letter : text)
        AddLetter(&ink, LetterOf(font, look, letter));
    return ink;
}

static int WidthOf(const Ink& ink, const PrintFont& font, PrintLook look) {
    return RoundedUp(-ink.left, font, look) + RoundedUp(ink.right, font, look);
}

int PrintWidth(const PrintFont& font, PrintLook look, std::string_view text) {
    return WidthOf(InkOf(font, look, text), font, look);
}

int PrintOverhang(const PrintFont& font, PrintLook look, std::string_view text) {
    return RoundedUp(-InkOf(font, look, text).left, font, look);
}

double PrintAdvance(const PrintFont& font, PrintLook look, std::string_view text, size_t index) {
    const Ink ink = InkOf(font, look, text.substr(0, index));
    return static_cast<double>(ink.place) * look.size / font.em;
}

int PrintNumberWidth(const PrintFont& font, PrintLook look, std::string_view sample) {
    PrintLetter widest = LetterOf(font, look, '0');
    for (char digit = '1'; digit <= '9'; ++digit) {
        const PrintLetter& letter = LetterOf(font, look, digit);
        widest.before = std::min(widest.before, letter.before);
        widest.width = std::max(widest.width, letter.width);
        widest.after = std::min(widest.after, letter.after);
    }
    Ink ink;
    for (const char letter : sample)
        AddLetter(&ink, letter == '0' ? widest : LetterOf(font, look, letter));
    return WidthOf(ink, font, look);
}

int PrintLineHeight(const PrintFont& font, int size) {
    return RoundedUp(font.ascent + font.descent, font, {size, 0});
}

int PrintSizeFor(const PrintFont& font, int height, int lines) {
    const long long each = std::max(0, height) / std::max(1, lines);
    return static_cast<int>(each * font.em / std::max(1, font.ascent + font.descent));
}

// How many letters fit into the width, beside `more` that follow them.
static size_t Fitting(const PrintFont& font, PrintLook look, std::string_view text,
                      std::string_view more, int width) {
    Ink ink;
    size_t fitting = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        AddLetter(&ink, LetterOf(font, look, text[i]));
        Ink whole = ink;
        for (const char letter : more)
            AddLetter(&whole, LetterOf(font, look, letter));
        if (WidthOf(whole, font, look) <= width) fitting = i + 1;
        if (WidthOf(ink, font, look) > width) break;
    }
    return fitting;
}

std::string FitText(const PrintFont& font, PrintLook look, std::string_view text, int width) {
    if (PrintWidth(font, look, text) <= width) return std::string(text);
    for (std::string_view dots = "..."; !dots.empty(); dots.remove_suffix(1)) {
        if (PrintWidth(font, look, dots) > width) continue;
        std::string cut(text.substr(0, Fitting(font, look, text, dots, width)));
        while (!cut.empty() && cut.back() == ' ')
            cut.pop_back();
        return cut + std::string(dots);
    }
    return "";
}

// Letters of the first line of a text that does not fit as a whole.
static size_t BreakAt(const PrintFont& font, PrintLook look, std::string_view text, int width) {
    const size_t fitting = Fitting(font, look, text, "", width);
    if (fitting >= text.size() || text[fitting] == ' ') return fitting;
    const size_t blank = text.substr(0, fitting).rfind(' ');
    // A blank far to the left would waste the line on a long word that has to be broken anyway.
    return blank == std::string_view::npos || blank < fitting / 3 ? fitting : blank;
}

std::vector<std::string> WrapText(const PrintFont& font, PrintLook look, std::string_view text,
                                  int width, int most) {
    std::vector<std::string> lines;
    while (!text.empty() && static_cast<int>(lines.size()) < most) {
        const bool last = static_cast<int>(lines.size()) + 1 == most;
        if (last || PrintWidth(font, look, text) <= width) {
            lines.push_back(FitText(font, look, text, width));
            break;
        }
        const size_t length = BreakAt(font, look, text, width);
        if (length == 0) break; // narrower than a letter
        std::string_view line = text.substr(0, length);
        while (!line.empty() && line.back() == ' ')
            line.remove_suffix(1);
        lines.emplace_back(line);
        text.remove_prefix(length);
        while (!text.empty() && text.front() == ' ')
            text.remove_prefix(1);
    }
    return lines;
}
