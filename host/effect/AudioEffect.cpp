// The record that the host holds, and the C functions in it.
#include "host/effect/AudioEffect.h"

#include "host/effect/AEffEditor.h"

#include <algorithm>
#include <cstring>

namespace ormund {

namespace {

AudioEffect* effectOf(AEffect* record)
{
    return record && record->magic == kEffectMagic ? static_cast<AudioEffect*>(record->object)
                                                   : nullptr;
}

} // namespace

void copyEffectText(char* to, const char* text, int room)
{
    if (!to || room <= 0)
        return;
    size_t length = text ? strnlen(text, static_cast<size_t>(room) - 1) : 0;
    // Never in the middle of a letter that has several bytes.
    if (length > 0 && text[length] != 0)
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
            --length;
    if (length > 0)
        std::memcpy(to, text, length);
    to[length] = 0;
}

AudioEffect::AudioEffect(audioMasterCallback hostCallback, VstInt32 programs, VstInt32 parameters)
    : audioMaster(hostCallback)
{
    cEffect.magic = kEffectMagic;
    cEffect.dispatcher = dispatchEffect;
    cEffect.process = processEffect;
    cEffect.setParameter = setParameterOfEffect;
    cEffect.getParameter = getParameterOfEffect;
    cEffect.numPrograms = programs;
    cEffect.numParams = parameters;
    cEffect.numInputs = 1;
    cEffect.numOutputs = 1;
    cEffect.ioRatio = 1.0f;
    cEffect.object = this;
    cEffect.uniqueID = fourCharacters('N', 'o', 'E', 'f');
    cEffect.version = 1;
    cEffect.processReplacing = processEffect;
}

AudioEffect::~AudioEffect() { delete editor; }

void AudioEffect::setEditor(AEffEditor* newEditor)
{
    if (newEditor != editor)
        delete editor;
    editor = newEditor;
    setFlag(effFlagsHasEditor, editor != nullptr);
}

void AudioEffect::setFlag(VstInt32 flag, bool state)
{
    cEffect.flags = state ? cEffect.flags | flag : cEffect.flags & ~flag;
}

void AudioEffect::getParameterLabel(VstInt32 /*index*/, char* label) { *label = 0; }

void AudioEffect::getParameterName(VstInt32 /*index*/, char* text) { *text = 0; }

void AudioEffect::getParameterDisplay(VstInt32 /*index*/, char* text) { *text = 0; }

VstIntPtr AudioEffect::dispatchEffect(
    AEffect* record, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    AudioEffect* effect = effectOf(record);
    if (!effect)
        return 0;
    if (opcode == effClose) {
        // The record goes with the object; a second effClose would find neither.
        effect->close();
        delete effect;
        return 1;
    }
    return effect->dispatcher(opcode, index, value, ptr, opt);
}

void AudioEffect::processEffect(
    AEffect* record, float** inputs, float** outputs, VstInt32 sampleFrames)
{
    AudioEffect* effect = effectOf(record);
    if (effect && outputs)
        effect->processReplacing(inputs, outputs, std::max<VstInt32>(sampleFrames, 0));
}

void AudioEffect::setParameterOfEffect(AEffect* record, VstInt32 index, float value)
{
    if (AudioEffect* effect = effectOf(record))
        effect->setParameter(index, value);
}

float AudioEffect::getParameterOfEffect(AEffect* record, VstInt32 index)
{
    AudioEffect* effect = effectOf(record);
    return effect ? effect->getParameter(index) : 0.0f;
}

} // namespace ormund
