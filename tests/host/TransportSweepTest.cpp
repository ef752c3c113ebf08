// Seeded transports against a model of the steps that they must play; ormund-step-sweep plays many
// more.

#include "tests/host/ModuleRig.h"
#include "tests/support/StepRunner.h"

namespace ormund {

namespace {
// The first `count` transports.
void sweep(const std::string& module, unsigned count)
{
    const OwnHome home;
    StepRunner runner(module);
    for (unsigned seed = 1; seed <= count; ++seed) {
        TransportScript script(seed);
        const StepFaults faults = runner.check(script);
        ASSERT_EQ(runner.error(), "");
        EXPECT_EQ(faults.lost, 0) << "seed " << seed;
        EXPECT_EQ(faults.added, 0) << "seed " << seed;
    }
}
} // namespace

TEST(TransportSweep, TheSequencerLosesAndDoublesNoStep) { sweep({}, 60); }

TEST(TransportSweep, TheModuleLosesAndDoublesNoStep) { sweep(kModule, 30); }

} // namespace ormund
