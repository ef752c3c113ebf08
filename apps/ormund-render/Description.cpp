#include "apps/ormund-render/Description.h"

#include "data/state/StateDescription.h"

#include <cstdio>

namespace ormund {

std::string describeFile(const std::string& path, bool asJson)
{
    std::vector<uint32_t> words;
    std::string problem;
    if (!readWords(path, words, problem))
        return problem;
    const size_t dot = path.rfind('.');
    const StateDescription told(words, dot == std::string::npos ? "" : path.substr(dot + 1));
    std::fputs((asJson ? told.json() : told.text()).c_str(), stdout);
    return told.isBroken() ? path + ": " + told.problem() : "";
}

} // namespace ormund
