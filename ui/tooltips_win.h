// Tooltips. A tool is a control (which the tooltip then watches by itself) or a rectangle of a
// window's client area: disabled controls, the indicators among them, get no mouse messages, so
// their tooltips are rectangles. All functions accept a null `tooltips`: no tooltips, no harm.
#pragma once
#include "core/platform.h"

// Null on failure. Destroyed with its owner.
HWND CreateToolTips(HWND owner);

// `window` receives the notifications (the framework brings the group forward on TTN_SHOW). Texts
// are cut at kStringMax; 1 on success.
int AddToolTip(HWND tooltips, HWND window, HWND control, const char* text);
int AddToolTipFromString(HWND tooltips, HWND window, HWND control, UINT stringId);
// The text is sent only when it differs from the one that the tool has.
int SetToolTipText(HWND tooltips, HWND window, HWND control, const char* text);
int SetToolTipTextFromString(HWND tooltips, HWND window, HWND control, UINT stringId);

int AddRectToolTip(HWND tooltips, HWND window, UINT toolId, const char* text, int left, int top,
                   int right, int bottom);
// Moves a rectangle tool; an empty rectangle takes it out of reach.
void PlaceRectToolTip(HWND tooltips, HWND window, UINT toolId, const RECT& area);
int SetRectToolTipText(HWND tooltips, HWND window, UINT toolId, const char* text);

// The tooltip of an indicator (or any disabled child): a rectangle tool whose id is the control's.
// Place it again after each layout.
int AddIndicatorToolTip(HWND tooltips, HWND window, HWND indicator, UINT stringId);
void PlaceIndicatorToolTip(HWND tooltips, HWND window, HWND indicator);
