// What a host may ask of a plug-in's window. The screen's thread alone.
#pragma once

#include "host/effect/EffectTypes.h"

namespace ormund {

class AudioEffect;

class AEffEditor {
public:
    explicit AEffEditor(AudioEffect* owner) : effect(owner) { }
    virtual ~AEffEditor() = default;
    AEffEditor(const AEffEditor&) = delete;
    AEffEditor& operator=(const AEffEditor&) = delete;

    // Points `rect` at the window's size, before it is open too. False leaves it alone.
    virtual bool getRect(ERect** rect) = 0;
    // Makes `width` and `height`, what a host offers, the nearest size that the window can have and
    // that fits in; `takes` it too. False where the size is fixed.
    virtual bool fitInto(int& /*width*/, int& /*height*/, bool /*takes*/) { return false; }
    // `parent` is the host's window, an X11 window number here.
    virtual bool open(void* parent) = 0;
    virtual void close() = 0;
    virtual bool isOpen() = 0;
    // The window system's name for the plug-in's own window inside the host's; 0 while it has none.
    virtual unsigned long systemHandle() const { return 0; }
    virtual void idle() { }
    // True when the key was used here and the host must not act on it.
    virtual bool onKeyDown(VstKeyCode& /*key*/) { return false; }
    virtual bool onKeyUp(VstKeyCode& /*key*/) { return false; }
    virtual bool onWheel(float /*distance*/) { return false; }
    virtual bool setKnobMode(VstInt32 /*mode*/) { return false; }

    AudioEffect* getEffect() const { return effect; }

protected:
    AudioEffect* effect;
};

} // namespace ormund
