// Keeps the song that is nowhere else: in a file that outlives a crash of the host.
#pragma once

#include "data/library/Presets.h"
#include "data/library/Recovery.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

namespace ormund {

// One thread of the module looks at each instance's song every few seconds, and writes it where it
// differs both from what was loaded or saved last and from what is kept. All methods on the thread
// of the user interface.
class Autosave {
public:
    explicit Autosave(Presets& ownPresets) : presets(ownPresets) { }
    ~Autosave(); // nothing stays behind an orderly end
    Autosave(const Autosave&) = delete;
    Autosave& operator=(const Autosave&) = delete;

    // From now on; the song that stands is taken for one that lies in a file. Once is enough.
    void begin(const std::string& recoveryFolder);
    // At once, and to stay when the instance ends.
    bool keepForNextStart();

    // By the thread too. True where the song is kept, or lies in a file anyway.
    bool look();

private:
    Presets& presets;
    std::mutex mutex; // for what follows
    std::optional<RecoveryFile> file;
    uint64_t kept = 0; // the song in our file
};

} // namespace ormund
