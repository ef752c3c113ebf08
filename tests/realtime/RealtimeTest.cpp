// Proves that the audio thread never allocates, locks or enters the kernel.
//
// The allocator and the mutex functions are ours in this program and count while a block runs. The
// kernel is watched by itself: a child process forbids itself every system call but exit and then
// plays, so that the first call kills it.

#include "data/parameters/Tags.h"
#include "tests/support/Checked.h"
#include "tests/support/Player.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <functional>
#include <mutex>
#include <pthread.h>
#include <random>
#include <shared_mutex>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <linux/seccomp.h>

namespace ormund {

namespace {
thread_local bool watching = false;
thread_local int allocations = 0;
thread_local int locks = 0;

struct Watch {
    Watch() { watching = true; }
    ~Watch() { watching = false; }
};
} // namespace
} // namespace ormund

#ifndef ORMUND_CHECKED
template <typename Lock>
static auto realLock(const char* name)
{
    return reinterpret_cast<int (*)(Lock*)>(dlsym(RTLD_NEXT, name));
}

extern "C" {
void* __libc_malloc(size_t);
void __libc_free(void*);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);

void* malloc(size_t size)
{
    ormund::allocations += ormund::watching;
    return __libc_malloc(size);
}
void free(void* memory)
{
    ormund::allocations += ormund::watching && memory;
    __libc_free(memory);
}
void* calloc(size_t count, size_t size)
{
    ormund::allocations += ormund::watching;
    return __libc_calloc(count, size);
}
void* realloc(void* memory, size_t size)
{
    ormund::allocations += ormund::watching;
    return __libc_realloc(memory, size);
}
void* aligned_alloc(size_t alignment, size_t size)
{
    ormund::allocations += ormund::watching;
    return __libc_memalign(alignment, size);
}
int posix_memalign(void** memory, size_t alignment, size_t size)
{
    *memory = aligned_alloc(alignment, size);
    return *memory ? 0 : ENOMEM;
}
int pthread_mutex_lock(pthread_mutex_t* mutex)
{
    static const auto real = realLock<pthread_mutex_t>("pthread_mutex_lock");
    ormund::locks += ormund::watching;
    return real(mutex);
}
int pthread_rwlock_rdlock(pthread_rwlock_t* lock)
{
    static const auto real = realLock<pthread_rwlock_t>("pthread_rwlock_rdlock");
    ormund::locks += ormund::watching;
    return real(lock);
}
int pthread_rwlock_wrlock(pthread_rwlock_t* lock)
{
    static const auto real = realLock<pthread_rwlock_t>("pthread_rwlock_wrlock");
    ormund::locks += ormund::watching;
    return real(lock);
}
}
#endif

namespace ormund {
namespace {
// A performance with everything moving. `frames` of audio in odd blocks.
class Performance {
public:
    Performance()
    {
        engine.setSampleRate(48000);
        engine.resume();
        engine.setParameter(Tag::SongOn, 1);
        for (int k = 0; k < 8; ++k) {
            engine.setParameter(Tag::ModTrackOn + k, 1);
            engine.setParameter(Tag::ModToSynth + k, 1);
        }
        self = this;
    }

    void play(int64_t frames)
    {
        const Watch watch;
        float* outputs[] = {left, right};
        while (frames > 0) {
            const int count = 1 + static_cast<int>(random() % 700);
            disturb();
            engine.processReplacing(nullptr, outputs, count);
            audibleBlocks += left[0] * left[0] > 1e-10f;
            beats += count * time.tempo / (60.0 * 48000);
            time.ppqPos = beats;
            frames -= count;
        }
    }
    int midi = 0;
    int audibleBlocks = 0;

private:
    static VstIntPtr host(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void* ptr, float)
    {
        if (!self)
            return 0;
        if (opcode == audioMasterGetTime)
            return reinterpret_cast<VstIntPtr>(&self->time);
        if (opcode == audioMasterProcessEvents)
            self->midi += static_cast<const VstEvents*>(ptr)->numEvents;
        return 0;
    }

    void disturb()
    {
        const auto dice = static_cast<unsigned>(random() % 100);
        const float value = static_cast<float>(random() % 1000) / 999.0f;
        if (dice < 20)
            engine.setParameter(static_cast<int>(random() % 46), value);
        else if (dice < 24)
            engine.setParameter(static_cast<int>(random() % 557), random() % 2 ? 0 : value);
        else if (dice < 26)
            time.tempo = 30 + 600 * static_cast<double>(value);
        else if (dice < 28)
            beats = time.ppqPos = 100 * static_cast<double>(value);
        else if (dice < 30)
            time.flags ^= kVstTransportPlaying;
        else if (dice < 60)
            sendMidi();
        if (dice < 24) { // whatever it was: notes and sound go on
            engine.setParameter(Tag::SynthOn, 1);
            engine.setParameter(Tag::TriggerMode, 1);
            engine.setParameter(Tag::SynthLevel, 0.8f);
            engine.setParameter(Tag::Mute, 0);
        }
        time.flags |= dice % 7 ? kVstTransportPlaying : 0;
    }

    void sendMidi()
    {
        VstMidiEvent event{};
        event.type = kVstMidiType;
        event.byteSize = sizeof event;
        event.midiData[0] = static_cast<uint8_t>(random() % 2 ? 0x90 : 0xB0);
        event.midiData[1] = static_cast<uint8_t>(random() % 128);
        event.midiData[2] = static_cast<uint8_t>(random() % 128);
        VstEvents events{};
        events.numEvents = 1;
        events.events[0] = reinterpret_cast<VstEvent*>(&event);
        engine.processEvents(&events);
    }

    static inline Performance* self = nullptr;
    KWUniClient engine{host};
    VstTimeInfo time{0, 48000, 0, 0, 120, 0, 0, 0, 4, 4, 0, 0, 0,
        kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid};
    std::minstd_rand random{17};
    double beats = 0;
    float left[1024];
    float right[1024];
};
} // namespace

TEST(Realtime, TenMinutesNeverAllocateOrLock)
{
    if (kChecked)
        GTEST_SKIP() << "the sanitizer owns the allocator";
    Performance performance;
    allocations = locks = 0;
    performance.play(48000LL * 600);
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(locks, 0);
    EXPECT_GT(performance.midi, 10000);
    EXPECT_GT(performance.audibleBlocks, 10000);
}

TEST(Realtime, TheWatchSeesEveryKindOfAllocationAndLock)
{
    if (kChecked)
        GTEST_SKIP();
    const auto counts = [](const int& counted, const std::function<void()>& doIt) {
        const int before = counted;
        const Watch watch;
        doIt();
        return counted > before;
    };
    struct alignas(64) Wide {
        volatile int number = 1;
    };
    std::mutex mutex;
    std::shared_mutex shared;
    void* memory = nullptr;
    EXPECT_TRUE(counts(allocations, [] { delete new volatile int(1); }));
    EXPECT_TRUE(counts(allocations, [&] { memory = std::malloc(1); }));
    EXPECT_TRUE(counts(allocations, [&] { memory = std::realloc(memory, 100); }));
    EXPECT_TRUE(counts(allocations, [&] { std::free(memory); }));
    Wide* wide = nullptr;
    EXPECT_TRUE(counts(allocations, [&] { wide = new Wide; }));
    delete wide;
    EXPECT_TRUE(counts(locks, [&] { mutex.lock(); }));
    mutex.unlock();
    EXPECT_TRUE(counts(locks, [&] { shared.lock_shared(); }));
    shared.unlock_shared();
    EXPECT_TRUE(counts(locks, [&] { shared.lock(); }));
    shared.unlock();
}

#ifdef ORMUND_REALTIME_CHECKED
void allocates() noexcept ORMUND_NONBLOCKING { delete new volatile int(1); }

TEST(Realtime, TheCompilersCheckerSeesAnAllocationAndNoneInAMinute)
{
    EXPECT_DEATH(allocates(), "unsafe-library-call");
    Performance performance;
    performance.play(48000LL * 60);
    EXPECT_GT(performance.midi, 1000);
}
#endif

TEST(Realtime, AMinuteEntersTheKernelNotOnce)
{
    if (kChecked)
        GTEST_SKIP();
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        Performance performance;
        performance.play(48000); // lazy binding and first page faults are not the matter here
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT);
        performance.play(48000LL * 60);
        syscall(SYS_exit, 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

} // namespace ormund
