#include "apps/ormund-render/Description.h"

#include "data/library/StateDescription.h"

#include <cstdio>

namespace ormund {

std::string describeFile(const std::string& path, bool asJson)
{
    std::vector<uint32_t> words;
    std::string problem;
    if (!readWords(path, words, problem))
        return problem;
    const size_t dot = path.rfind('.');
    const StateDescription description(words, dot == std::string::npos ? "" : path.substr(dot + 1));
    std::fputs((asJson ? description.json() : description.text()).c_str(), stdout);
    return description.isBroken() ? path + ": " + description.problem() : "";
}

} // namespace ormund
