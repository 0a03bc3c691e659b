// The component table: one row for each component. Table order is the order of buttons and menus.
#include "app/table_win.h"
#include "cd/engine_win.h"
#include "cd/player_win.h"
#include "core/commands.h"
#include "core/shared_block.h"
#include "media/player_win.h"
#include "mixer/engine_win.h"
#include "mixer/mixer_win.h"
#include "resources/ids.h"
#include "waves/analyzer_win.h"
#include "waves/meter_win.h"
#include "waves/scope_win.h"
#include "waves/engine_win.h"

static int PostToCdEngine(UINT command, LPARAM argument) {
    PostCdCommand(command, argument);
    return 1;
}

static ComponentEntry CdEngineRow() {
    ComponentEntry row = {};
    row.traits.kind = kEngineComponent;
    row.traits.command = kConsoleCdEngine;
    row.traits.onValue = "CDEngineOn";
    row.traits.restoreRank = 1;
    row.traits.stopRank = 20;
    row.thread = CdEngineThread();
    row.label = IDS_CD_ENGINE;
    row.shortLabel = IDS_CD_ENGINE_SHORT;
    row.tip = IDS_CD_ENGINE_TIP;
    row.menu = IDS_CD_ENGINE;
    row.engage = IDS_CD_ENGINE_ENGAGE;
    row.disengage = IDS_CD_ENGINE_DISENGAGE;
    row.PostCommand = PostToCdEngine;
    return row;
}

static ComponentEntry WavesEngineRow() {
    ComponentEntry row = {};
    row.traits.kind = kEngineComponent;
    row.traits.command = kConsoleWavesEngine;
    row.traits.onValue = "WaveInEngineOn";
    row.traits.restoreRank = 2;
    row.traits.stopRank = 21;
    row.traits.dependantsFirst = 1;
    row.thread = WavesEngineThread();
    row.label = IDS_WAVES_ENGINE;
    row.shortLabel = IDS_WAVES_ENGINE_SHORT;
    row.tip = IDS_WAVES_ENGINE_TIP;
    row.menu = IDS_WAVES_ENGINE_MENU;
    row.engage = IDS_WAVES_ENGINE_ENGAGE;
    row.disengage = IDS_WAVES_ENGINE_DISENGAGE;
    row.configureText = IDS_WAVES_ENGINE_CONFIGURE;
    row.configureCommand = kConsoleConfigureWaves;
    row.Configure = ConfigureWaves;
    row.PostCommand = PostWavesCommand;
    return row;
}

static ComponentEntry MixerEngineRow() {
    ComponentEntry row = {};
    row.traits.kind = kEngineComponent;
    row.traits.command = kConsoleMixerEngine;
    row.traits.onValue = "MixerEngineOn";
    row.traits.restoreRank = 3;
    row.traits.stopRank = 22;
    row.thread = MixerEngineThread();
    row.label = IDS_MIXER_ENGINE;
    row.shortLabel = IDS_MIXER_ENGINE_SHORT;
    row.tip = IDS_MIXER_ENGINE_TIP;
    row.menu = IDS_MIXER_ENGINE;
    row.engage = IDS_MIXER_ENGINE_ENGAGE;
    row.disengage = IDS_MIXER_ENGINE_DISENGAGE;
    row.configureText = IDS_MIXER_ENGINE_CONFIGURE;
    row.configureCommand = kConsoleConfigureMixer;
    row.Configure = ConfigureMixer;
    row.PostCommand = PostMixerCommand;
    return row;
}

static ComponentEntry CdPlayerRow() {
    ComponentEntry row = {};
    row.traits.kind = kWindowComponent;
    row.traits.windowId = kCdPlayerWindowId;
    row.traits.command = kConsoleCdPlayer;
    row.traits.engine = kConsoleCdEngine;
    row.traits.onValue = "CDPlayerUI";
    row.traits.restoreRank = 4;
    row.traits.stopRank = 2;
    row.traits.withEngineRank = 1;
    row.thread = CdPlayerThread();
    row.label = IDS_CD_PLAYER;
    row.shortLabel = IDS_SHORT_NAMES + kCdPlayerWindowId;
    row.tip = IDS_CD_PLAYER_TIP;
    row.menu = IDS_CD_PLAYER;
    return row;
}

// The icon's menu does not list it.
static ComponentEntry MediaRow() {
    ComponentEntry row = {};
    row.traits.kind = kWindowComponent;
    row.traits.windowId = kMediaWindowId;
    row.traits.command = kConsoleMedia;
    row.traits.engine = kConsoleWavesEngine;
    row.traits.onValue = "MediaPlayerOn";
    row.traits.restoreRank = 10;
    row.traits.stopRank = 4;
    row.traits.withEngineRank = 1;
    row.thread = MediaThread();
    row.label = IDS_MEDIA;
    row.shortLabel = IDS_SHORT_NAMES + kMediaWindowId;
    row.tip = IDS_MEDIA_TIP;
    return row;
}

static ComponentEntry AnalyzerRow() {
    ComponentEntry row = {};
    row.traits.kind = kWindowComponent;
    row.traits.windowId = kSpectrumWindowId;
    row.traits.command = kConsoleSpectrum;
    row.traits.engine = kConsoleWavesEngine;
    row.traits.onValue = "SpectrumIU"; // so it has always been written
    row.traits.restoreRank = 5;
    row.traits.stopRank = 1;
    row.traits.withEngineRank = 2;
    row.thread = AnalyzerThread();
    row.label = IDS_SPECTRUM_LABEL;
    row.shortLabel = IDS_SHORT_NAMES + kSpectrumWindowId;
    row.tip = IDS_SPECTRUM_TIP;
    row.menu = IDS_SPECTRUM;
    return row;
}

// The icon's menu does not list it.
static ComponentEntry ScopeRow() {
    ComponentEntry row = {};
    row.traits.kind = kWindowComponent;
    row.traits.windowId = kScopeWindowId;
    row.traits.command = kConsoleScope;
    row.traits.engine = kConsoleWavesEngine;
    row.traits.onValue = "ScopeUI";
    row.traits.restoreRank = 6;
    row.traits.stopRank = 8;
    row.traits.withEngineRank = 3;
    row.thread = ScopeThread();
    row.label = IDS_SCOPE;
    row.shortLabel = IDS_SHORT_NAMES + kScopeWindowId;
    row.tip = IDS_SCOPE_TIP;
    return row;
}

static ComponentEntry MixerRow() {
    ComponentEntry row = {};
    row.traits.kind = kWindowComponent;
    row.traits.windowId = kMixerWindowId;
    row.traits.command = kConsoleMixer;
    row.traits.engine = kConsoleMixerEngine;
    row.traits.onValue = "MixerUI";
    row.traits.restoreRank = 7;
    row.traits.stopRank = 5;
    row.traits.withEngineRank = 1;
    row.thread = MixerThread();
    row.label = IDS_MIXER;
    row.shortLabel = IDS_SHORT_NAMES + kMixerWindowId;
    row.tip = IDS_MIXER_TIP;
    row.menu = IDS_MIXER;
    return row;
}

static ComponentEntry VolumeIconRow() {
    ComponentEntry row = {};
    row.traits.kind = kIconComponent;
    row.traits.command = kConsoleVolumeIcon;
    row.traits.engine = kConsoleWavesEngine;
    row.traits.onValue = "VolumeMeterTBIcon";
    row.traits.restoreRank = 8;
    row.traits.stopRank = 30;
    row.traits.withEngineRank = 5;
    row.thread = MeterThread();
    row.label = IDS_VOLUME_ICON;
    row.shortLabel = IDS_VOLUME_ICON_SHORT;
    row.tip = IDS_VOLUME_ICON_TIP;
    row.menu = IDS_VOLUME_ICON_MENU;
    return row;
}

static int GetMasterVolume() {
    return MixerMasterVolume(-1);
}

static int ToggleMute() {
    return MixerMasterOn(!MixerMasterOn(-1));
}

const ComponentTable* Components() {
    static const ComponentEntry s_rows[] = {CdEngineRow(), WavesEngineRow(), MixerEngineRow(),
                                            CdPlayerRow(), MediaRow(),       AnalyzerRow(),
                                            ScopeRow(),    MixerRow(),       VolumeIconRow()};
    static const VolumeControl s_volume = {GetMasterVolume, MixerMasterVolume, ToggleMute,
                                           RegisterMixerWindow};
    static const ComponentTable s_table = {s_rows, static_cast<int>(sizeof s_rows / sizeof *s_rows),
                                           &s_volume};
    return &s_table;
}
