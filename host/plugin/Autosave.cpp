#include "host/plugin/Autosave.h"

#include "base/ModuleThread.h"

namespace ormund {

namespace {

constexpr std::chrono::seconds kPeriod{3};

// Without a thread the song is kept when the program is asked to end.
ModuleThread<Autosave>& keeper()
{
    static ModuleThread<Autosave> only(kPeriod, [](Autosave& instance) { instance.look(); });
    return only;
}

} // namespace

Autosave::~Autosave()
{
    if (file)
        keeper().remove(*this);
}

void Autosave::begin(const std::string& recoveryFolder)
{
    if (file)
        return;
    presets.settle();
    file.emplace(recoveryFolder);
    keeper().add(*this);
}

bool Autosave::keepForNextStart()
{
    const bool isKept = look();
    const std::lock_guard guard(mutex);
    if (file)
        file->leave();
    return isKept;
}

bool Autosave::look()
{
    if (!file)
        return false;
    const Presets::Song song = presets.song();
    const std::lock_guard guard(mutex);
    if (song.hash == song.settledHash) {
        file->remove();
        kept = 0;
    } else if (song.hash != kept) {
        if (!file->write(song.words, song.name))
            return false;
        kept = song.hash;
    }
    return true;
}

} // namespace ormund
