// Our records and opcodes beside those of the free header package: two people who wrote the same
// interface down must have come to the same numbers.
#include "host/effect/EffectTypes.h"

#include <gtest/gtest.h>

namespace fst {
#include <pluginterfaces/fst/aeffectx.h>
}
#undef kVstVersion

namespace {

struct Row {
    const char* name;
    long ours;
    long theirs;
};

#define SAME(name)                                                                                 \
    Row { #name, static_cast < long>(ormund::name), static_cast < long>(fst::name) }

TEST(FreeHeader, NumbersAgree)
{
    const Row rows[] = {
        SAME(effOpen),
        SAME(effClose),
        SAME(effSetProgram),
        SAME(effGetProgram),
        SAME(effSetProgramName),
        SAME(effGetProgramName),
        SAME(effGetParamLabel),
        SAME(effGetParamDisplay),
        SAME(effGetParamName),
        SAME(effSetSampleRate),
        SAME(effSetBlockSize),
        SAME(effMainsChanged),
        SAME(effEditGetRect),
        SAME(effEditOpen),
        SAME(effEditClose),
        SAME(effEditIdle),
        SAME(effIdentify),
        SAME(effGetChunk),
        SAME(effSetChunk),
        SAME(effProcessEvents),
        SAME(effCanBeAutomated),
        SAME(effString2Parameter),
        SAME(effGetProgramNameIndexed),
        SAME(effGetInputProperties),
        SAME(effGetOutputProperties),
        SAME(effGetPlugCategory),
        SAME(effSetSpeakerArrangement),
        SAME(effGetEffectName),
        SAME(effGetVendorString),
        SAME(effGetProductString),
        SAME(effGetVendorVersion),
        SAME(effVendorSpecific),
        SAME(effCanDo),
        SAME(effGetVstVersion),
        SAME(effGetCurrentMidiProgram),
        SAME(effGetSpeakerArrangement),
        SAME(effShellGetNextPlugin),
        SAME(effStartProcess),
        SAME(effStopProcess),
        SAME(effSetTotalSampleToProcess),
        SAME(effSetProcessPrecision),
        SAME(audioMasterAutomate),
        SAME(audioMasterVersion),
        SAME(audioMasterCurrentId),
        SAME(audioMasterWantMidi),
        SAME(audioMasterGetTime),
        SAME(audioMasterProcessEvents),
        SAME(audioMasterTempoAt),
        SAME(audioMasterSizeWindow),
        SAME(audioMasterGetSampleRate),
        SAME(audioMasterGetBlockSize),
        SAME(audioMasterGetCurrentProcessLevel),
        SAME(audioMasterGetVendorString),
        SAME(audioMasterGetProductString),
        SAME(audioMasterGetVendorVersion),
        SAME(audioMasterCanDo),
        SAME(audioMasterBeginEdit),
        SAME(audioMasterEndEdit),
        SAME(effFlagsHasEditor),
        SAME(effFlagsCanReplacing),
        SAME(effFlagsProgramChunks),
        SAME(effFlagsIsSynth),
        SAME(effFlagsNoSoundInStop),
        SAME(effFlagsCanDoubleReplacing),
        SAME(kVstTransportChanged),
        SAME(kVstTransportPlaying),
        SAME(kVstTransportCycleActive),
        SAME(kVstTransportRecording),
        SAME(kVstNanosValid),
        SAME(kVstPpqPosValid),
        SAME(kVstTempoValid),
        SAME(kVstBarsValid),
        SAME(kVstCyclePosValid),
        SAME(kVstTimeSigValid),
        SAME(kVstSmpteValid),
        SAME(kVstClockValid),
        SAME(kVstMidiType),
        SAME(kVstSysExType),
        SAME(kPlugCategSynth),
        SAME(kVstProcessLevelRealtime),
        SAME(kVstProcessLevelOffline),
        SAME(kEffectMagic),
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.ours, row.theirs) << row.name;
}

// clang-format off
#define SAME_PLACE(record, field)                                                                  \
    Row { #record "." #field, static_cast<long>(offsetof(ormund::record, field)),                  \
        static_cast<long>(offsetof(fst::record, field)) }
// clang-format on

TEST(FreeHeader, SharedFieldsStandInTheSamePlace)
{
    const Row rows[] = {
        SAME_PLACE(AEffect, dispatcher),
        SAME_PLACE(AEffect, process),
        SAME_PLACE(AEffect, setParameter),
        SAME_PLACE(AEffect, getParameter),
        SAME_PLACE(AEffect, numPrograms),
        SAME_PLACE(AEffect, numParams),
        SAME_PLACE(AEffect, numInputs),
        SAME_PLACE(AEffect, numOutputs),
        SAME_PLACE(AEffect, flags),
        SAME_PLACE(AEffect, resvd1),
        SAME_PLACE(AEffect, resvd2),
        SAME_PLACE(AEffect, initialDelay),
        SAME_PLACE(AEffect, object),
        SAME_PLACE(AEffect, user),
        SAME_PLACE(AEffect, uniqueID),
        SAME_PLACE(AEffect, version),
        SAME_PLACE(AEffect, processReplacing),
        SAME_PLACE(AEffect, processDoubleReplacing),
        SAME_PLACE(VstTimeInfo, samplePos),
        SAME_PLACE(VstTimeInfo, sampleRate),
        SAME_PLACE(VstTimeInfo, nanoSeconds),
        SAME_PLACE(VstTimeInfo, ppqPos),
        SAME_PLACE(VstTimeInfo, tempo),
        SAME_PLACE(VstTimeInfo, barStartPos),
        SAME_PLACE(VstTimeInfo, cycleStartPos),
        SAME_PLACE(VstTimeInfo, cycleEndPos),
        SAME_PLACE(VstTimeInfo, timeSigNumerator),
        SAME_PLACE(VstTimeInfo, timeSigDenominator),
        SAME_PLACE(VstEvents, numEvents),
        SAME_PLACE(VstEvents, events),
        SAME_PLACE(VstMidiEvent, type),
        SAME_PLACE(VstMidiEvent, byteSize),
        SAME_PLACE(VstMidiEvent, deltaFrames),
        SAME_PLACE(VstMidiEvent, midiData),
        SAME_PLACE(VstPinProperties, label),
        SAME_PLACE(VstPinProperties, flags),
        SAME_PLACE(ERect, top),
        SAME_PLACE(ERect, left),
        SAME_PLACE(ERect, bottom),
        SAME_PLACE(ERect, right),
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.ours, row.theirs) << row.name;
}

} // namespace
