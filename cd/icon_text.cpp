// See icon_text.h.
#include "cd/icon_text.h"

#include "core/text.h"

constexpr size_t kTimeSize = 24;

void CdIconTime(char* text, size_t size, uint32_t seconds) {
    const unsigned hours = seconds / 3600, minutes = seconds / 60 % 60, rest = seconds % 60;
    if (hours)
        FormatText(text, size, "%u:%02u:%02u", hours, minutes, rest);
    else
        FormatText(text, size, "%02u:%02u", minutes, rest);
}

// `separator` stands only between two things.
static void Append(char* text, size_t size, const char* separator, const char* more) {
    if (text[0]) AppendText(text, size, separator);
    AppendText(text, size, more);
}

// A name, and who it is by: ", by " belongs to the name's option, also where the name is empty.
static void AppendName(char* text, size_t size, int withName, const char* name, int withArtist,
                       const char* artist) {
    if (withName) AppendText(text, size, name);
    if (withName && withArtist) AppendText(text, size, ", by ");
    if (withArtist) AppendText(text, size, artist);
}

static void AppendTime(char* text, size_t size, const char* separator, uint32_t seconds) {
    char time[kTimeSize];
    CdIconTime(time, sizeof time, seconds);
    Append(text, size, separator, time);
}

void CdIconText(char* text, size_t size, uint32_t options, const CdIconFacts& facts) {
    const auto wants = [options](CdIconOption option) { return (options & option) != 0; };
    if (!size) return;
    text[0] = 0;
    if (!facts.busy) {
        AppendName(text, size, wants(kTipDiscTitle), facts.discTitle, wants(kTipArtist),
                   facts.artist);
        if (wants(kTipLength)) AppendTime(text, size, " ", facts.length);
        return;
    }
    AppendName(text, size, wants(kTipTrackTitle), facts.trackTitle, wants(kTipArtist),
               facts.artist);
    if (wants(kTipDiscTitle)) Append(text, size, ", on ", facts.discTitle);
    if (wants(kTipElapsed)) AppendTime(text, size, " ", facts.elapsed);
    if (wants(kTipLength)) AppendTime(text, size, wants(kTipElapsed) ? " / " : " ", facts.length);
}
