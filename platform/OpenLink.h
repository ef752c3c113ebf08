#pragma once

#include <string>

namespace ormund {

// Opens a file or an address with the desktop's program for it, without waiting. False when there
// is none; what that program makes of it is its own affair.
bool openLink(const std::string& target);

} // namespace ormund
