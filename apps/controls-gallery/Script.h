// Plays a text file on the gallery, a command a line: for pictures and for trying by machine.
//
//   move X Y [mods]     press X Y [button] [mods]     release X Y [button]
//   click X Y [button] [mods]     double X Y     drag X1 Y1 X2 Y2 [button] [mods]
//   wheel X Y NOTCHES [mods]      idle [TIMES]   scale FACTOR
//   png FILE            the sheet as it is now
//   expect TEXT         the line at the foot of the sheet must be TEXT
//
// A button is left, middle or right; mods are shift, ctrl and alt, joined by a plus sign. A line
// that begins with a # is left out.
#pragma once

#include <istream>
#include <string>

namespace ormund {

class Gallery;

// False at the first line that fails, which `error` then names.
bool playScript(Gallery& gallery, std::istream& script, std::string& error);
bool writeGalleryPng(Gallery& gallery, const std::string& path);

} // namespace ormund
