#include "editor/PresetWalk.h"

#include "editor/EditRecorder.h"
#include "host/plugin/KWUniClient.h"

#include <utility>

namespace ormund {

bool PresetWalk::play(const std::string& path)
{
    if (!std::exchange(walking, true)) {
        recorder.begin(EditScope::Load, 0);
        before = engine.presets.moment();
        hasStarted = false;
    }
    const bool loaded = engine.presets.load(PresetKind::Global, path, true) == LoadResult::Done;
    reloads = engine.sequencer.reloads();
    if (loaded && engine.parameters.index(Tag::Play) == 0) {
        engine.setParameter(Tag::Play, 1);
        hasStarted = true;
    }
    engine.screen.presetNamesChanged.raise();
    engine.screen.redraw.raise();
    return loaded;
}

void PresetWalk::keep()
{
    if (walking)
        end();
}

void PresetWalk::giveUp()
{
    if (!walking)
        return;
    if (reloads == engine.sequencer.reloads())
        engine.presets.comeBackTo(before);
    if (hasStarted)
        engine.setParameter(Tag::Play, 0);
    end();
}

void PresetWalk::end()
{
    walking = false;
    before = {};
    recorder.end();
    engine.screen.presetNamesChanged.raise();
    engine.screen.redraw.raise();
}

} // namespace ormund
