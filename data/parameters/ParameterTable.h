// What the values of an instance need of the table of parameters.
#pragma once

#include "data/parameters/Parameters.h"

namespace ormund {

// The row of a tag, 0 to 286; -1 for a hole and for any other number.
int parameterPlace(int tag);

} // namespace ormund
