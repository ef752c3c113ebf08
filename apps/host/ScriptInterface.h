// The plug-in's own calls, as programs use them: by effVendorSpecific, with the plug-in's own words
// when it refuses a file. The thread of the user interface.
#pragma once

#include "apps/host/HostedEffect.h"

#include <string>

namespace ormund {

// A preset (kwe, kws) or a map of controllers (kwm), distinguished by the name's ending. Empty, or
// what is wrong, in one line.
std::string loadFile(HostedEffect& host, const std::string& path);
// kwe, or kws where the name ends so. Empty, or what is wrong.
std::string savePreset(HostedEffect& host, const std::string& path);
// 0 to 1, of any parameter; getParameter of the effect knows those of the host alone. 0 for none.
float readParameter(HostedEffect& host, int tag);

} // namespace ormund
