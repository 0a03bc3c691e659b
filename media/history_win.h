// The last playlists and files that were played, kept in the settings.
#pragma once
#include <string>
#include <vector>

void AddHistory(const std::string& path);
std::vector<std::string> ListHistory();
void RemoveHistory(const std::string& path);
void ClearHistory();
