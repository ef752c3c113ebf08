// Opcode to virtual operation. A host may send any opcode with any arguments: each case checks the
// pointers that it needs, and texts are written here first and cut to the host's room.
#include "host/effect/AEffEditor.h"
#include "host/effect/AudioEffectX.h"

#include <cmath>
#include <cstring>

namespace ormund {

namespace {

// Runs `write(char*)` on a buffer of our own and hands at most `room` bytes of it on.
template <typename Write>
bool answerText(void* to, int room, Write write)
{
    if (!to)
        return false;
    char text[kEffectTextBytes] = {};
    const bool answered = write(text);
    if (answered)
        copyEffectText(static_cast<char*>(to), text, room);
    return answered;
}

template <typename Write>
void putText(void* to, int room, Write write)
{
    answerText(to, room, [&](char* text) {
        write(text);
        return true;
    });
}

bool isUsableRate(float rate) { return std::isfinite(rate) && rate > 0; }

VstKeyCode keyOf(VstInt32 index, VstIntPtr value, float opt)
{
    const bool modifiersFit = opt >= 0 && opt < 256;
    return {index, static_cast<unsigned char>(value),
        static_cast<unsigned char>(modifiersFit ? opt : 0.0f)};
}

} // namespace

VstIntPtr AudioEffect::dispatcher(
    VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    switch (opcode) {
    case effOpen:
        open();
        return 1;
    case effClose: // dispatchEffect deletes the effect afterwards
        close();
        return 1;
    case effSetProgram:
        if (value >= 0 && value < cEffect.numPrograms)
            setProgram(static_cast<VstInt32>(value));
        return 0;
    case effGetProgram:
        return getProgram();
    case effSetProgramName:
        if (ptr)
            setProgramName(static_cast<char*>(ptr));
        return 0;
    case effGetProgramName:
        putText(ptr, kVstMaxProgNameLen, [&](char* text) { getProgramName(text); });
        return 0;
    case effGetParamLabel:
        putText(ptr, kVstMaxParamStrLen, [&](char* text) { getParameterLabel(index, text); });
        return 0;
    case effGetParamDisplay:
        putText(ptr, kVstMaxParamStrLen, [&](char* text) { getParameterDisplay(index, text); });
        return 0;
    case effGetParamName:
        putText(ptr, kVstMaxParamStrLen, [&](char* text) { getParameterName(index, text); });
        return 0;
    case effSetSampleRate:
        if (isUsableRate(opt))
            setSampleRate(opt);
        return 0;
    case effSetBlockSize:
        if (value > 0 && value <= INT32_MAX)
            setBlockSize(static_cast<VstInt32>(value));
        return 0;
    case effMainsChanged:
        if (value != 0)
            resume();
        else
            suspend();
        return 0;
    case effEditGetRect:
        return editor && ptr && editor->getRect(static_cast<ERect**>(ptr)) ? 1 : 0;
    case effEditOpen:
        return editor && editor->open(ptr) ? 1 : 0;
    case effEditClose:
        if (editor)
            editor->close();
        return 0;
    case effEditIdle:
        if (editor)
            editor->idle();
        return 0;
    case effIdentify:
        return fourCharacters('N', 'v', 'E', 'f');
    case effGetChunk:
        return ptr ? getChunk(static_cast<void**>(ptr), index != 0) : 0;
    case effSetChunk:
        if (!ptr || value <= 0 || value > INT32_MAX)
            return 0;
        return setChunk(ptr, static_cast<VstInt32>(value), index != 0);
    default:
        return 0;
    }
}

VstIntPtr AudioEffectX::dispatcher(
    VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    AEffEditor* window = getEditor();
    switch (opcode) {
    case effProcessEvents:
        return ptr ? processEvents(static_cast<VstEvents*>(ptr)) : 0;
    case effCanBeAutomated:
        return canParameterBeAutomated(index) ? 1 : 0;
    case effString2Parameter:
        return isHostParameter(index) && string2parameter(index, static_cast<const char*>(ptr)) ? 1
                                                                                                : 0;
    case effGetProgramNameIndexed:
        if (index < 0 || index >= getAeffect()->numPrograms)
            return 0;
        return answerText(ptr, kVstMaxProgNameLen, [&](char* text) {
            return getProgramNameIndexed(static_cast<VstInt32>(value), index, text);
        });
    case effGetInputProperties:
    case effGetOutputProperties: {
        const bool isInput = opcode == effGetInputProperties;
        const VstInt32 pins = isInput ? getAeffect()->numInputs : getAeffect()->numOutputs;
        if (!ptr || index < 0 || index >= pins)
            return 0;
        auto* properties = static_cast<VstPinProperties*>(ptr);
        std::memset(properties, 0, sizeof *properties);
        return isInput ? getInputProperties(index, properties)
                       : getOutputProperties(index, properties);
    }
    case effGetParameterProperties:
        if (!ptr || !isHostParameter(index))
            return 0;
        std::memset(ptr, 0, sizeof(VstParameterProperties));
        return getParameterProperties(index, static_cast<VstParameterProperties*>(ptr));
    case effGetPlugCategory:
        return getPlugCategory();
    case effSetBlockSizeAndSampleRate:
        AudioEffect::dispatcher(effSetBlockSize, 0, value, nullptr, 0);
        AudioEffect::dispatcher(effSetSampleRate, 0, 0, nullptr, opt);
        return 0;
    case effSetBypass:
        return setBypass(value != 0) ? 1 : 0;
    case effGetEffectName:
        return answerText(
            ptr, kVstMaxEffectNameLen, [&](char* text) { return getEffectName(text); });
    case effGetVendorString:
        return answerText(
            ptr, kVstMaxVendorStrLen, [&](char* text) { return getVendorString(text); });
    case effGetProductString:
        return answerText(
            ptr, kVstMaxProductStrLen, [&](char* text) { return getProductString(text); });
    case effGetVendorVersion:
        return getVendorVersion();
    case effVendorSpecific:
        return vendorSpecific(index, value, ptr, opt);
    case effCanDo:
        return ptr ? canDo(static_cast<const char*>(ptr)) : 0;
    case effGetTailSize:
        return getGetTailSize();
    case effGetVstVersion:
        return getVstVersion();
    case effIdle:
        return fxIdle();
    case effKeysRequired:
        return 0; // 1 would say that no keys are wanted
    case effEditKeyDown: {
        VstKeyCode key = keyOf(index, value, opt);
        return window && window->onKeyDown(key) ? 1 : 0;
    }
    case effEditKeyUp: {
        VstKeyCode key = keyOf(index, value, opt);
        return window && window->onKeyUp(key) ? 1 : 0;
    }
    case effSetEditKnobMode:
        return window && window->setKnobMode(static_cast<VstInt32>(value)) ? 1 : 0;
    case effStartProcess:
        return startProcess();
    case effStopProcess:
        return stopProcess();
    case effGetNumMidiInputChannels:
        return getNumMidiInputChannels();
    case effGetNumMidiOutputChannels:
        return getNumMidiOutputChannels();
    default:
        return AudioEffect::dispatcher(opcode, index, value, ptr, opt);
    }
}

} // namespace ormund
