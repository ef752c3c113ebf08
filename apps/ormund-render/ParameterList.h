// The table of all parameters for `--list`.
#pragma once

namespace ormund {

void printParameterList();

} // namespace ormund
