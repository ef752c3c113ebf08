// What is saved and loaded: chunks, presets, programs.

#include "engine/KWUniClient.h"

VstInt32 KWUniClient::getChunk(void** data, bool /*isPreset*/)
{
    *data = nullptr;
    return 0;
}

VstInt32 KWUniClient::setChunk(void* /*data*/, VstInt32 /*byteSize*/, bool /*isPreset*/)
{
    return 0;
}

void KWUniClient::stepPreset(int /*tag*/) { }

void KWUniClient::programChanged(int /*program*/) { }
