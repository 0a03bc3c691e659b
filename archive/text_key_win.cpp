// See text_key_win.h.
#include "archive/text_key_win.h"

#include "core/platform.h"

#include <array>

void PlatformTextKey(const char* text, std::string* key) {
    char room[1024];
    int length = LCMapStringA(LOCALE_USER_DEFAULT, LCMAP_SORTKEY, text, -1, room, sizeof room);
    if (length > 0) {
        key->assign(room, static_cast<size_t>(length));
        return;
    }
    length = LCMapStringA(LOCALE_USER_DEFAULT, LCMAP_SORTKEY, text, -1, nullptr, 0);
    key->resize(length > 0 ? static_cast<size_t>(length) : 0);
    if (length > 0) LCMapStringA(LOCALE_USER_DEFAULT, LCMAP_SORTKEY, text, -1, key->data(), length);
}

const uint8_t* PlatformLowerCase() {
    static const std::array<uint8_t, 256> lower = [] {
        std::array<uint8_t, 256> made;
        for (unsigned i = 0; i < made.size(); ++i)
            made[i] = static_cast<uint8_t>(i);
        CharLowerBuffA(reinterpret_cast<char*>(made.data()) + 1, 255);
        return made;
    }();
    return lower.data();
}
