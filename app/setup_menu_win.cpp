// The program's folder in the user's Start menu. See setup_win.h.
#include "app/setup_win.h"
#include "media/graph_win.h"

#include <shlobj.h>

#include <initializer_list>

constexpr const char* kMenuFolder = "Tonvista";
constexpr const char* kProgramLink = "Tonvista.lnk";
constexpr const char* kManualLink = "Tonvista Manual.lnk";

static int MenuFolder(char (&folder)[kPathSize]) {
    char programs[MAX_PATH] = "";
    return SUCCEEDED(SHGetFolderPathA(nullptr, CSIDL_PROGRAMS | CSIDL_FLAG_CREATE, nullptr,
                                      SHGFP_TYPE_CURRENT, programs)) &&
           JoinPath(programs, kMenuFolder, folder);
}

static int SaveLink(IShellLinkA* link, const char* path) {
    wchar_t wide[MAX_PATH];
    IPersistFile* file = nullptr;
    const int saved =
        MultiByteToWideChar(CP_ACP, 0, path, -1, wide, MAX_PATH) &&
        SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file))) &&
        SUCCEEDED(file->Save(wide, TRUE));
    ReleaseCom(&file);
    return saved;
}

static int WriteLink(const char* path, const char* target, const char* folder, const char* tip) {
    IShellLinkA* link = nullptr;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                reinterpret_cast<void**>(&link))))
        return 0;
    const int written = SUCCEEDED(link->SetPath(target)) &&
                        SUCCEEDED(link->SetWorkingDirectory(folder)) &&
                        SUCCEEDED(link->SetDescription(tip)) && SaveLink(link, path);
    ReleaseCom(&link);
    return written;
}

int AddToStartMenu(const char* folder) {
    const ComScope com;
    char menu[kPathSize], link[kPathSize], target[kPathSize], manual[kPathSize];
    if (!MenuFolder(menu)) return 0;
    CreateDirectoryA(menu, nullptr);
    const int written = JoinPath(menu, kProgramLink, link) &&
                        JoinPath(folder, kProgramFile, target) &&
                        WriteLink(link, target, folder, "Multimedia console");
    if (JoinPath(folder, kManualFolder, manual) && JoinPath(manual, "index.html", target) &&
        GetFileAttributesA(target) != INVALID_FILE_ATTRIBUTES && JoinPath(menu, kManualLink, link))
        WriteLink(link, target, manual, "How Tonvista is used");
    return written;
}

void RemoveFromStartMenu() {
    char menu[kPathSize], link[kPathSize];
    if (!MenuFolder(menu)) return;
    for (const char* name : {kProgramLink, kManualLink})
        if (JoinPath(menu, name, link)) DeleteFileA(link);
    RemoveDirectoryA(menu); // unless the user keeps something there
}
