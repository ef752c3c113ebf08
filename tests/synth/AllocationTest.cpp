// Counts what the audio thread's calls take from the heap and from the system. The sanitizers bring
// a heap of their own, so there the counting is left out.
#include "tests/synth/SynthPlayer.h"

#include <gtest/gtest.h>

#if !defined(ORMUND_CHECKED) && defined(__GLIBC__)

#include <cstdlib>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {
thread_local long allocations = 0;
}

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
__attribute__((visibility("default"))) void* malloc(size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}
__attribute__((visibility("default"))) void* calloc(size_t count, size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}
__attribute__((visibility("default"))) void* realloc(void* old, size_t size)
{
    ++allocations;
    return __libc_realloc(old, size);
}
// The delay's lines are pages of the system.
__attribute__((visibility("default"))) void* mmap(
    void* place, size_t size, int access, int flags, int file, off_t offset)
{
    ++allocations;
    return reinterpret_cast<void*>(syscall(SYS_mmap, place, size, access, flags, file, offset));
}
}

namespace ormund {
namespace {

TEST(SynthMemory, NotesParametersAndTemposTakeNothingFromTheHeap)
{
    SynthPlayer player;
    float left[kTickSamples], right[kTickSamples];
    const long made = allocations;
    ASSERT_GT(made, 0);
    for (int step = 0; step < 5000; ++step) {
        player.noteOn(static_cast<unsigned>(step % 128), static_cast<unsigned>(step % 127));
        player.set(KWSynth::kFirstTag + step % 19, static_cast<float>(step % 100) * 0.01f);
        player.info.setTempo(30 + step % 470);
        player.info.notifyTempoListeners();
        player.synth.sampleRateChanged();
        player.synth.controlTick(0);
        player.synth.render(left, right, kTickSamples);
    }
    EXPECT_EQ(allocations, made);
    // The counter does see the delay's lines when the rate rises.
    player.info.setSampleRate(96000);
    player.synth.sampleRateChanged();
    EXPECT_GT(allocations, made);
}

} // namespace
} // namespace ormund

#endif
