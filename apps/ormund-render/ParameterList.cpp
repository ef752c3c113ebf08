#include "apps/ormund-render/ParameterList.h"

#include "data/parameters/Parameters.h"

#include <cstdio>
#include <string>

namespace ormund {

namespace {

std::string kindText(const ParameterEntry& entry)
{
    if (entry.backing == Backing::Zones)
        return "loop";
    if (!entry.hasValue())
        return "one step of a track";
    if (entry.isButton())
        return isAction(entry.tag) ? "button, acts on release" : "off, on";
    const int choices = choiceCount(entry.tag);
    if (choices < 2)
        return "continuous";
    return std::to_string(choices) + " choices: " + std::string(choiceText(entry.tag, 0)) + " .. "
        + std::string(choiceText(entry.tag, choices - 1));
}

} // namespace

void printParameterList()
{
    std::printf(
        "%5s %5s  %-20s %-9s %-20s %s\n", "tag", "key", "name", "default", "saved in", "values");
    for (const ParameterEntry& entry : allParameters()) {
        const std::string key = entry.fileKey < 0 ? "-" : std::to_string(entry.fileKey);
        std::printf("%5d %5s  %-20.*s %-9.6g %-20s %s\n", entry.tag, key.c_str(),
            static_cast<int>(entry.name.size()), entry.name.data(),
            static_cast<double>(entry.defaultRaw), savedText(entry.saved), kindText(entry).c_str());
    }
}

} // namespace ormund
