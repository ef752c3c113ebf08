#pragma once

#include <string>

namespace ormund {

// The song as a document of the stand-alone program, which asks over the effect interface; the
// editor answers. Screen thread.
struct Document {
    enum class Close {
        None,
        Asked, // the editor asks the user
        Go,
        Stay,
    };
    bool isProgram = false; // else the host keeps the song
    bool isChanged = false; // since the last load or save
    Close close = Close::None;
    std::string offered; // file of a song that a crash left
};

} // namespace ormund
