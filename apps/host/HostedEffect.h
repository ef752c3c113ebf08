// One plug-in instance seen from its host: loads it, opens and starts it, asks it things, and
// answers what it asks. What a host does with sound, events and time belongs to the class that
// derives.
#pragma once

#include "host/effect/EffectTypes.h"

#include <string>

namespace ormund {

class HostedEffect {
public:
    using Entry = AEffect* (*)(audioMasterCallback);

    HostedEffect(const HostedEffect&) = delete;
    HostedEffect& operator=(const HostedEffect&) = delete;

    // Stops and closes the instance. Harmless without one.
    void close();
    const std::string& error() const { return problem; }

    AEffect* effect() { return instance; }
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
        void* ptr = nullptr, float opt = 0);
    // An answer in text, such as effGetParamName; cut at 255 bytes.
    std::string text(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0);

protected:
    HostedEffect() = default;
    // The one who derives closes first, since the instance may call answer() until then.
    ~HostedEffect();

    // The module's entry; null leaves the reason in error(). The module goes with this object.
    Entry loadModule(const std::string& path);
    // Makes an instance, opens and starts it. False leaves the reason in error().
    bool open(Entry entry, float sampleRate, int blockSize);
    // Stops, gives the new rate (Hz), starts again.
    void changeSampleRate(float hertz);
    // What every host of ours answers; the thread is the one that the plug-in calls on.
    virtual VstIntPtr answer(
        VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);

    const char* product = "Scripted Host"; // audioMasterGetProductString
    float rate = 44100.0f;                 // Hz
    int block = 512;                       // frames

private:
    static VstIntPtr callback(AEffect*, VstInt32, VstInt32, VstIntPtr, void*, float);

    void* module = nullptr;
    AEffect* instance = nullptr;
    std::string problem;
};

} // namespace ormund
