// A preset or a map of controllers as text, for `--describe`.
#pragma once

#include <string>

namespace ormund {

// Prints what the file holds, as readable text or as JSON. A damaged file is printed as far as it
// reads, with the word at which it breaks; then, and when there is no such file, what is wrong
// comes back; else nothing.
std::string describeFile(const std::string& path, bool asJson);

} // namespace ormund
