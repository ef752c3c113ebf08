// The plug-in's side of the effect interface: what a host calls, as virtual operations, and what
// the plug-in calls, as plain ones.
#pragma once

#include "host/effect/EffectTypes.h"

namespace ormund {

class AEffEditor;

// Texts that an operation writes have at most this many bytes, the zero included. The dispatcher
// cuts them to what a host has room for.
constexpr int kEffectTextBytes = 256;

// Writes `text` into `to`, at most `room` bytes with the closing zero. Null texts count as empty.
void copyEffectText(char* to, const char* text, int room);

// Owns the AEffect that the host holds; the host's effClose deletes it. Operations come on the
// host's threads as their callers document; none may throw.
class AudioEffect {
public:
    AudioEffect(audioMasterCallback hostCallback, VstInt32 programs, VstInt32 parameters);
    virtual ~AudioEffect();
    AudioEffect(const AudioEffect&) = delete;
    AudioEffect& operator=(const AudioEffect&) = delete;

    AEffect* getAeffect() { return &cEffect; }
    // Takes the editor over and reports to the host that there is one. Null takes it away again.
    void setEditor(AEffEditor* newEditor);
    AEffEditor* getEditor() const { return editor; }

    // Opcode to operation; everything that `dispatcher` of the record is asked lands here.
    virtual VstIntPtr dispatcher(
        VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);

    virtual void open() { }
    virtual void close() { }
    virtual void suspend() { }
    virtual void resume() { }
    // Hertz, finite and above 0; the host's thread, no block runs.
    virtual void setSampleRate(float rate) { sampleRate = rate; }
    virtual void setBlockSize(VstInt32 samples) { blockSize = samples; }
    virtual void processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) = 0;

    // Any index may come; what does not exist is ignored, or answered with 0.
    virtual void setParameter(VstInt32 /*index*/, float /*value*/) { }
    virtual float getParameter(VstInt32 /*index*/) { return 0; }
    // Sets the value here and notifies the host.
    virtual void setParameterAutomated(VstInt32 index, float value);
    virtual void getParameterLabel(VstInt32 index, char* label);
    virtual void getParameterName(VstInt32 index, char* text);
    virtual void getParameterDisplay(VstInt32 index, char* text);

    virtual VstInt32 getProgram() { return curProgram; }
    virtual void setProgram(VstInt32 program) { curProgram = program; }
    virtual void setProgramName(char* /*name*/) { }
    virtual void getProgramName(char* name) { *name = 0; }

    // The bytes stay the plug-in's and stand until the next call; answers their number.
    virtual VstInt32 getChunk(void** /*data*/, bool /*isPreset*/) { return 0; }
    // `byteSize` above 0; the data is the host's and unchecked.
    virtual VstInt32 setChunk(void* /*data*/, VstInt32 /*byteSize*/, bool /*isPreset*/)
    {
        return 0;
    }

    float getSampleRate() const { return sampleRate; }
    VstInt32 getBlockSize() const { return blockSize; }
    bool hasHost() const { return audioMaster != nullptr; }

protected:
    // One call to the host; 0 where there is none.
    VstIntPtr callHost(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
        void* ptr = nullptr, float opt = 0);
    // The version of the interface that the host speaks, 1 where it does not say.
    VstInt32 getMasterVersion();

    void setUniqueID(VstInt32 id) { cEffect.uniqueID = id; }
    void setNumInputs(VstInt32 inputs) { cEffect.numInputs = inputs; }
    void setNumOutputs(VstInt32 outputs) { cEffect.numOutputs = outputs; }
    void setInitialDelay(VstInt32 samples) { cEffect.initialDelay = samples; }
    void canProcessReplacing(bool state = true) { setFlag(effFlagsCanReplacing, state); }
    void programsAreChunks(bool state = true) { setFlag(effFlagsProgramChunks, state); }
    void setFlag(VstInt32 flag, bool state);

    VstInt32 curProgram = 0;
    float sampleRate = 44100.0f;
    VstInt32 blockSize = 1024;

private:
    static VstIntPtr dispatchEffect(AEffect*, VstInt32, VstInt32, VstIntPtr, void*, float);
    static void processEffect(AEffect*, float**, float**, VstInt32);
    static void setParameterOfEffect(AEffect*, VstInt32, float);
    static float getParameterOfEffect(AEffect*, VstInt32);

    audioMasterCallback audioMaster;
    AEffEditor* editor = nullptr; // owned
    AEffect cEffect{};
};

} // namespace ormund
