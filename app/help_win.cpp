// Online help. See help_win.h.
#include "app/help_win.h"

#include "core/strings_win.h"
#include "core/text.h"
#include "media/graph_win.h"
#include "resources/ids.h"

#include <shellapi.h>

constexpr const char* kManualPage = "manual\\index.html";
constexpr INT_PTR kShellErrorMost = 32; // greater answers of ShellExecute are successes

static int Open(HWND owner, const char* page) {
    return GetFileAttributesA(page) != INVALID_FILE_ATTRIBUTES &&
           reinterpret_cast<INT_PTR>(ShellExecuteA(owner, "open", page, nullptr, nullptr,
                                                   SW_SHOWNORMAL)) > kShellErrorMost;
}

void ShowHelp(HWND owner) {
    char page[MAX_PATH] = "", format[kStringMax], caption[kStringMax], text[kStringMax + MAX_PATH];
    if (PathBesideProgram(kManualPage, page) && Open(owner, page)) return;
    LoadText(IDS_HELP_FAILED, format);
    LoadText(IDS_HELP_CAPTION, caption);
    FormatText(text, sizeof text, format, page);
    MessageBoxA(owner, text, caption, MB_OK | MB_ICONEXCLAMATION);
}
