// The engine's settings in the registry, and what they are at first. See settings_win.h.
#include "waves/settings_win.h"

#include "core/settings.h"
#include "waves/engine_win.h"
#include "waves/loopback_win.h"
#include "waves/wave_in_win.h"

static const char* const kDeviceValue = "InDevice";
static const char* const kFormatValue = "InFormat";

static uint32_t ReadNumber(const char* name, uint32_t fallback) {
    ReadRegValue(kUserRoot, kWavesSection, name, kRegDword, &fallback, sizeof fallback);
    return fallback;
}

WavesSettings LoadWavesSettings() {
    return {static_cast<uint16_t>(ReadNumber(kDeviceValue, 0)),
            ReadNumber(kFormatValue, kDefaultFormatCode)};
}

void StoreWavesSettings(const WavesSettings& settings) {
    WriteRegDword(kUserRoot, kWavesSection, kFormatValue, kRegDword, settings.format);
    WriteRegDword(kUserRoot, kWavesSection, kDeviceValue, kRegDword, settings.device);
}

void SeedWavesDefaults() {
    if (RegValueExists(kUserRoot, kWavesSection, kDeviceValue)) return;
    if (CountWaveIn() || !CountLoopback()) return;
    WriteRegDword(kUserRoot, kWavesSection, kDeviceValue, kRegDword, kLoopbackDefault);
}
