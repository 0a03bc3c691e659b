// The component table: one row for each component. Table order is the order of buttons and menus.
#include "app/help_win.h"
#include "app/table_win.h"
#include "cd/config_win.h"
#include "archive/manager_win.h"
#include "cd/engine_win.h"
#include "cd/icon_win.h"
#include "cd/player_win.h"
#include "core/commands.h"
#include "core/shared_block.h"
#include "media/player_win.h"
#include "mixer/engine_win.h"
#include "mixer/mixer_win.h"
#include "resources/ids.h"
#include "ui/layouts_window_win.h"
#include "waves/analyzer_win.h"
#include "waves/meter_win.h"
#include "waves/scope_win.h"
#include "waves/engine_win.h"

static int PostToCdEngine(UINT command, LPARAM argument) {
    PostCdCommand(command, argument);
    return 1;
}

static int GetMasterVolume() {
    return MixerMasterVolume(-1);
}

static int ToggleMute() {
    return MixerMasterOn(!MixerMasterOn(-1));
}

const ComponentTable* Components() {
    // The notification icon's menu lists neither the media player nor the oscilloscope. The
    // analyzer's value has always been written with its letters turned.
    static const ComponentEntry s_rows[] = {
        {.traits = {.kind = kEngineComponent,
                    .command = kConsoleCdEngine,
                    .onValue = "CDEngineOn",
                    .restoreRank = 1,
                    .stopRank = 20},
         .thread = CdEngineThread(),
         .label = IDS_CD_ENGINE,
         .shortLabel = IDS_CD_ENGINE_SHORT,
         .tip = IDS_CD_ENGINE_TIP,
         .menu = IDS_CD_ENGINE,
         .engage = IDS_CD_ENGINE_ENGAGE,
         .disengage = IDS_CD_ENGINE_DISENGAGE,
         .configureText = IDS_CD_ENGINE_CONFIGURE,
         .configureCommand = kConsoleConfigureCd,
         .Configure = ConfigureCd,
         .PostCommand = PostToCdEngine},
        {.traits = {.kind = kEngineComponent,
                    .command = kConsoleWavesEngine,
                    .onValue = "WaveInEngineOn",
                    .restoreRank = 2,
                    .stopRank = 21,
                    .dependantsFirst = 1},
         .thread = WavesEngineThread(),
         .label = IDS_WAVES_ENGINE,
         .shortLabel = IDS_WAVES_ENGINE_SHORT,
         .tip = IDS_WAVES_ENGINE_TIP,
         .menu = IDS_WAVES_ENGINE_MENU,
         .engage = IDS_WAVES_ENGINE_ENGAGE,
         .disengage = IDS_WAVES_ENGINE_DISENGAGE,
         .configureText = IDS_WAVES_ENGINE_CONFIGURE,
         .configureCommand = kConsoleConfigureWaves,
         .Configure = ConfigureWaves,
         .PostCommand = PostWavesCommand},
        {.traits = {.kind = kEngineComponent,
                    .command = kConsoleMixerEngine,
                    .onValue = "MixerEngineOn",
                    .restoreRank = 3,
                    .stopRank = 22},
         .thread = MixerEngineThread(),
         .label = IDS_MIXER_ENGINE,
         .shortLabel = IDS_MIXER_ENGINE_SHORT,
         .tip = IDS_MIXER_ENGINE_TIP,
         .menu = IDS_MIXER_ENGINE,
         .engage = IDS_MIXER_ENGINE_ENGAGE,
         .disengage = IDS_MIXER_ENGINE_DISENGAGE,
         .configureText = IDS_MIXER_ENGINE_CONFIGURE,
         .configureCommand = kConsoleConfigureMixer,
         .Configure = ConfigureMixer,
         .PostCommand = PostMixerCommand},
        {.traits = {.kind = kWindowComponent,
                    .windowId = kCdPlayerWindowId,
                    .command = kConsoleCdPlayer,
                    .engine = kConsoleCdEngine,
                    .onValue = "CDPlayerUI",
                    .restoreRank = 4,
                    .stopRank = 2,
                    .withEngineRank = 1},
         .thread = CdPlayerThread(),
         .label = IDS_CD_PLAYER,
         .shortLabel = IDS_SHORT_NAMES + kCdPlayerWindowId,
         .tip = IDS_CD_PLAYER_TIP,
         .menu = IDS_CD_PLAYER},
        {.traits = {.kind = kIconComponent,
                    .command = kConsoleCdIcon,
                    .engine = kConsoleCdEngine,
                    .onValue = "CDUITBIcon",
                    .restoreRank = 9,
                    .stopRank = 29,
                    .withEngineRank = 2},
         .thread = CdIconThread(),
         .label = IDS_CD_ICON,
         .shortLabel = IDS_CD_ICON_SHORT,
         .tip = IDS_CD_ICON_TIP,
         .menu = IDS_CD_ICON_MENU,
         .propertiesText = IDS_CD_ICON_PROPERTIES,
         .FillProperties = FillCdIconProperties,
         .OnProperty = OnCdIconProperty},
        {.traits = {.kind = kWindowComponent,
                    .windowId = kMediaWindowId,
                    .command = kConsoleMedia,
                    .engine = kConsoleWavesEngine,
                    .onValue = "MediaPlayerOn",
                    .restoreRank = 10,
                    .stopRank = 4,
                    .withEngineRank = 1},
         .thread = MediaThread(),
         .label = IDS_MEDIA,
         .shortLabel = IDS_SHORT_NAMES + kMediaWindowId,
         .tip = IDS_MEDIA_TIP},
        {.traits = {.kind = kWindowComponent,
                    .windowId = kSpectrumWindowId,
                    .command = kConsoleSpectrum,
                    .engine = kConsoleWavesEngine,
                    .onValue = "SpectrumIU",
                    .restoreRank = 5,
                    .stopRank = 1,
                    .withEngineRank = 2},
         .thread = AnalyzerThread(),
         .label = IDS_SPECTRUM_LABEL,
         .shortLabel = IDS_SHORT_NAMES + kSpectrumWindowId,
         .tip = IDS_SPECTRUM_TIP,
         .menu = IDS_SPECTRUM},
        {.traits = {.kind = kWindowComponent,
                    .windowId = kScopeWindowId,
                    .command = kConsoleScope,
                    .engine = kConsoleWavesEngine,
                    .onValue = "ScopeUI",
                    .restoreRank = 6,
                    .stopRank = 8,
                    .withEngineRank = 3},
         .thread = ScopeThread(),
         .label = IDS_SCOPE,
         .shortLabel = IDS_SHORT_NAMES + kScopeWindowId,
         .tip = IDS_SCOPE_TIP},
        {.traits = {.kind = kWindowComponent,
                    .windowId = kMixerWindowId,
                    .command = kConsoleMixer,
                    .engine = kConsoleMixerEngine,
                    .onValue = "MixerUI",
                    .restoreRank = 7,
                    .stopRank = 5,
                    .withEngineRank = 1},
         .thread = MixerThread(),
         .label = IDS_MIXER,
         .shortLabel = IDS_SHORT_NAMES + kMixerWindowId,
         .tip = IDS_MIXER_TIP,
         .menu = IDS_MIXER},
        {.traits = {.kind = kWindowComponent,
                    .windowId = kDatabaseWindowId,
                    .command = kConsoleDatabase,
                    .stopRank = 7},
         .thread = DatabaseThread(),
         .label = IDS_DATABASE_NAME,
         .shortLabel = IDS_DATABASE_SHORT,
         .tip = IDS_DATABASE_TIP},
        {.traits = {.kind = kWindowComponent,
                    .windowId = kLayoutsWindowId,
                    .command = kConsoleLayouts,
                    .stopRank = 6},
         .thread = LayoutsThread(),
         .label = IDS_LAYOUTS,
         .shortLabel = IDS_SHORT_NAMES + kLayoutsWindowId,
         .tip = IDS_LAYOUTS_TIP,
         .menu = IDS_LAYOUTS_ICON_MENU},
        {.traits = {.kind = kIconComponent,
                    .command = kConsoleVolumeIcon,
                    .engine = kConsoleWavesEngine,
                    .onValue = "VolumeMeterTBIcon",
                    .restoreRank = 8,
                    .stopRank = 30,
                    .withEngineRank = 5},
         .thread = MeterThread(),
         .label = IDS_VOLUME_ICON,
         .shortLabel = IDS_VOLUME_ICON_SHORT,
         .tip = IDS_VOLUME_ICON_TIP,
         .menu = IDS_VOLUME_ICON_MENU},
    };
    static const VolumeControl s_volume = {GetMasterVolume, MixerMasterVolume, ToggleMute,
                                           RegisterMixerWindow};
    static const ComponentTable s_table = {s_rows, static_cast<int>(sizeof s_rows / sizeof *s_rows),
                                           &s_volume, ShowHelp};
    return &s_table;
}
