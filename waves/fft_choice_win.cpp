// The setting that engine and extractor share. A file of its own, so that the extractor brings none
// of the engine's sources along. See settings_win.h.
#include "core/settings.h"
#include "waves/settings_win.h"

static const char* const kFftValue = "FFTChoice";

int LoadFftChoice() {
    uint32_t choice = 0;
    ReadRegValue(kUserRoot, kWavesSection, kFftValue, kRegDword, &choice, sizeof choice);
    return choice < kFftChoices ? static_cast<int>(choice) : 0;
}

void StoreFftChoice(int choice) {
    WriteRegDword(kUserRoot, kWavesSection, kFftValue, kRegDword, static_cast<uint32_t>(choice));
}
