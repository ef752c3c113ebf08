#include "editor/KeyZones.h"

#include "engine/KWKeys.h"

namespace ormund {

namespace {

// Frames of the strip: the eight actions, then the key that transposes by nothing, then a C.
constexpr int kZeroMark = kPerformanceKeys;
constexpr int kOctaveMark = kPerformanceKeys + 1;
constexpr int kTransposeZero[2] = {72, 84};
constexpr int kLastNote = kKeyboardBase + 12 * kKeyboardOctaves - 1;

} // namespace

KWPolyObjectSet makeKeyZones(int keyMode, int height, int shift)
{
    KWPolyObjectSet set;
    const auto mark = [&](int note, int frame) {
        if (note < kKeyboardBase || note > kLastNote)
            return;
        const CRect key = keyRect(note, height);
        KWPolyObjectSet::Object object;
        object.left = key.left - (kWhiteKeyWidth - key.width()) / 2;
        object.width = kWhiteKeyWidth;
        object.height = height;
        object.frameY = frame * height;
        set.objects.push_back(object);
    };
    const int zero = kTransposeZero[keyMode] - shift;
    for (int note = kKeyboardBase; note <= kLastNote; note += 12)
        if (note != zero)
            mark(note, kOctaveMark);
    mark(zero, kZeroMark);
    if (keyMode == 1)
        for (int i = 0; i < kPerformanceKeys; ++i)
            mark(kPerformanceKeyTable[size_t(i)].note - shift, i);
    return set;
}

} // namespace ormund
