// The shared look on Windows. See look_win.h.
#include "ui/look_win.h"

#include "core/settings.h"
#include "core/text.h"
#include "ui/button_win.h"

#include <cstring>

constexpr uint32_t kConsoleWindowId = 1; // the colours live in its section

ColorSet Colors = DefaultColors(32);
char FontFaceName[kFaceMax] = "Arial";

void InitColors() {
    HDC screen = GetDC(nullptr);
    Colors = DefaultColors(GetDeviceCaps(screen, BITSPIXEL));
    ReleaseDC(nullptr, screen);
}

void ReadColors() {
    for (const auto& value : kColorValues)
        ReadWindowSetting(kConsoleWindowId, value.name, kRegDword, 4, &(Colors.*value.field));
}

void SaveColors() {
    for (const auto& value : kColorValues)
        WriteWindowSetting(kConsoleWindowId, value.name, kRegDword, 4, &(Colors.*value.field));
}

void SeedColors() {
    for (const auto& value : kColorValues)
        SeedWindowSetting(kConsoleWindowId, value.name, kRegDword, 4, &(Colors.*value.field));
}

void ReadFontFace() {
    char face[kFaceMax] = "";
    ReadRegString(kUserRoot, kSettingsRoot, "FontFaceName", face, sizeof face);
    CopyText(FontFaceName, face[0] ? face : kDefaultFace);
}

HFONT CreateLabelFont(const char* face, int height, int weight) {
    return CreateFontA(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                       DEFAULT_PITCH | FF_DONTCARE, face);
}

// Makes the font when it differs from the cached one; *old is what to delete when all controls
// have the new one.
static HFONT RenewFont(CachedFont* cached, const char* face, int height, int weight, HFONT* old) {
    *old = nullptr;
    if (cached->font && cached->height == height && cached->weight == weight &&
        !strcmp(cached->face, face))
        return cached->font;
    HFONT font = CreateLabelFont(face, height, weight);
    if (!font) return cached->font;
    *old = cached->font;
    cached->font = font;
    CopyText(cached->face, face);
    cached->height = height;
    cached->weight = weight;
    return font;
}

static void GiveFontTo(HWND control, HFONT font) {
    if (!control) return;
    if (reinterpret_cast<HFONT>(SendMessageA(control, WM_GETFONT, 0, 0)) == font) return;
    SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void GiveFont(CachedFont* cached, const char* face, int height, int weight, const HWND* controls,
              int count) {
    HFONT old;
    HFONT font = RenewFont(cached, face, height, weight, &old);
    for (int i = 0; i < count; i++)
        GiveFontTo(controls[i], font);
    if (old) DeleteObject(old);
}

void FreeFont(CachedFont* cached) {
    if (cached->font) DeleteObject(cached->font);
    *cached = {};
}

void SetButtonOn(HWND button, int on) {
    SetButtonColors(button, on ? Colors.BtnLtClr : Colors.BtnDrkClr, Colors.BtnFaceClr,
                    Colors.BtnActClr);
}
