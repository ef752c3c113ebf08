// What a frame costs, in instructions: unlike times they are the same on every day and machine.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

namespace ormund {

namespace {
constexpr char kRecord[] = ORMUND_SOURCE_DIR "/tests/golden/instruction-counts.txt";
constexpr double kFrames = 44100; // that a scene plays
constexpr double kTolerance = 0.03;
constexpr std::array kScenes = {"idle", "sequencer", "voices", "everything"};

std::string outputOf(const std::string& command)
{
    std::string text;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return text;
    char part[256];
    while (std::fgets(part, sizeof part, pipe))
        text += part;
    pclose(pipe);
    return text;
}

// Without the instruction sets that not every processor has, in the C library too; 0 where nothing
// could be counted.
double instructionsPerFrame(const std::string& scene)
{
    const std::string output = outputOf(
        "GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-AVX,-ERMS,-FSRM,-SSE4_1,-SSE4_2,-SSSE3 "
        "valgrind --tool=callgrind --callgrind-out-file=/dev/null "
        "--toggle-collect='ormund::KWUniClient::processReplacing*' " ORMUND_BIN_DIR "/ormund-scene "
        + scene + " 2>&1");
    constexpr char kWord[] = "Collected : ";
    const size_t at = output.find(kWord);
    return at == std::string::npos ? 0.0
                                   : std::atof(output.c_str() + at + sizeof kWord - 1) / kFrames;
}
} // namespace

// With ORMUND_WRITE_GOLDEN set the counts are recorded again.
TEST(InstructionCounts, StayWithinThreeInAHundredOfTheRecord)
{
#if !defined(NDEBUG) || defined(__clang__) || defined(__SANITIZE_ADDRESS__)                        \
    || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "recorded for the release build of GCC";
#endif
    if (outputOf("valgrind --version 2>&1").find("valgrind-") != 0)
        GTEST_SKIP() << "no valgrind is installed";
    std::map<std::string, double> counts;
    for (const char* scene : kScenes)
        counts[scene] = instructionsPerFrame(scene);
    if (std::getenv("ORMUND_WRITE_GOLDEN")) {
        std::ofstream file(kRecord);
        for (const auto& [scene, count] : counts)
            file << scene << ' ' << count << '\n';
    }
    std::map<std::string, double> recorded;
    std::ifstream file(kRecord);
    std::string name;
    for (double count = 0; file >> name >> count;)
        recorded[name] = count;
    for (const auto& [scene, count] : counts) {
        std::printf("%-12s %8.1f instructions a frame, recorded %8.1f\n", scene.c_str(), count,
            recorded[scene]);
        EXPECT_NEAR(count, recorded[scene], kTolerance * recorded[scene]) << scene;
        EXPECT_GT(count, 0) << scene;
    }
}

} // namespace ormund
