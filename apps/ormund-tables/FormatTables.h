// The tables of the page about the file formats.
#pragma once

#include <string>

namespace ormund {

std::string fileKeyTable();
std::string settingTable();
// A file word by word; `source` names a text of the factory bank, without its ending.
std::string synthWalk(const std::string& presets, const std::string& source);
std::string globalWalk(const std::string& presets, const std::string& source);

} // namespace ormund
