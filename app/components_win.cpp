// The component table: one row for each component. Table order is the order of buttons and menus.
#include "app/table_win.h"
#include "cd/engine_win.h"
#include "cd/player_win.h"
#include "core/commands.h"
#include "core/shared_block.h"
#include "resources/ids.h"

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

const ComponentTable* Components() {
    static const ComponentEntry s_rows[] = {CdEngineRow(), CdPlayerRow()};
    static const ComponentTable s_table = {s_rows, static_cast<int>(sizeof s_rows / sizeof *s_rows),
                                           nullptr};
    return &s_table;
}
