// Somebody who tries everything, for reproducible hours.
#pragma once

#include "tests/soak/SoakRig.h"

#include <random>
#include <string>
#include <vector>

namespace ormund {

class RandomDisturber {
public:
    // `presets`: files to load now and then, of either kind.
    RandomDisturber(SoakRig& victim, unsigned seed, std::vector<std::string> presets);

    // What happens before the next second is played.
    void act();
    size_t keptBytes() const; // in states that are given back later

private:
    void actOnce();
    void moveParameter();
    void pressButton();
    void edit();
    void sendMidi();
    void moveTransport();
    void load();
    void useEditor();
    void straighten();
    int roll(int sides) { return static_cast<int>(random() % static_cast<unsigned>(sides)); }
    float unit() { return static_cast<float>(roll(1001)) / 1000.0f; }

    SoakRig& rig;
    std::mt19937 random;
    std::vector<std::string> presets;
    std::vector<std::vector<char>> states; // taken on the way
    int straightSeconds = 0;               // left of a stretch in which the steps are checked
};

} // namespace ormund
