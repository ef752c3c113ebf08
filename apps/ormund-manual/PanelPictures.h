// Pictures of the panel for the manual: the real editor in memory, played, opened and clicked.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace ormund {

struct PanelPicture {
    int width = 0; // panel pixels; the image has kPictureScale as many
    int height = 0;
    std::vector<unsigned char> png;
};

inline constexpr int kPictureScale = 2;

// All pictures by their names. `song` is a text as the factory bank has them, `presets` the folder
// of the bank's texts. Throws std::runtime_error when the song cannot be read. Set a home folder of
// its own before: the editor has the user's settings otherwise.
std::map<std::string, PanelPicture> takePanelPictures(
    const std::string& song, const std::string& presets);

} // namespace ormund
