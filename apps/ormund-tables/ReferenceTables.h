// The tables of the reference pages: every parameter, every control.
#pragma once

#include <string>

namespace ormund {

std::string parameterTable();
std::string controlTable();
// What moves nothing, and why.
std::string passiveControlTable();
std::string passiveParameterTable();

} // namespace ormund
