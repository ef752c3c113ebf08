#include "tests/formats/Formats.h"

#include "data/parameters/Tags.h"
#include "platform/KWFileio.h"
#include "tests/support/Player.h"

namespace ormund {

TwoPresets::TwoPresets()
{
    Settings settings;
    settings.startUp();
    settings.setPresetPath(PresetKind::Global, folder / "Factory");
    settings.setPresetSavePath(PresetKind::Global, folder / "User");
    Player player;
    player.writePlainNotes();
    KWUniClient& maker = player.engine();
    for (const auto& [name, swing] :
        {std::pair{"Factory/a.kwe", kFirstSwing}, std::pair{"Factory/b.kwe", kSecondSwing}}) {
        KWFileio::makeFolder(folder / "Factory");
        maker.setParameter(Tag::Swing, swing);
        for (int pattern = 0; pattern < kPatterns; ++pattern)
            maker.patternStore.write(Tag::Swing, pattern, swing);
        maker.library.save(PresetKind::Global, folder / name);
    }
}

} // namespace ormund
