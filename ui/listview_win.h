// Lists in report form, as the dialogs use them.
#pragma once
#include "core/platform.h"

void AddColumn(HWND list, int column, UINT nameId, int width, int format);
void SetCellText(HWND list, int row, int column, const char* text);
void SetRowCount(HWND list, int rows);
void SetRowState(HWND list, int row, UINT state, UINT mask); // row -1: all of them
// Scrolls a cell into view and tells where it is, in the list's coordinates.
RECT RevealCell(HWND list, int row, int column);
void SelectAllRows(HWND list);
int IsSelectAllKey(const NMHDR* keyDown); // an LVN_KEYDOWN: Ctrl+A
// Gives a column the width that the others leave.
void FitColumn(HWND list, int column, int columns);
