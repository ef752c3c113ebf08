#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace ormund {

// The text itself where it is at most `room` wide. Otherwise its longest words are abbreviated by a
// point, down to three letters, so that each word can still be recognised: "Major Pentat." Where
// that is not enough its end gives way to an ellipsis. UTF-8; `width` measures, `room` is in its
// units.
std::string fittedText(
    std::string_view text, double room, const std::function<double(std::string_view)>& width);

} // namespace ormund
