// Online help. See help_win.h.
#include "app/help_win.h"

#include "core/strings_win.h"
#include "core/text.h"
#include "media/graph_win.h"
#include "resources/ids.h"

#include <shellapi.h>

constexpr const char* kManualPage = "manual\\index.html";

// By what the user has chosen for pages; where nothing is named for their names, by what opens
// pages of the class that all systems know.
static int Open(HWND owner, const char* page) {
    SHELLEXECUTEINFOA info = {};
    info.cbSize = sizeof info;
    info.hwnd = owner;
    info.fMask = SEE_MASK_FLAG_NO_UI;
    info.lpFile = page;
    info.nShow = SW_SHOWNORMAL;
    if (ShellExecuteExA(&info)) return 1;
    info.fMask |= SEE_MASK_CLASSNAME;
    info.lpClass = "htmlfile";
    return ShellExecuteExA(&info) != 0;
}

void ShowHelp(HWND owner) {
    char page[MAX_PATH] = "", format[kStringMax], caption[kStringMax], text[kStringMax + MAX_PATH];
    const int isThere =
        PathBesideProgram(kManualPage, page) && GetFileAttributesA(page) != INVALID_FILE_ATTRIBUTES;
    if (isThere && Open(owner, page)) return;
    LoadText(isThere ? IDS_HELP_NO_BROWSER : IDS_HELP_MISSING, format);
    LoadText(IDS_HELP_CAPTION, caption);
    FormatText(text, sizeof text, format, page);
    MessageBoxA(owner, text, caption, MB_OK | MB_ICONEXCLAMATION);
}
