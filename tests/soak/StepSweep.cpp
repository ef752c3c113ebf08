// Seeded transports against a model of what they must play. Ends with 1 where a step is lost, added
// or off; prints the seeds of the first such transports.
//   ormund-step-sweep [count] [first seed] [module]
#include "tests/support/StepRunner.h"

#include <cstdio>
#include <cstdlib>

using namespace ormund;

int main(int argc, char** argv)
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 1000;
    const unsigned first = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 1;
    StepRunner runner(argc > 3 ? argv[3] : "");
    StepFaults sum;
    size_t steps = 0;
    int failed = 0;
    for (int i = 0; i < count; ++i) {
        const unsigned seed = first + static_cast<unsigned>(i);
        TransportScript script(seed);
        const StepFaults faults = runner.check(script);
        if (!runner.error().empty()) {
            std::fprintf(stderr, "%s\n", runner.error().c_str());
            return 2;
        }
        steps += script.model().steps().size();
        sum.lost += faults.lost;
        sum.added += faults.added;
        sum.late += faults.late;
        if (faults.lost + faults.added == 0)
            continue;
        if (++failed <= 10)
            std::printf("seed %u (reports %d): %d lost, %d added\n", seed,
                static_cast<int>(script.reports()), faults.lost, faults.added);
    }
    std::printf("%d transports, %zu steps: %d transports wrong, %d steps lost, %d added, %d a tick "
                "or two off where the host's place is\n",
        count, steps, failed, sum.lost, sum.added, sum.late);
    return failed > 0 ? 1 : 0;
}
