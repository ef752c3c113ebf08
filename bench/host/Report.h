// The results as text and as a picture.
#pragma once

#include "bench/host/Measure.h"

#include <ostream>
#include <string>

namespace ormund {

std::string machineName(); // processor, cores, how busy it was
void writeTable(std::ostream& out, const std::vector<Result>& results);
void writeRatios(std::ostream& out, const std::vector<Result>& results);
// Bars of the median costs. False when the file cannot be written.
bool writeChart(const std::string& path, const std::vector<Result>& results);

} // namespace ormund
