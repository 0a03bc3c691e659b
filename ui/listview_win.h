// Lists in report form, as the dialogs use them.
#pragma once
#include "core/platform.h"

void AddColumn(HWND list, int column, UINT nameId, int width, int format);
void SetCellText(HWND list, int row, int column, const char* text);
void SetRowCount(HWND list, int rows);
void SelectAllRows(HWND list);
int IsSelectAllKey(const NMHDR* keyDown); // an LVN_KEYDOWN: Ctrl+A
// Gives a column the width that the others leave.
void FitColumn(HWND list, int column, int columns);
