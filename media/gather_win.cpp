#include "media/gather_win.h"
int GatherFolder(HWND, const std::string&, std::vector<std::string>*) {
    return 0;
}
int AddPaths(HWND, const std::vector<std::string>&, Playlist*, int) {
    return 0;
}
void TellUser(HWND, UINT, int) {}
