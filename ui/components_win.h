// The component table: one row tells the console all it knows of a component. The console's
// grid, menus, restoring and shutdown come from it, so a new component is one more row in
// app/components_win.cpp. The console never includes a trade.
#pragma once
#include "core/command_line.h"
#include "core/component_win.h"
#include "ui/components.h"

struct ComponentEntry {
    ComponentTraits traits = {};
    ComponentThread* thread = nullptr; // its title is the component's name in "LastException"

    // String ids; 0 where there is none.
    UINT label = 0;      // on the button or lamp
    UINT shortLabel = 0; // the same where the label does not fit
    UINT tip = 0;        // its tooltip
    UINT menu = 0;       // entry of the notification icon's menu
    // Engines: texts of the lamp's context menu.
    UINT engage = 0, disengage = 0, configureText = 0;
    UINT configureCommand = 0;

    // May be null. Configure shows the engine's dialog, modal to owner. PostCommand posts a
    // command of the component's own (core/commands.h) and returns 0 when it is off.
    void (*Configure)(HWND owner) = nullptr;
    int (*PostCommand)(UINT command, LPARAM argument) = nullptr;

    // A submenu of its own at the head of the console's context menu, when the click was on its
    // button; all null where there is none. OnProperty gets every console command that nobody else
    // takes and answers 1 for its own.
    UINT propertiesText = 0;
    void (*FillProperties)(HMENU menu) = nullptr;
    int (*OnProperty)(UINT command) = nullptr;
};

// The mixer as the console knows it. Null while a build has none, and 0 all over while its engine
// is off: the volume bar then stands there disabled and the wheel moves nothing.
struct VolumeControl {
    int (*GetMasterVolume)();            // percent, 0 to 100
    int (*SetMasterVolume)(int percent); // the percent before
    int (*ToggleMute)();                 // 1 when it was on before
    int (*RegisterWindow)(HWND window);  // for kNotifyMixer, until the engine stops
};

// Made in app/ and handed to the console; rows live as long as the program. Table order is the
// order of buttons and menu entries.
struct ComponentTable {
    const ComponentEntry* entries;
    int count;                    // at most kMaxComponents
    const VolumeControl* volume;  // may be null
    void (*ShowHelp)(HWND owner); // may be null
};
