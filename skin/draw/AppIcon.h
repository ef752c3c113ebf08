// The icon of the stand-alone.
#pragma once

#include "skin/draw/Strip.h"

#include <string>

namespace ormund {

inline constexpr int kIconSizes[] = {16, 24, 32, 48, 64, 128, 256};

std::unique_ptr<Image> appIcon(int size);
// The same drawing as a scalable file. Throws std::runtime_error when it cannot be written.
void writeAppIconSvg(const std::string& path);

} // namespace ormund
