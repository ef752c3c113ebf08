// The program without its window: the instance, what plays it, and the transport that the user
// handles.
#pragma once

#include "apps/ormund/AudioDriver.h"
#include "apps/ormund/LiveHost.h"
#include "apps/ormund/PlayLink.h"
#include "apps/ormund/SongDocument.h"

#include <memory>
#include <optional>
#include <string>

namespace ormund {

// The screen's thread.
class Player {
public:
    ~Player();

    // Empty, or what is wrong.
    // With a tempo it is kept to; without one a preset may bring its own.
    std::string start(std::optional<double> tempo);
    std::string openSound(const SoundWishes& wishes);
    std::string load(const std::string& file);
    // Now and then: keeps the panel's own play button and the transport together. Where the sound
    // is lost the song runs on without, as its messages do, and the sound is tried again.
    void idle();
    // Ends the notes and the sound. The destructor does it too.
    void end();

    void play(bool on);
    bool isPlaying() const { return host.isPlaying(); }
    void toStart();
    // A song that plays goes on where it is; on a transport of JACK that rolls, where that is.
    void setLeader(Leader wanted);
    void setTempo(double beatsPerMinute);
    // Bars from 1, the last one included; none when `on` is false.
    void setCycle(bool on, int firstBar, int lastBar);
    // Whether the panel's play button is the transport's; else keys play, and it shows them.
    bool panelPlaysTransport();
    std::string presetName();
    // What plays, or that the sound or a clock that leads is lost.
    std::string soundText() const;
    LiveHost& effect() { return host; }
    SongDocument& song() { return document; }

private:
    std::string clockText() const;
    void followPanel();
    void followPreset();
    void playOnSilently();
    void tryAgain();

    LiveHost host;
    SongDocument document{host};
    SoundWishes sound;
    std::unique_ptr<AudioDriver> driver;
    bool isLost = false; // the sound; the driver is then a silent one
    int64_t nextTry = 0; // of opening it again, nanoseconds
    PlayLink link;
    bool keepsTempo = false;
    std::string followedPreset;
};

} // namespace ormund
