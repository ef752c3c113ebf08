// ormund-render: the plug-in without a host, from the command line.
#include "apps/ormund-render/Description.h"
#include "apps/ormund-render/ParameterList.h"
#include "apps/ormund-render/PianoRoll.h"
#include "apps/ormund-render/Rendering.h"
#include "apps/ormund-render/RenderOptions.h"

#include "base/TerminalText.h"

#include <cstdio>
#include <exception>

using namespace ormund;

namespace {

std::string run(const RenderOptions& options)
{
    Rendering rendering;
    if (std::string problem = render(options, rendering); !problem.empty())
        return problem;
    if (!options.midi.empty())
        if (std::string problem = writeFile(options.midi, midiOf(rendering).write());
            !problem.empty())
            return problem;
    return options.png.empty() ? "" : drawPianoRoll(rendering, options.png);
}

} // namespace

int main(int count, char** arguments)
{
    try {
        RenderOptions options;
        if (const auto code = parseRenderOptions(count, arguments, options))
            return *code;
        if (options.list) {
            printParameterList();
            return 0;
        }
        const std::string problem =
            options.describe.empty() ? run(options) : describeFile(options.describe, options.json);
        if (problem.empty())
            return 0;
        std::fprintf(stderr, "ormund-render: %s\n", terminalText(problem).c_str());
    } catch (const std::exception& mishap) {
        std::fprintf(stderr, "ormund-render: %s\n", mishap.what());
    }
    return 1;
}
