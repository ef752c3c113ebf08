// The song as the program's document: whether it is saved, and what was open last.
#pragma once

#include "apps/host/HostedEffect.h"

#include <string>

namespace ormund {

// The screen's thread.
class SongDocument {
public:
    explicit SongDocument(HostedEffect& ownHost);

    // What nobody saves is kept from now on. With a window, a song that a crash left is offered.
    void begin(bool offersRecovered);
    void openLast(); // where it is still there
    // Now and then: notes which song is open.
    void idle();

    bool isChanged();
    // Asks the user where there is something to lose.
    void askToClose();
    bool mayClose();
    // To its file; where it has none, beside the songs that a crash leaves.
    void save();
    void keepForNextStart();

private:
    VstIntPtr call(VstIntPtr code, void* ptr = nullptr, float opt = 0);

    HostedEffect& host;
    std::string sessionFile;
    std::string noted; // path of the song in the session's file
    int idles = 0;
};

} // namespace ormund
