// The engine's settings in the registry, and the registration as the system's CD player. See
// engine_win.h.
#include "cd/engine_win.h"
#include "core/classes.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"

#include <cstddef>
#include <cstring>

static const char* const kCdSection = "Software\\Tonvista\\CDEngine";
static const char* const kPlayerKey = "AudioCD\\shell\\play\\command"; // under HKEY_CLASSES_ROOT
static const char* const kSystemPlayer = "CDPlayer /play %1";
constexpr size_t kModulePathMax = 245; // 244 characters and the NUL
constexpr size_t kCommandMax = 261;

namespace {
struct Setting {
    const char* name;
    uint32_t CDEngineSettings::*field;
    uint32_t initial;
};
} // namespace

// In the order of writing.
static const Setting kSettings[] = {
    {"Drive", &CDEngineSettings::Drive, 0},
    {"IntroLength", &CDEngineSettings::IntroLength, 10},
    {"AutoExit", &CDEngineSettings::AutoExit, 0},
    {"AutoEject", &CDEngineSettings::AutoEject, 0},
    {"StopExit", &CDEngineSettings::StopExit, 0},
    {"UseAsDefault", &CDEngineSettings::UseAsDefault, 0},
    {"Repeat", &CDEngineSettings::Repeat, 0},
    {"Intro", &CDEngineSettings::Intro, 0},
    {"AutoRun", &CDEngineSettings::AutoRun, 1},
    {"Random", &CDEngineSettings::Random, 0},
    {"Programmed", &CDEngineSettings::Programmed, 0},
};

void LoadCdSettings(CDEngineSettings* settings) {
    *settings = CDEngineSettings{};
    for (const Setting& setting : kSettings)
        settings->*setting.field = ReadRegDword(kUserRoot, kCdSection, setting.name);
    const auto stored = static_cast<char>(settings->Drive);
    settings->Drive = static_cast<uint8_t>(ChooseCdDrive(stored));
}

// Names this program: by the name it was first sold under, by its file, or as a copy of it that
// stands elsewhere, such as the installation before this one.
static int IsOurCommand(const char* command, const char* program) {
    char upper[kCommandMax], file[MAX_PATH];
    CopyText(upper, command);
    UpperText(upper);
    CopyText(file, program);
    UpperText(file);
    return std::strstr(upper, "TONVUE") || std::strstr(upper, "\\TONVISTA.EXE") ||
           (*file && std::strstr(upper, file));
}

// Where nothing may be written, everything stays as it is.
static void RegisterPlayer(uint32_t useAsDefault, const char* program) {
    char module[MAX_PATH] = "", ours[kCommandMax] = "";
    GetModuleFileNameA(nullptr, module, sizeof module - 1);
    if (!program) program = module;
    const ClassOwner owner = {IsOurCommand, program};
    if (!useAsDefault) {
        ReplaceOwnClass(kPlayerKey, kSystemPlayer, owner);
        return;
    }
    CopyText(ours, kModulePathMax, program);
    AppendText(ours, sizeof ours, " /play %1");
    ClaimClass(kPlayerKey, ours, owner);
}

void GiveBackCdPlayer(const char* program) {
    GiveBackClass(kPlayerKey, {IsOurCommand, program});
}

int SaveCdSettings(const CDEngineSettings& settings) {
    int good = 1;
    for (const Setting& setting : kSettings)
        good &=
            WriteRegDword(kUserRoot, kCdSection, setting.name, kRegDword, settings.*setting.field);
    RegisterPlayer(settings.UseAsDefault, nullptr);
    return good;
}

int SeedCdDefaults(HWND owner, int claimDefault, const char* program) {
    const char drive = ChooseCdDrive('C');
    if (!IsCdDrive(drive)) {
        char text[kStringMax], caption[kStringMax];
        LoadText(IDS_NO_CD_DRIVE, text);
        LoadText(IDS_NO_CD_CAPTION, caption);
        MessageBoxA(owner, text, caption, MB_OK | MB_ICONEXCLAMATION);
        return 0;
    }
    for (const Setting& setting : kSettings) {
        uint32_t value = setting.initial;
        if (setting.field == &CDEngineSettings::Drive) value = static_cast<uint8_t>(drive);
        const int claim = setting.field == &CDEngineSettings::UseAsDefault;
        if (claim) value = claimDefault != 0;
        if (claim || !RegValueExists(kUserRoot, kCdSection, setting.name))
            WriteRegDword(kUserRoot, kCdSection, setting.name, kRegDword, value);
    }
    RegisterPlayer(claimDefault != 0, program);
    return 1;
}
